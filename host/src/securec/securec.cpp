#include <securec.h>

#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

#include <hostcontrol/securec_faults.h>

namespace {

std::atomic<unsigned> g_memsetFailures{0};
std::atomic<errno_t> g_memsetFailureCode{EOK};

bool TakeMemsetFailure(errno_t* code) {
    unsigned pending = g_memsetFailures.load();
    while (pending > 0) {
        if (g_memsetFailures.compare_exchange_weak(pending, pending - 1)) {
            *code = g_memsetFailureCode.load();
            return true;
        }
    }
    return false;
}

bool Overlaps(const void* a, const void* b, size_t n) {
    auto x = reinterpret_cast<uintptr_t>(a);
    auto y = reinterpret_cast<uintptr_t>(b);
    return (x < y + n) && (y < x + n);
}

}  // namespace

namespace hostcontrol {

void FailNextMemset(errno_t code, unsigned times) {
    g_memsetFailureCode.store(code);
    g_memsetFailures.store(times);
}

void ClearSecurecFaults() { g_memsetFailures.store(0); }

}  // namespace hostcontrol

extern "C" errno_t memset_s(void* dest, size_t destMax, int c, size_t count) {
    errno_t injected;
    if (TakeMemsetFailure(&injected)) return injected;
    if (destMax == 0 || destMax > SECUREC_MEM_MAX_LEN) return SECUREC_ERANGE;
    if (dest == nullptr) return SECUREC_EINVAL;
    if (count > destMax) {
        std::memset(dest, c, destMax);
        return SECUREC_ERANGE_AND_RESET;
    }
    std::memset(dest, c, count);
    return EOK;
}

extern "C" errno_t memcpy_s(void* dest, size_t destMax, const void* src, size_t count) {
    if (destMax == 0 || destMax > SECUREC_MEM_MAX_LEN) return SECUREC_ERANGE;
    if (dest == nullptr) return SECUREC_EINVAL;
    if (src == nullptr) {
        std::memset(dest, 0, destMax);
        return SECUREC_EINVAL_AND_RESET;
    }
    if (count > destMax) {
        std::memset(dest, 0, destMax);
        return SECUREC_ERANGE_AND_RESET;
    }
    if (count == 0 || dest == src) return EOK;
    if (Overlaps(dest, src, count)) {
        std::memset(dest, 0, destMax);
        return SECUREC_EOVERLAP_AND_RESET;
    }
    std::memcpy(dest, src, count);
    return EOK;
}

extern "C" int snprintf_s(char* strDest, size_t destMax, size_t count, const char* format, ...) {
    if (strDest == nullptr || destMax == 0 || destMax > SECUREC_STRING_MAX_LEN) return -1;
    if (format == nullptr) {
        strDest[0] = '\0';
        return -1;
    }
    va_list args;
    va_start(args, format);
    va_list measure;
    va_copy(measure, args);
    int needed = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (needed < 0) {
        va_end(args);
        strDest[0] = '\0';
        return -1;
    }
    std::vector<char> full(static_cast<size_t>(needed) + 1);
    std::vsnprintf(full.data(), full.size(), format, args);
    va_end(args);

    const auto length = static_cast<size_t>(needed);
    if (count < destMax) {
        // Count-limited: keep the first `count` characters; cutting is reported as -1.
        size_t kept = length < count ? length : count;
        std::memcpy(strDest, full.data(), kept);
        strDest[kept] = '\0';
        return length > count ? -1 : static_cast<int>(kept);
    }
    // The count does not limit: the output must fit the destination as a whole.
    if (length >= destMax) {
        strDest[0] = '\0';
        return -1;
    }
    std::memcpy(strDest, full.data(), length + 1);
    return static_cast<int>(length);
}
