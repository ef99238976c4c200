// Logging of the library: every line goes to the Android log with no tag (liblog puts the
// process name there). Lines written as "%s: ..." take kLogPrefix as their first argument.
#pragma once

#include <android/log.h>

namespace mmi {
constexpr const char* kLogPrefix = "ZtMmiTest_jni";
}  // namespace mmi

#define MMI_LOGI(...) __android_log_print(ANDROID_LOG_INFO, nullptr, __VA_ARGS__)
#define MMI_LOGW(...) __android_log_print(ANDROID_LOG_WARN, nullptr, __VA_ARGS__)
#define MMI_LOGE(...) __android_log_print(ANDROID_LOG_ERROR, nullptr, __VA_ARGS__)
