// libFuzzer target, under AddressSanitizer and UndefinedBehaviorSanitizer: the library's text
// conversions against expectations computed here.
// ConvertBinToString, for any bytes and output size: exactly 2n lower-case hexadecimal
// characters and not one byte more (the output buffer has its exact size), or -1 with the
// output untouched and one ERROR line naming both sizes.
// The test-cycle record, for any station and cycle: the first two characters of each "%02d"
// field, station first (empty for the cycle -100), zero-filled to 64 bytes; a failing
// memset_s is reported as such.
// Input: byte 0 picks the case (bit 0: record, else hex; bit 1: fail the record's memset_s),
// then two int32 (station, cycle), or a uint16 output size and the bytes to convert.
#include <android/log.h>
#include <hostcontrol/securec_faults.h>
#include <test_cycle_record.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "java_helpers.h"

namespace {

struct LogLine {
    int priority;
    std::string message;
};
std::vector<LogLine> g_lines;

void CaptureLine(const __android_logger_data* data, const char* message) {
    g_lines.push_back(LogLine{data->priority, message != nullptr ? message : ""});
}

[[noreturn]] void Fail(const std::string& what) {
    std::fprintf(stderr, "text_fuzz: %s\n", what.c_str());
    std::abort();
}

// "%02d" without printf: the decimal digits with their sign, zero-padded on the left (after
// the sign) to two characters.
std::string TwoDigitField(int32_t value) {
    std::string field = std::to_string(value);
    if (field.size() < 2) field.insert(value < 0 ? 1 : 0, 2 - field.size(), '0');
    return field;
}

void CheckTestCycleRecord(const uint8_t* data, size_t size, bool failMemset) {
    int32_t fields[2] = {0, 0};  // station, cycle
    std::memcpy(fields, data, size < sizeof(fields) ? size : sizeof(fields));
    mmi::TestCycleRecord record;
    std::memset(record.data(), 0x5a, record.size());
    if (failMemset) hostcontrol::FailNextMemset(SECUREC_ERANGE_AND_RESET, 1);
    const errno_t result = mmi::FormatTestCycleRecord(fields[0], fields[1], record);
    hostcontrol::ClearSecurecFaults();
    if (failMemset) {
        if (result != SECUREC_ERANGE_AND_RESET) Fail("a failed memset_s was not reported");
        return;
    }
    if (result != EOK) Fail("memset_s failed without a fault: " + std::to_string(result));

    const std::string expected = fields[1] == mmi::kTestCycleNotFormatted
                                         ? ""
                                         : TwoDigitField(fields[0]).substr(0, 2) + TwoDigitField(fields[1]).substr(0, 2);
    const size_t length = mmi::TestCycleRecordLength(record);
    if (std::string(record.data(), length) != expected) {
        Fail("station " + std::to_string(fields[0]) + ", cycle " + std::to_string(fields[1]) + ": record \"" +
             std::string(record.data(), length) + "\", expected \"" + expected + "\"");
    }
    for (size_t i = length; i < record.size(); ++i) {
        if (record[i] != '\0') Fail("the record is not zero-filled after its text at byte " + std::to_string(i));
    }
}

void CheckConvertBinToString(const uint8_t* data, size_t size) {
    uint16_t outputSize = 0;
    std::memcpy(&outputSize, data, size < 2 ? size : 2);
    const auto count = static_cast<unsigned int>(size < 2 ? 0 : size - 2);
    // Buffers of exact sizes, the output filled with a marker no conversion writes (an empty
    // one may be null: the conversion must fail then anyway).
    std::vector<char> output(outputSize, '\x7f');
    std::vector<unsigned char> input(data + (size < 2 ? size : 2), data + size);
    input.reserve(1);

    g_lines.clear();
    const int result = ConvertBinToString(input.data(), count, output.empty() ? nullptr : output.data(), outputSize);
    const std::string sizes = "numLen: " + std::to_string(count) + ", strLen: " + std::to_string(outputSize);
    if (count == 0 || 2ull * count > outputSize) {
        if (result != -1) Fail("invalid sizes accepted: " + sizes);
        for (char c : output) {
            if (c != '\x7f') Fail("a failed conversion wrote to the output");
        }
        const std::string line = "ZtMmiTest_jni: ConvertBinToString fail, parameter is invalid, " + sizes;
        if (g_lines.size() != 1 || g_lines[0].priority != ANDROID_LOG_ERROR || g_lines[0].message != line) {
            Fail("a failed conversion did not write exactly the line \"" + line + "\"");
        }
        return;
    }
    if (result != 0) Fail("valid sizes refused: " + sizes);
    if (!g_lines.empty()) Fail("a successful conversion logged \"" + g_lines[0].message + "\"");
    static const char kDigits[] = "0123456789abcdef";
    for (unsigned int i = 0; i < count; ++i) {
        if (output[2 * i] != kDigits[input[i] / 16] || output[2 * i + 1] != kDigits[input[i] % 16]) {
            Fail("byte " + std::to_string(i) + " (" + std::to_string(input[i]) + ") converted to \"" +
                 std::string(&output[2 * i], 2) + "\"");
        }
    }
    for (size_t i = 2ull * count; i < output.size(); ++i) {
        if (output[i] != '\x7f') Fail("the conversion wrote past 2n characters at byte " + std::to_string(i));
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    __android_log_set_logger(CaptureLine);
    // Null buffers are refused with the line naming the sizes, whatever the sizes.
    unsigned char byte = 0xab;
    char text[4] = {'\x7f', '\x7f', '\x7f', '\x7f'};
    g_lines.clear();
    if (ConvertBinToString(nullptr, 1, text, 4) != -1 || ConvertBinToString(&byte, 1, nullptr, 4) != -1) {
        Fail("a null buffer was accepted");
    }
    if (g_lines.size() != 2 || text[0] != '\x7f') Fail("null buffers: not one line each, or the output was written");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    if (data[0] & 1) {
        CheckTestCycleRecord(data + 1, size - 1, (data[0] & 2) != 0);
    } else {
        CheckConvertBinToString(data + 1, size - 1);
    }
    return 0;
}
