// The log capture every test reads the library's lines from.
#include <android/log.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sim/log_capture.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
extern "C" size_t __sanitizer_get_current_allocated_bytes();  // GCC ships no header for it
#endif

namespace {

using mmisim::LogCapture;
using mmisim::LogEntry;

constexpr int kThreads = 4;
constexpr int kLinesEach = 3000;

void Log(const std::string& text) { __android_log_write(ANDROID_LOG_INFO, "capture_test", text.c_str()); }

// Thread t of kThreads writes "t<t> <i>" for i from 0; returns when all are done.
void LogFromThreads(int linesEach) {
    std::vector<std::thread> writers;
    for (int t = 0; t < kThreads; ++t) {
        writers.emplace_back([t, linesEach] {
            for (int i = 0; i < linesEach; ++i) Log("t" + std::to_string(t) + " " + std::to_string(i));
        });
    }
    for (std::thread& writer : writers) writer.join();
}

// Each thread's lines among the entries are its numbers from `from` up to `to`, in order.
void ExpectLinesOfThreads(const std::vector<LogEntry>& entries, int from, int to) {
    std::vector<std::vector<int>> lines(kThreads), expected(kThreads);
    for (const LogEntry& entry : entries) {
        const size_t space = entry.message.find(' ');
        if (entry.tag != "capture_test" || entry.message[0] != 't' || space == std::string::npos) continue;
        lines.at(std::stoul(entry.message.substr(1, space - 1))).push_back(std::stoi(entry.message.substr(space + 1)));
    }
    for (std::vector<int>& numbers : expected) {
        for (int i = from; i < to; ++i) numbers.push_back(i);
    }
    EXPECT_EQ(lines, expected);
}

// Bytes allocated and not freed, from the sanitizer's allocator when one replaces malloc.
size_t AllocatedBytes() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

class LogCaptureTest : public ::testing::Test {
protected:
    void SetUp() override { capture.clear(); }
    void TearDown() override {
        capture.keepAtMost(0);
        capture.clear();
    }
    LogCapture& capture = LogCapture::Install();
};

// A limit, set after the lines or while they come, keeps the newest lines of each thread;
// keeping none counts the lines but keeps them not; marks count every line.
TEST_F(LogCaptureTest, ThreadsLoggingAtOnceLoseNothingAndLimitsKeepTheNewest) {
    constexpr int kKept = 10;
    size_t mark = capture.mark();
    LogFromThreads(kLinesEach);
    EXPECT_EQ(capture.mark() - mark, static_cast<size_t>(kThreads * kLinesEach));
    const std::vector<LogEntry> entries = capture.since(mark);
    ASSERT_EQ(entries.size(), static_cast<size_t>(kThreads * kLinesEach));
    EXPECT_EQ(entries.front().priority, ANDROID_LOG_INFO);
    ExpectLinesOfThreads(entries, 0, kLinesEach);
    capture.keepAtMost(kKept);
    ExpectLinesOfThreads(capture.since(mark), kLinesEach - kKept, kLinesEach);

    mark = capture.mark();
    LogFromThreads(kLinesEach);
    EXPECT_EQ(capture.mark() - mark, static_cast<size_t>(kThreads * kLinesEach));
    ExpectLinesOfThreads(capture.since(mark), kLinesEach - kKept, kLinesEach);

    capture.keepNone();
    mark = capture.mark();
    LogFromThreads(kKept);
    EXPECT_EQ(capture.mark() - mark, static_cast<size_t>(kThreads * kKept));
    EXPECT_TRUE(capture.since(mark).empty());
    capture.keepAtMost(kKept);
    Log("kept again");
    EXPECT_EQ(capture.since(mark).size(), 1u);
}

// Lines come in the order they were written across threads that waited for one another; a
// mark gives only later lines; an ended thread's lines stay until cleared.
TEST_F(LogCaptureTest, MarksOrderAndClearing) {
    Log("before");
    const size_t mark = capture.mark();
    Log("zero");
    std::thread([] { Log("first"); }).join();
    std::thread([] { Log("second"); }).join();
    Log("third");
    std::vector<std::string> messages;
    for (const LogEntry& entry : capture.since(mark)) messages.push_back(entry.message);
    EXPECT_EQ(messages, (std::vector<std::string>{"zero", "first", "second", "third"}));
    capture.clear();
    EXPECT_TRUE(capture.since(mark).empty());
    EXPECT_EQ(capture.mark(), mark + 4);
    Log("after the clear");
    ASSERT_EQ(capture.since(mark).size(), 1u);
    EXPECT_EQ(capture.since(mark)[0].message, "after the clear");
}

// Eight threads log flat out while another clears the capture in a loop, with the per-thread
// limit the load runs set: the memory stays within the limit's worth of lines. A clear that
// takes each writer's lock, or frees what the writer allocates again, falls behind eight
// writers (more so under AddressSanitizer), and without a limit enforced on the writers'
// side the capture grows with the load (kept whole, these lines take about 160 MB).
TEST_F(LogCaptureTest, ClearingInALoopHoldsTheMemoryOfThreadsLoggingFlatOut) {
    constexpr int kWriters = 8, kLinesPerWriter = 100000;
    constexpr size_t kKept = 1000, kBound = 8u << 20;  // about four times what kWriters * kKept lines take
    const std::string padding(100, '.');                // longer than any string kept inline
    capture.keepAtMost(kKept);
    const size_t before = AllocatedBytes();
    std::atomic<int> writing{kWriters};
    std::vector<std::thread> writers;
    for (int t = 0; t < kWriters; ++t) {
        writers.emplace_back([&] {
            for (int i = 0; i < kLinesPerWriter; ++i) Log(padding);
            --writing;
        });
    }
    size_t peak = 0;
    int clears = 0;
    for (; writing.load() > 0; ++clears) {
        capture.clear();
        const size_t now = AllocatedBytes();
        peak = std::max(peak, now > before ? now - before : 0);
    }
    for (std::thread& writer : writers) writer.join();
    EXPECT_LT(peak, kBound) << "the capture held " << peak << " bytes more at its peak (" << clears << " clears)";
    const size_t mark = capture.mark();  // the newest line of a thread logging after the clears is kept
    Log("after the load");
    ASSERT_EQ(capture.since(mark).size(), 1u);
    EXPECT_EQ(capture.since(mark)[0].message, "after the load");
}

}  // namespace
