#include <sim/brief_lock.h>
#include <sim/log_capture.h>

#include <android/log.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace mmisim {
namespace {

// A captured entry and its place among every entry of the process.
struct Stored {
    size_t number;
    LogEntry entry;
};

// The entries one thread wrote, oldest first, in a ring of slots that are reused: a new
// entry takes the strings of the slot it lands in, so a thread allocates only while its ring
// grows. Unbounded, a full ring doubles. Bounded (keepAtMost), the ring takes all its slots
// at once, each with room for a usual line, and the newest entry replaces the oldest: its
// memory does not change as lines come (unless a line is longer than that room). Entries
// numbered below a clear's watermark are forgotten by the thread itself when it next logs,
// and their slots serve its next lines: a thread's memory stays at the most lines it wrote
// between two clears (or the bound).
class ThreadLog {
public:
    BriefLock lock;  // taken by its thread for every entry, by readers now and then

    void add(size_t number, int priority, const char* tag, const char* message, size_t cleared) {
        forgetBelow(cleared);
        if (mCount == mSlots.size()) {
            if (mKeep != 0) {
                mFirst = (mFirst + 1) % mSlots.size();  // the oldest entry makes room
                --mCount;
            } else {
                reshape(std::max<size_t>(kFirstSlots, 2 * mSlots.size()));
            }
        }
        Stored& slot = mSlots[(mFirst + mCount) % mSlots.size()];
        slot.number = number;
        slot.entry.priority = priority;
        slot.entry.tag.assign(tag);
        slot.entry.message.assign(message);
        ++mCount;
    }

    size_t size() const { return mCount; }
    Stored& operator[](size_t i) { return mSlots[(mFirst + i) % mSlots.size()]; }

    // Appends the entries numbered `from` or later.
    void copySince(size_t from, std::vector<Stored>& out) {
        for (size_t i = firstFrom(from); i < size(); ++i) out.push_back((*this)[i]);
    }

    // Keeps at most the newest `keep` entries from now on (0: all).
    void setKeep(size_t keep) {
        mKeep = keep;
        if (keep != 0 && mCount > keep) {
            mFirst = (mFirst + mCount - keep) % mSlots.size();
            mCount = keep;
        }
        if (keep != 0 && mSlots.size() != keep) reshape(keep);
    }

    bool ended = false;  // its thread has exited (under the store's registry lock)

private:
    static constexpr size_t kFirstSlots = 64;
    // Room a bounded log's slot has from the start: the library's lines and the process
    // name (the tag) fit.
    static constexpr size_t kSlotMessageBytes = 512;
    static constexpr size_t kSlotTagBytes = 32;

    // The place of the first entry numbered `from` or later. Numbers grow from the oldest
    // entry to the newest, so it is found by halving: a waiter that rescans on every new
    // line does not walk a long log each time.
    size_t firstFrom(size_t from) {
        size_t low = 0, high = size();
        while (low < high) {
            const size_t middle = low + (high - low) / 2;
            if ((*this)[middle].number < from) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return low;
    }

    void forgetBelow(size_t cleared) {
        if (mCount == 0 || (*this)[0].number >= cleared) return;
        const size_t forgotten = firstFrom(cleared);
        mFirst = (mFirst + forgotten) % mSlots.size();
        mCount -= forgotten;
    }

    // Moves the entries, oldest first, into a ring of `capacity` slots (at least mCount).
    void reshape(size_t capacity) {
        std::vector<Stored> slots;
        slots.reserve(capacity);
        for (size_t i = 0; i < mCount; ++i) slots.push_back(std::move((*this)[i]));
        slots.resize(capacity);
        if (mKeep != 0) {
            for (size_t i = mCount; i < capacity; ++i) {
                slots[i].entry.message.reserve(kSlotMessageBytes);
                slots[i].entry.tag.reserve(kSlotTagBytes);
            }
        }
        mSlots.swap(slots);
        mFirst = 0;
    }

    size_t mKeep = 0;
    std::vector<Stored> mSlots;
    size_t mFirst = 0;  // the oldest entry's slot
    size_t mCount = 0;
};

// Every logging thread stores its entries in its own log, so that threads logging at once
// share nothing but the entry counter: no lock, no memory written by another thread. Readers
// merge the logs by entry number.
struct Store {
    std::atomic<size_t> numbered{0};  // entries written since the start of the process
    std::atomic<size_t> cleared{0};   // entries numbered below it are forgotten
    std::atomic<bool> storing{true};  // false after keepNone()
    std::atomic<int> waiting{0};      // threads in waitFor
    std::atomic<bool> observed{false};
    int file = -1;

    std::mutex lock;  // the registry, the keep setting, the observer and waitFor's wake-ups
    std::condition_variable added;
    std::vector<std::shared_ptr<ThreadLog>> logs;
    size_t keep = 0;
    std::shared_ptr<const std::function<void(const LogEntry&)>> observer;
};

Store& TheStore() {
    static Store* store = new Store();  // outlives every thread that may still log
    return *store;
}

// The calling thread's log. The pointer is a plain thread-local that is never destroyed, so
// a thread may log even while its other thread-locals are being torn down; the holder marks
// the log ended when the thread exits, so that clear() can drop it once it is empty.
thread_local ThreadLog* t_log = nullptr;
thread_local bool t_exiting = false;

struct LogHolder {
    std::shared_ptr<ThreadLog> log;
    ~LogHolder() {
        t_exiting = true;
        if (log == nullptr) return;
        Store& store = TheStore();
        std::lock_guard<std::mutex> lock(store.lock);
        log->ended = true;
        t_log = nullptr;  // clear() may free it now; a last line registers a new log
    }
};

ThreadLog& MyLog() {
    if (t_log != nullptr) return *t_log;
    auto log = std::make_shared<ThreadLog>();
    Store& store = TheStore();
    {
        std::lock_guard<std::mutex> lock(store.lock);
        log->setKeep(store.keep);
        store.logs.push_back(log);
    }
    t_log = log.get();
    if (!t_exiting) {
        static thread_local LogHolder holder;
        holder.log = std::move(log);
    }
    return *t_log;
}

// Runs on every logging thread at once.
void Hook(const __android_logger_data* data, const char* message) {
    Store& store = TheStore();
    const char* tag = data->tag != nullptr ? data->tag : "";
    const char* text = message != nullptr ? message : "";
    if (store.file >= 0) {
        // One write per line: threads and concurrent test processes appending to the same
        // file do not interleave.
        const std::string line = std::to_string(data->priority) + "\t" + LogCapture::EscapeForFile(text) + "\n";
        ssize_t written = write(store.file, line.data(), line.size());
        (void)written;
    }
    if (!store.storing.load(std::memory_order_relaxed)) {
        store.numbered.fetch_add(1);
    } else {
        ThreadLog& log = MyLog();
        std::lock_guard<BriefLock> lock(log.lock);
        log.add(store.numbered.fetch_add(1), data->priority, tag, text, store.cleared.load());
    }
    // A waiter counts itself before its scan, which takes this log's lock: either the scan
    // came after the entry and saw it, or it came before, and then the count is seen here
    // and the waiter (who holds the store's lock from its scan until it sleeps) is woken.
    if (store.waiting.load() > 0) {
        std::lock_guard<std::mutex> lock(store.lock);
        store.added.notify_all();
    }
    if (store.observed.load(std::memory_order_acquire)) {
        std::shared_ptr<const std::function<void(const LogEntry&)>> observer;
        {
            std::lock_guard<std::mutex> lock(store.lock);
            observer = store.observer;
        }
        if (observer != nullptr) (*observer)(LogEntry{data->priority, tag, text});
    }
}

// Every stored entry numbered `from` or later, in order. All logs are locked at once (in
// registry order; a logger only ever takes its own), and an entry takes its number under
// its log's lock: so every number below `*limit` is either in the result, before `from` or
// cleared, never still on its way. The caller holds the store's lock, so no log is added
// meanwhile.
std::vector<Stored> Merged(const Store& store, size_t from, size_t* limit) {
    std::vector<std::unique_lock<BriefLock>> locks;
    locks.reserve(store.logs.size());
    for (const auto& log : store.logs) locks.emplace_back(log->lock);
    if (limit != nullptr) *limit = store.numbered.load();
    std::vector<Stored> merged;
    from = std::max(from, store.cleared.load());
    for (const auto& log : store.logs) log->copySince(from, merged);
    locks.clear();
    std::sort(merged.begin(), merged.end(), [](const Stored& a, const Stored& b) { return a.number < b.number; });
    return merged;
}

}  // namespace

LogCapture& LogCapture::Install() {
    static LogCapture* capture = [] {
        const char* path = std::getenv("MMI_LOG_CAPTURE");
        if (path != nullptr && *path != '\0') {
            TheStore().file = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
        }
        __android_log_set_logger(Hook);
        return new LogCapture();
    }();
    return *capture;
}

std::vector<LogEntry> LogCapture::entries() const { return since(0); }

void LogCapture::setObserver(std::function<void(const LogEntry&)> observer) {
    auto shared = observer ? std::make_shared<const std::function<void(const LogEntry&)>>(std::move(observer))
                           : nullptr;
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.lock);
    store.observed.store(shared != nullptr, std::memory_order_release);
    store.observer = std::move(shared);
}

std::vector<LogEntry> LogCapture::since(size_t mark) const {
    Store& store = TheStore();
    std::vector<Stored> merged;
    {
        std::lock_guard<std::mutex> lock(store.lock);
        merged = Merged(store, mark, nullptr);
    }
    std::vector<LogEntry> entries;
    entries.reserve(merged.size());
    for (Stored& stored : merged) entries.push_back(std::move(stored.entry));
    return entries;
}

size_t LogCapture::mark() const { return TheStore().numbered.load(); }

void LogCapture::clear() {
    Store& store = TheStore();
    std::vector<std::shared_ptr<ThreadLog>> ended;
    {
        std::lock_guard<std::mutex> lock(store.lock);
        // Every entry numbered so far is forgotten: readers skip it, and each logging
        // thread drops its own when it next logs. A clear never waits for a logging
        // thread's lock, which a thread logging flat out would hardly ever leave free, and
        // never frees what that thread would allocate again.
        store.cleared.store(store.numbered.load());
        // Logs of threads that have exited go with their entries (freed below, outside the
        // lock).
        auto live = std::partition(store.logs.begin(), store.logs.end(),
                                   [](const std::shared_ptr<ThreadLog>& log) { return !log->ended; });
        ended.assign(std::make_move_iterator(live), std::make_move_iterator(store.logs.end()));
        store.logs.erase(live, store.logs.end());
    }
}

void LogCapture::keepNone() { TheStore().storing.store(false); }

void LogCapture::keepAtMost(size_t count) {
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.lock);
    store.storing.store(true);
    store.keep = count;
    for (const auto& log : store.logs) {
        std::lock_guard<BriefLock> logLock(log->lock);
        log->setKeep(count);
    }
}

bool LogCapture::waitFor(size_t mark, const std::function<bool(const LogEntry&)>& predicate,
                         std::chrono::milliseconds timeout) const {
    Store& store = TheStore();
    store.waiting.fetch_add(1);
    std::unique_lock<std::mutex> lock(store.lock);
    size_t next = mark;  // entries before it have been checked
    const bool found = store.added.wait_for(lock, timeout, [&] {
        size_t limit = 0;
        for (const Stored& stored : Merged(store, next, &limit)) {
            if (predicate(stored.entry)) return true;
        }
        next = std::max(next, limit);
        return false;
    });
    lock.unlock();
    store.waiting.fetch_sub(1);
    return found;
}

bool LogCapture::waitForMessage(size_t mark, int priority, const std::string& message,
                                std::chrono::milliseconds timeout) const {
    return waitFor(mark, [&](const LogEntry& e) { return e.priority == priority && e.message == message; }, timeout);
}

std::string LogCapture::Brief(const LogEntry& entry) {
    static const char kLetters[] = "??VDIWEF";
    const char letter = entry.priority >= 0 && entry.priority < 8 ? kLetters[entry.priority] : '?';
    return std::string(1, letter) + "/" + entry.tag + ": " + entry.message;
}

std::string LogCapture::EscapeForFile(const std::string& message) {
    std::string escaped;
    escaped.reserve(message.size());
    for (char c : message) {
        if (c == '\\') {
            escaped += "\\\\";
        } else if (c == '\n') {
            escaped += "\\n";
        } else {
            escaped += c;
        }
    }
    return escaped;
}

}  // namespace mmisim
