// libFuzzer target (ASan, UBSan): ConvertBinToString of any bytes (after a uint16 output size)
// gives exactly 2n lower-case hexadecimal digits and not one byte more (the output buffer has
// its exact size), or -1 with the output untouched and one ERROR line naming both sizes.
#include <android/log.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "java_helpers.h"

namespace {

std::vector<std::pair<int, std::string>> g_lines;  // priority, message

void CaptureLine(const __android_logger_data* data, const char* message) {
    g_lines.emplace_back(data->priority, message != nullptr ? message : "");
}

[[noreturn]] void Fail(const std::string& what) {
    std::fprintf(stderr, "text_fuzz: %s\n", what.c_str());
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    __android_log_set_logger(CaptureLine);
    unsigned char byte = 0xab;  // null buffers are refused with the line naming the sizes
    char text[4] = {'\x7f', '\x7f', '\x7f', '\x7f'};
    if (ConvertBinToString(nullptr, 1, text, 4) != -1 || ConvertBinToString(&byte, 1, nullptr, 4) != -1 ||
        g_lines.size() != 2 || text[0] != '\x7f') {
        Fail("a null buffer was accepted, not logged once, or the output was written");
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
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
        if (std::count(output.begin(), output.end(), '\x7f') != outputSize) Fail("a failed conversion wrote");
        const std::string line = "ZtMmiTest_jni: ConvertBinToString fail, parameter is invalid, " + sizes;
        if (g_lines.size() != 1 || g_lines[0] != std::make_pair(int{ANDROID_LOG_ERROR}, line)) {
            Fail("a failed conversion did not write exactly the line \"" + line + "\"");
        }
        return 0;
    }
    if (result != 0) Fail("valid sizes refused: " + sizes);
    if (!g_lines.empty()) Fail("a successful conversion logged \"" + g_lines[0].second + "\"");
    static const char kDigits[] = "0123456789abcdef";
    for (size_t i = 0; i < output.size(); ++i) {  // two digits a byte, then the marker untouched
        const char expected = i >= 2ull * count ? '\x7f' : kDigits[i % 2 ? input[i / 2] % 16 : input[i / 2] / 16];
        if (output[i] != expected) Fail("output byte " + std::to_string(i) + " is not '" + expected + "'");
    }
    return 0;
}
