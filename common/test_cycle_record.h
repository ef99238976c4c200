// The station/cycle text of the factory's test-cycle record (command 143), built the same
// way by both backends: a zero-filled 64-byte buffer holding two fields of exactly two
// characters, station first, cycle second, no separator (station 3 and cycle 7 give
// "0307"). A cycle of kTestCycleNotFormatted leaves the text empty.
#pragma once

#include <securec.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace mmi {

constexpr size_t kTestCycleRecordSize = 64;
constexpr size_t kTestCycleFieldWidth = 2;
// A cycle of this value sends an empty record (the station is not written either).
constexpr int32_t kTestCycleNotFormatted = -100;

using TestCycleRecord = std::array<char, kTestCycleRecordSize>;

// Clears the record with memset_s (size 64, count 64) and, unless the cycle is
// kTestCycleNotFormatted, formats the station and then the cycle with "%02d", each through
// the count-limited snprintf_s with a count of two: wider values are cut to their first two
// characters (station 123 gives "12"; the formatter reports the cut, which is expected
// here). Returns memset_s's result; after an error nothing is formatted.
inline errno_t FormatTestCycleRecord(int32_t stationId, int32_t cycle, TestCycleRecord& record) {
    const errno_t cleared = memset_s(record.data(), record.size(), 0, record.size());
    if (cleared != EOK) return cleared;
    if (cycle != kTestCycleNotFormatted) {
        snprintf_s(record.data(), record.size(), kTestCycleFieldWidth, "%02d", stationId);
        snprintf_s(record.data() + kTestCycleFieldWidth, record.size() - kTestCycleFieldWidth, kTestCycleFieldWidth,
                   "%02d", cycle);
    }
    return EOK;
}

// The length of the record's text (up to its first zero byte, at most the buffer's size).
inline size_t TestCycleRecordLength(const TestCycleRecord& record) { return strnlen(record.data(), record.size()); }

}  // namespace mmi
