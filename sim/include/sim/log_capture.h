// Captures every line the process writes to the Android log, through liblog's logger hook.
// When the environment variable MMI_LOG_CAPTURE names a file, every entry is also appended
// to it: the priority number, a tab, the message with '\' written as "\\" and a newline
// as "\n".
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace mmisim {

struct LogEntry {
    int priority;
    std::string tag;
    std::string message;
};

class LogCapture {
public:
    // Installs the hook (once per process) and returns the capture.
    static LogCapture& Install();

    std::vector<LogEntry> entries() const;
    // Entries written since the mark (a count returned by mark()).
    std::vector<LogEntry> since(size_t mark) const;
    size_t mark() const;
    // Forgets every entry. It costs the same however many there are, and logging threads
    // reuse the memory of their forgotten entries, so a capture cleared now and then holds
    // at most what each thread logs between two clears.
    void clear();
    // Keeps only the newest `count` entries of each thread (0, the default, keeps all): a
    // long run keeps a bounded memory while mark() still counts every line. Entries dropped
    // this way are gone from since() and waitFor().
    void keepAtMost(size_t count);
    // Keeps no new entry at all, and takes no memory for a thread that logs from now on:
    // for a run that only counts lines through the observer. mark() still counts every
    // line; keepAtMost() starts keeping again.
    void keepNone();

    // Waits until some entry from `mark` on satisfies the predicate, or the time is up.
    bool waitFor(size_t mark, const std::function<bool(const LogEntry&)>& predicate,
                 std::chrono::milliseconds timeout) const;
    bool waitForMessage(size_t mark, int priority, const std::string& message,
                        std::chrono::milliseconds timeout) const;

    // Runs the observer on the logging thread for every entry written from now on, after the
    // entry is stored and outside the capture's lock: it may log, wait for entries or hold
    // the logging thread to open a window between two steps of the code under test. One
    // observer at a time; an empty function removes it.
    void setObserver(std::function<void(const LogEntry&)> observer);

    // logcat's brief format: "I/tag: message".
    static std::string Brief(const LogEntry& entry);
    static std::string EscapeForFile(const std::string& message);

private:
    LogCapture() = default;
};

}  // namespace mmisim
