# libFuzzer targets, built only with clang and -DMMI_FUZZ=ON (`./mmi test` makes build-fuzz):
# flicker_fuzz (the detector against the literal transcription) and text_fuzz
# (ConvertBinToString). Each runs as a short test (label "fuzz", MMI_FUZZ_SECONDS each).
if(NOT MMI_FUZZ)
  return()
endif()

set(MMI_FUZZ_DIR ${CMAKE_CURRENT_LIST_DIR}/../fuzz)
set(MMI_FUZZ_SECONDS 10 CACHE STRING "Length in seconds of each fuzz target's short run in the tests")

add_executable(flicker_fuzz ${MMI_FUZZ_DIR}/flicker_fuzz.cpp)
target_link_libraries(flicker_fuzz PRIVATE mmi_flicker flicker_reference mmi_warnings)
# The literal transcription is the yardstick here, not the code under test: without
# coverage and sanitizer instrumentation it takes a fraction of the time of each run.
target_compile_options(flicker_reference PRIVATE -fno-sanitize=all)

# The conversions are compiled in from the library's sources; no JVM is involved.
add_executable(text_fuzz ${MMI_FUZZ_DIR}/text_fuzz.cpp ${PROJECT_SOURCE_DIR}/jni/java_helpers.cpp)
target_include_directories(text_fuzz PRIVATE ${PROJECT_SOURCE_DIR}/jni)
target_link_libraries(text_fuzz PRIVATE mmi_common jni_headers c_secshared android_log mmi_warnings)

# Full-size flicker inputs from the start (1024 bytes of samples, 6 of parameters), from the
# seeds of make_flicker_seeds.py; what the targets find stays in <build>/fuzz/*-corpus.
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/fuzz/flicker_fuzz-corpus ${CMAKE_BINARY_DIR}/fuzz/text_fuzz-corpus)
set(flicker_fuzz_options -max_len=1030 -len_control=0
    ${CMAKE_BINARY_DIR}/fuzz/flicker_fuzz-corpus ${MMI_FUZZ_DIR}/seeds/flicker)
set(text_fuzz_options -max_len=512 ${CMAKE_BINARY_DIR}/fuzz/text_fuzz-corpus)
foreach(target IN ITEMS flicker_fuzz text_fuzz)
  target_link_options(${target} PRIVATE -fsanitize=fuzzer)
  add_test(NAME fuzz.${target}
      COMMAND ${target} -max_total_time=${MMI_FUZZ_SECONDS} -seed=1 -print_final_stats=1
              -artifact_prefix=${CMAKE_BINARY_DIR}/fuzz/${target}- ${${target}_options})
  set_tests_properties(fuzz.${target} PROPERTIES
      LABELS fuzz
      TIMEOUT 300
      ENVIRONMENT "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1")
endforeach()
