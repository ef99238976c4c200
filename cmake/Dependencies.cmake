# Real platform libraries that Debian packages, and the JDK the application runs on.
#
# Java classes are compiled by the host's JDK. The native code links the JNI headers and the
# JVM library of a JDK for the target processor: the host's own, or in a cross build
# (cmake/aarch64-linux-gnu.cmake) the one unpacked under MMI_TARGET_ROOT.

if(CMAKE_HOST_SYSTEM_PROCESSOR STREQUAL "aarch64")
  set(MMI_HOST_JDK /usr/lib/jvm/java-17-openjdk-arm64)
else()
  set(MMI_HOST_JDK /usr/lib/jvm/java-17-openjdk-amd64)
endif()
if(NOT DEFINED ENV{JAVA_HOME} AND EXISTS ${MMI_HOST_JDK})
  set(ENV{JAVA_HOME} ${MMI_HOST_JDK})
endif()
find_package(Java 17 REQUIRED COMPONENTS Development Runtime)
include(UseJava)

if(CMAKE_CROSSCOMPILING)
  # Target packages that cannot be installed beside the host's are unpacked into a folder of
  # their own (./mmi test --arm64 makes build-arm64/arm64-root): the target JDK, and 7z.so,
  # which Debian's arm64 libbacktrace (under libutils) needs from /usr/lib/p7zip, where the
  # host's package keeps its own. The emulator looks there first for every file a program
  # opens (qemu -L), so the programs find those files at their usual paths; everything else
  # comes from the host's arm64 multiarch folders.
  set(MMI_TARGET_ROOT "" CACHE PATH "Folder of unpacked target packages (cross builds)")
  set(MMI_TARGET_JAVA_HOME ${MMI_TARGET_ROOT}/usr/lib/jvm/java-17-openjdk-arm64)
  foreach(file IN ITEMS ${MMI_TARGET_JAVA_HOME}/include/jni.h ${MMI_TARGET_JAVA_HOME}/bin/java
                        ${MMI_TARGET_ROOT}/usr/lib/p7zip/7z.so)
    if(NOT EXISTS ${file})
      message(FATAL_ERROR "A cross build needs MMI_TARGET_ROOT, a folder of unpacked target packages "
                          "(./mmi test --arm64 makes one): ${file} is missing")
    endif()
  endforeach()
  # MMI_EMULATED tells the programs that they run under the emulator (the flicker benchmark
  # then reports no timing).
  set(CMAKE_CROSSCOMPILING_EMULATOR env MMI_EMULATED=1 ${CMAKE_CROSSCOMPILING_EMULATOR} -L ${MMI_TARGET_ROOT})
  add_link_options(-Wl,-rpath-link,${MMI_TARGET_ROOT}/usr/lib/p7zip)

  set(JNI_INCLUDE_DIRS ${MMI_TARGET_JAVA_HOME}/include ${MMI_TARGET_JAVA_HOME}/include/linux)
  find_library(JVM_LIBRARY jvm PATHS ${MMI_TARGET_JAVA_HOME}/lib/server NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)

  # Tests that start the plain java launcher (the demo, the JUnit example) start the target
  # JDK's launcher under the emulator.
  list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " MMI_EMULATOR_COMMAND)
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/emulated-java/java @ONLY CONTENT [[
#!/bin/sh
# The target processor's java launcher under the emulator (see cmake/Dependencies.cmake).
exec @MMI_EMULATOR_COMMAND@ "@MMI_TARGET_JAVA_HOME@/bin/java" "$@"
]])
  file(CHMOD ${CMAKE_BINARY_DIR}/emulated-java/java
      PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  set(Java_JAVA_EXECUTABLE ${CMAKE_BINARY_DIR}/emulated-java/java)
else()
  find_package(JNI 17 REQUIRED)
  # The JVM library itself, for the test harness that embeds a JVM.
  find_library(JVM_LIBRARY jvm PATHS "$ENV{JAVA_HOME}/lib/server" NO_DEFAULT_PATH REQUIRED)
endif()
get_filename_component(MMI_JVM_LIBRARY_DIR ${JVM_LIBRARY} DIRECTORY)

# Debian's android-liblog-dev / android-libutils-dev ship no pkg-config files.
set(ANDROID_INCLUDE_DIR /usr/include/android)
set(ANDROID_LIB_DIR /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/android)
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

# GoogleTest: Debian's libraries, or in a cross build compiled from Debian's sources for the
# target processor (they define GTest::gtest and GTest::gtest_main too).
if(CMAKE_CROSSCOMPILING)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
else()
  find_package(GTest REQUIRED)
endif()
find_package(benchmark REQUIRED)
find_package(nlohmann_json 3 REQUIRED)
find_package(Threads REQUIRED)
