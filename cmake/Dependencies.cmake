# Real platform libraries that Debian packages, and the JDK the application runs on.

if(NOT DEFINED ENV{JAVA_HOME} AND EXISTS /usr/lib/jvm/java-17-openjdk-amd64)
  set(ENV{JAVA_HOME} /usr/lib/jvm/java-17-openjdk-amd64)
endif()
find_package(Java 17 REQUIRED COMPONENTS Development Runtime)
find_package(JNI 17 REQUIRED)
include(UseJava)

# The JVM library itself, for the test harness that embeds a JVM.
find_library(JVM_LIBRARY jvm PATHS "$ENV{JAVA_HOME}/lib/server" NO_DEFAULT_PATH REQUIRED)

# Debian's android-liblog-dev / android-libutils-dev ship no pkg-config files.
set(ANDROID_INCLUDE_DIR /usr/include/android)
set(ANDROID_LIB_DIR /usr/lib/x86_64-linux-gnu/android)
find_library(ANDROID_LOG_LIBRARY log PATHS ${ANDROID_LIB_DIR} NO_DEFAULT_PATH REQUIRED)
find_library(ANDROID_UTILS_LIBRARY utils PATHS ${ANDROID_LIB_DIR} NO_DEFAULT_PATH REQUIRED)
if(NOT EXISTS ${ANDROID_INCLUDE_DIR}/nativehelper/jni_macros.h)
  message(FATAL_ERROR "android-libnativehelper-dev is missing (nativehelper/jni_macros.h)")
endif()

add_library(android_log INTERFACE)
target_include_directories(android_log SYSTEM INTERFACE ${ANDROID_INCLUDE_DIR})
target_link_libraries(android_log INTERFACE ${ANDROID_LOG_LIBRARY})
target_link_options(android_log INTERFACE "-Wl,-rpath,${ANDROID_LIB_DIR}")

add_library(android_utils INTERFACE)
target_include_directories(android_utils SYSTEM INTERFACE ${ANDROID_INCLUDE_DIR})
target_link_libraries(android_utils INTERFACE ${ANDROID_UTILS_LIBRARY} android_log)

# Only the header-only part of libnativehelper (jni_macros.h): its shared library
# exports JNI_CreateJavaVM and must never be linked.
add_library(nativehelper_headers INTERFACE)
target_include_directories(nativehelper_headers SYSTEM INTERFACE ${ANDROID_INCLUDE_DIR})

add_library(jni_headers INTERFACE)
target_include_directories(jni_headers SYSTEM INTERFACE ${JNI_INCLUDE_DIRS})

find_package(GTest REQUIRED)
find_package(benchmark REQUIRED)
find_package(nlohmann_json 3 REQUIRED)
find_package(Threads REQUIRED)
