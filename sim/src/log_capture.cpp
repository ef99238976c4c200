#include <sim/brief_lock.h>
#include <sim/log_capture.h>

#include <android/log.h>
#include <fcntl.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <memory>
#include <mutex>

namespace mmisim {
namespace {

struct Store {
    BriefLock lock;
    std::condition_variable_any added;
    // A deque: adding an entry never moves the ones before it, so the lock is held briefly.
    std::deque<LogEntry> entries;
    size_t dropped = 0;  // entries cleared away; marks count from the start of the process
    int file = -1;
    std::shared_ptr<const std::function<void(const LogEntry&)>> observer;
};

Store& TheStore() {
    static Store* store = new Store();  // outlives every thread that may still log
    return *store;
}

// Runs on every logging thread at once: everything that needs no shared state (the entry,
// the file line) is made before the lock, which only orders and stores the entry.
void Hook(const __android_logger_data* data, const char* message) {
    Store& store = TheStore();
    LogEntry entry{data->priority, data->tag != nullptr ? data->tag : "", message != nullptr ? message : ""};
    const std::string line = store.file >= 0 ? std::to_string(entry.priority) + "\t" +
                                                       LogCapture::EscapeForFile(entry.message) + "\n"
                                             : std::string();
    std::unique_lock<BriefLock> lock(store.lock);
    if (store.file >= 0) {
        // One write per line: concurrent test processes appending to the same file do not interleave.
        ssize_t written = write(store.file, line.data(), line.size());
        (void)written;
    }
    std::shared_ptr<const std::function<void(const LogEntry&)>> observer = store.observer;
    if (observer != nullptr) {
        store.entries.push_back(entry);  // the observer sees it after the lock is released
    } else {
        store.entries.push_back(std::move(entry));
    }
    store.added.notify_all();
    lock.unlock();
    if (observer != nullptr) (*observer)(entry);
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
    std::lock_guard<BriefLock> lock(store.lock);
    store.observer = std::move(shared);
}

std::vector<LogEntry> LogCapture::since(size_t mark) const {
    Store& store = TheStore();
    std::lock_guard<BriefLock> lock(store.lock);
    const size_t first = mark > store.dropped ? mark - store.dropped : 0;
    if (first >= store.entries.size()) return {};
    return std::vector<LogEntry>(store.entries.begin() + static_cast<std::ptrdiff_t>(first), store.entries.end());
}

size_t LogCapture::mark() const {
    Store& store = TheStore();
    std::lock_guard<BriefLock> lock(store.lock);
    return store.dropped + store.entries.size();
}

void LogCapture::clear() {
    Store& store = TheStore();
    std::lock_guard<BriefLock> lock(store.lock);
    store.dropped += store.entries.size();
    // The storage goes too: a long run that clears now and then keeps no buffer the size of
    // its busiest stretch.
    decltype(store.entries)().swap(store.entries);
}

bool LogCapture::waitFor(size_t mark, const std::function<bool(const LogEntry&)>& predicate,
                         std::chrono::milliseconds timeout) const {
    Store& store = TheStore();
    std::unique_lock<BriefLock> lock(store.lock);
    size_t checked = mark > store.dropped ? mark - store.dropped : 0;
    return store.added.wait_for(lock, timeout, [&] {
        for (; checked < store.entries.size(); ++checked) {
            if (predicate(store.entries[checked])) return true;
        }
        return false;
    });
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
