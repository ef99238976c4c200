// The log capture that every test reads the library's lines from: several threads logging
// at once lose nothing, keep their order, and wake a thread waiting for their line.
#include <android/log.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sim/log_capture.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// The sanitizers' allocator statistics (GCC ships no header for them).
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

using mmisim::LogCapture;
using mmisim::LogEntry;

constexpr int kThreads = 4;
constexpr int kLinesEach = 3000;

void Log(const std::string& text) { __android_log_write(ANDROID_LOG_INFO, "capture_test", text.c_str()); }

// Thread t writes "t<t> <i>" for i from 0; returns when all threads are done.
void LogFromThreads(int threads, int linesEach) {
    std::vector<std::thread> writers;
    for (int t = 0; t < threads; ++t) {
        writers.emplace_back([t, linesEach] {
            for (int i = 0; i < linesEach; ++i) Log("t" + std::to_string(t) + " " + std::to_string(i));
        });
    }
    for (std::thread& writer : writers) writer.join();
}

// For each thread, the numbers of its lines in the order the capture gives them.
std::vector<std::vector<int>> LinesByThread(const std::vector<LogEntry>& entries, int threads) {
    std::vector<std::vector<int>> lines(static_cast<size_t>(threads));
    for (const LogEntry& entry : entries) {
        const size_t space = entry.message.find(' ');
        if (entry.tag != "capture_test" || entry.message[0] != 't' || space == std::string::npos) continue;
        const int t = std::stoi(entry.message.substr(1, space - 1));
        lines[static_cast<size_t>(t)].push_back(std::stoi(entry.message.substr(space + 1)));
    }
    return lines;
}

// Bytes the process has allocated and not freed, from the sanitizer's allocator when one
// replaces malloc.
size_t AllocatedBytes() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

// The numbers from `from` up to `to`, not included.
std::vector<int> Count(int from, int to) {
    std::vector<int> numbers;
    for (int i = from; i < to; ++i) numbers.push_back(i);
    return numbers;
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

TEST_F(LogCaptureTest, ThreadsLoggingAtOnceLoseNothingAndKeepTheirOrder) {
    const size_t mark = capture.mark();
    LogFromThreads(kThreads, kLinesEach);

    EXPECT_EQ(capture.mark() - mark, static_cast<size_t>(kThreads * kLinesEach));
    const std::vector<LogEntry> entries = capture.since(mark);
    ASSERT_EQ(entries.size(), static_cast<size_t>(kThreads * kLinesEach));
    const auto lines = LinesByThread(entries, kThreads);
    for (int t = 0; t < kThreads; ++t) EXPECT_EQ(lines[static_cast<size_t>(t)], Count(0, kLinesEach)) << "thread " << t;
    EXPECT_EQ(entries.front().priority, ANDROID_LOG_INFO);
}

// Lines come in the order they were written across threads that waited for one another;
// a mark gives only later lines; an ended thread's lines stay until cleared, and marks go on
// counting every line.
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

TEST_F(LogCaptureTest, WaitingWakesOnALineFromAnotherThreadAmongMany) {
    capture.keepAtMost(1000);  // the noise must not fill the memory if the waiter oversleeps
    const size_t mark = capture.mark();
    std::atomic<bool> stop{false};
    std::atomic<bool> scanned{false};  // the waiter has looked at the lines once
    std::thread flood([&] {
        while (!stop.load()) Log("noise");
    });
    std::thread needle([&] {
        while (!scanned.load()) Log("hay");
        Log("needle");
    });
    const bool found = capture.waitFor(
            mark,
            [&](const LogEntry& entry) {
                scanned = true;
                return entry.message == "needle";
            },
            std::chrono::seconds(10));
    needle.join();
    stop = true;
    flood.join();
    EXPECT_TRUE(found);
    EXPECT_FALSE(capture.waitForMessage(mark, ANDROID_LOG_INFO, "never written", std::chrono::milliseconds(50)));
}

TEST_F(LogCaptureTest, KeepingAFewLinesKeepsTheNewestOfEachThreadAndCountsAll) {
    constexpr int kKept = 10;
    capture.keepAtMost(kKept);
    const size_t mark = capture.mark();
    LogFromThreads(kThreads, kLinesEach);

    EXPECT_EQ(capture.mark() - mark, static_cast<size_t>(kThreads * kLinesEach));
    const auto lines = LinesByThread(capture.since(mark), kThreads);
    for (int t = 0; t < kThreads; ++t) {
        EXPECT_EQ(lines[static_cast<size_t>(t)], Count(kLinesEach - kKept, kLinesEach)) << "thread " << t;
    }

    // Without the limit every line is kept; setting it again drops all but the newest.
    capture.keepAtMost(0);
    const std::string mine = "t" + std::to_string(kThreads) + " ";
    for (int i = 0; i < 3 * kKept; ++i) Log(mine + std::to_string(i));
    EXPECT_EQ(LinesByThread(capture.since(mark), kThreads + 1)[kThreads], Count(0, 3 * kKept));
    capture.keepAtMost(kKept);
    EXPECT_EQ(LinesByThread(capture.since(mark), kThreads + 1)[kThreads], Count(2 * kKept, 3 * kKept));

    // Keeping none counts the lines but keeps them not, until lines are kept again.
    capture.keepNone();
    const size_t noneMark = capture.mark();
    LogFromThreads(kThreads, kKept);
    EXPECT_EQ(capture.mark() - noneMark, static_cast<size_t>(kThreads * kKept));
    EXPECT_TRUE(capture.since(noneMark).empty());
    capture.keepAtMost(kKept);
    Log("kept again");
    ASSERT_EQ(capture.since(noneMark).size(), 1u);
}

// Eight threads log as fast as they can while another clears the capture in a loop, with the
// per-thread limit the load runs set. The memory stays within the limit's worth of lines
// whatever the scheduling: a clearing thread that has to take each logging thread's lock,
// or to free what that thread then allocates again, falls behind eight writers (more so
// where each free is dear, as under AddressSanitizer), and without a limit that works on
// the writers' side the capture grows with the load. Kept whole, these lines would take
// about 160 MB.
TEST_F(LogCaptureTest, ClearingInALoopHoldsTheMemoryOfThreadsLoggingFlatOut) {
    constexpr int kWriters = 8;
    constexpr int kLinesPerWriter = 100000;
    constexpr size_t kKept = 1000;
    constexpr size_t kBound = 8u << 20;  // about four times what kWriters * kKept lines take
    const std::string padding(100, '.');  // longer than any string kept inline
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
    while (writing.load() > 0) {
        capture.clear();
        ++clears;
        const size_t now = AllocatedBytes();
        peak = std::max(peak, now > before ? now - before : 0);
    }
    for (std::thread& writer : writers) writer.join();
    EXPECT_LT(peak, kBound) << "the capture held " << peak << " bytes more at its peak (" << clears << " clears)";
    // The limit does not lose the newest lines of a thread that logs after the clears.
    const size_t mark = capture.mark();
    Log("after the load");
    ASSERT_EQ(capture.since(mark).size(), 1u);
    EXPECT_EQ(capture.since(mark)[0].message, "after the load");
}

}  // namespace
