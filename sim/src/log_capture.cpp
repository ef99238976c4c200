#include <sim/brief_lock.h>
#include <sim/log_capture.h>

#include <android/log.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <deque>
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

// The entries one thread wrote, oldest first. Unbounded, a deque: adding an entry never
// moves the ones before it. Bounded (keepAtMost), a ring whose slots are reused: the newest
// entry takes the oldest one's strings, so a long run logs without allocating.
class ThreadLog {
public:
    BriefLock lock;  // taken by its thread for every entry, by readers now and then

    void add(size_t number, int priority, const char* tag, const char* message) {
        if (mKeep == 0) {
            mAll.push_back(Stored{number, LogEntry{priority, tag, message}});
        } else if (mRing.size() < mKeep) {
            mRing.push_back(Stored{number, LogEntry{priority, tag, message}});
        } else {
            Stored& slot = mRing[mFirst];
            slot.number = number;
            slot.entry.priority = priority;
            slot.entry.tag.assign(tag);
            slot.entry.message.assign(message);
            mFirst = (mFirst + 1) % mRing.size();
        }
    }

    size_t size() const { return mKeep == 0 ? mAll.size() : mRing.size(); }
    Stored& operator[](size_t i) { return mKeep == 0 ? mAll[i] : mRing[(mFirst + i) % mRing.size()]; }

    // Appends the entries numbered `from` or later. Numbers grow from the oldest entry to
    // the newest, so the first one is found by halving: a waiter that rescans on every new
    // line does not walk a long log each time.
    void copySince(size_t from, std::vector<Stored>& out) {
        size_t low = 0, high = size();
        while (low < high) {
            const size_t middle = low + (high - low) / 2;
            if ((*this)[middle].number < from) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        for (size_t i = low; i < size(); ++i) out.push_back((*this)[i]);
    }

    // Keeps at most the newest `keep` entries from now on (0: all).
    void setKeep(size_t keep) {
        std::deque<Stored> kept;
        const size_t count = size();
        for (size_t i = keep != 0 && count > keep ? count - keep : 0; i < count; ++i) {
            kept.push_back(std::move((*this)[i]));
        }
        mAll.clear();
        mRing.clear();
        mFirst = 0;
        mKeep = keep;
        if (keep == 0) {
            mAll = std::move(kept);
        } else {
            mRing.reserve(keep);
            for (Stored& stored : kept) mRing.push_back(std::move(stored));
        }
    }

    // Empties the log; the storage goes to the caller, to be freed outside the lock.
    void clearInto(std::deque<Stored>& freedAll, std::vector<Stored>& freedRing) {
        freedAll.swap(mAll);
        freedRing.swap(mRing);
        mAll.clear();
        mRing.clear();
        mFirst = 0;
        if (mKeep != 0) mRing.reserve(mKeep);
    }

    bool ended = false;  // its thread has exited (under the store's registry lock)

private:
    size_t mKeep = 0;
    std::deque<Stored> mAll;
    std::vector<Stored> mRing;
    size_t mFirst = 0;  // the oldest slot of a full ring
};

// Every logging thread stores its entries in its own log, so that threads logging at once
// share nothing but the entry counter: no lock, no memory written by another thread. Readers
// merge the logs by entry number.
struct Store {
    std::atomic<size_t> numbered{0};  // entries written since the start of the process
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
    ThreadLog& log = MyLog();
    {
        std::lock_guard<BriefLock> lock(log.lock);
        log.add(store.numbered.fetch_add(1), data->priority, tag, text);
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
    std::vector<std::shared_ptr<ThreadLog>> logs;
    {
        std::lock_guard<std::mutex> lock(store.lock);
        // Logs of threads that have exited go with their entries.
        logs.swap(store.logs);
        for (const auto& log : logs) {
            if (!log->ended) store.logs.push_back(log);
        }
    }
    // The storage is freed outside the logs' locks: loggers do not wait for it.
    for (const auto& log : logs) {
        std::deque<Stored> freedAll;
        std::vector<Stored> freedRing;
        std::lock_guard<BriefLock> lock(log->lock);
        log->clearInto(freedAll, freedRing);
    }
}

void LogCapture::keepAtMost(size_t count) {
    Store& store = TheStore();
    std::lock_guard<std::mutex> lock(store.lock);
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
