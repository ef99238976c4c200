# Warnings and sanitizers for the project's own code.

add_library(mmi_warnings INTERFACE)
target_compile_options(mmi_warnings INTERFACE -Wall -Wextra -Werror)

set(MMI_SANITIZE "" CACHE STRING "Sanitizer build: empty, 'address' (with undefined) or 'thread'")
if(MMI_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
elseif(MMI_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
elseif(NOT MMI_SANITIZE STREQUAL "")
  message(FATAL_ERROR "MMI_SANITIZE must be empty, 'address' or 'thread'")
endif()

# Tests that start the plain java launcher (the demo, the JUnit example) get it through a
# wrapper in sanitizer builds: the launcher is not instrumented, so the sanitizer's runtime
# must be loaded before anything else for the library's instrumented code, and the C++
# library with it (the launcher loads it late, after the runtime looked for the functions it
# intercepts). Only the launcher gets them: a preload for every test process would also
# reach CMake's own script runs. LeakSanitizer cannot check a process with a Java VM (it
# stops with a fatal error at exit), so the launcher runs without it.
if(NOT MMI_SANITIZE STREQUAL "")
  if(MMI_SANITIZE STREQUAL "address")
    set(runtime libasan.so)
  else()
    set(runtime libtsan.so)
  endif()
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${runtime}
      OUTPUT_VARIABLE MMI_SANITIZER_RUNTIME OUTPUT_STRIP_TRAILING_WHITESPACE)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libstdc++.so.6
      OUTPUT_VARIABLE MMI_SANITIZER_LIBSTDCXX OUTPUT_STRIP_TRAILING_WHITESPACE)
  set(MMI_REAL_JAVA ${Java_JAVA_EXECUTABLE})
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/sanitized-java/java @ONLY CONTENT [[
#!/bin/sh
# The java launcher with the sanitizer's runtime loaded first (see cmake/ProjectOptions.cmake).
ASAN_OPTIONS="${ASAN_OPTIONS:+$ASAN_OPTIONS:}detect_leaks=0" \
LD_PRELOAD="@MMI_SANITIZER_RUNTIME@ @MMI_SANITIZER_LIBSTDCXX@${LD_PRELOAD:+ $LD_PRELOAD}" exec "@MMI_REAL_JAVA@" "$@"
]])
  file(CHMOD ${CMAKE_BINARY_DIR}/sanitized-java/java
      PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  set(Java_JAVA_EXECUTABLE ${CMAKE_BINARY_DIR}/sanitized-java/java)
endif()

# libFuzzer targets (tests/fuzz, described in tests/cmake/fuzz.cmake). A build of its own
# with clang: every target is instrumented for coverage, AddressSanitizer and
# UndefinedBehaviorSanitizer (any report ends the run); only the fuzz targets link
# libFuzzer's main. Build just those targets: the rest of the project is configured but
# not meant to be built here.
option(MMI_FUZZ "Build the libFuzzer targets (needs clang)" OFF)
if(MMI_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "MMI_FUZZ needs clang: configure with -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++")
  endif()
  if(NOT MMI_SANITIZE STREQUAL "")
    message(FATAL_ERROR "MMI_FUZZ brings its own sanitizers: leave MMI_SANITIZE empty")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
