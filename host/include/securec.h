// Bounds-checked memory and text functions of the platform library libc_secshared.
// Same names, argument order and results as on the device.
#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifndef EOK
#define EOK 0
#endif
typedef int errno_t;

// Error results. The *_AND_RESET forms mean that the destination was also cleared
// (or filled) before returning.
#define SECUREC_EINVAL 22
#define SECUREC_ERANGE 34
#define SECUREC_EINVAL_AND_RESET (22 | 128)
#define SECUREC_ERANGE_AND_RESET (34 | 128)
#define SECUREC_EOVERLAP_AND_RESET (54 | 128)

// Largest destination size accepted by the functions below.
#define SECUREC_MEM_MAX_LEN 0x7fffffffUL
#define SECUREC_STRING_MAX_LEN 0x7fffffffUL

// Fills count bytes of dest with c. Returns EOK, or an error when dest is null,
// destMax is 0 or too large, or count exceeds destMax (then destMax bytes are filled).
errno_t memset_s(void* dest, size_t destMax, int c, size_t count);

// Copies count bytes from src to dest. Returns EOK, or an error (and clears dest)
// when an argument is invalid, count exceeds destMax or the buffers overlap.
errno_t memcpy_s(void* dest, size_t destMax, const void* src, size_t count);

// Formats at most count characters into strDest (always NUL-terminated when strDest and
// destMax are valid). Returns the number of characters written, or -1 when the output
// was cut at count characters, did not fit into destMax, or an argument is invalid.
int snprintf_s(char* strDest, size_t destMax, size_t count, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

#ifdef __cplusplus
}
#endif
