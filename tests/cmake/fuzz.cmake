# libFuzzer targets, built only by a clang build configured with -DMMI_FUZZ=ON
# (`./mmi test` makes one in build-fuzz):
#   flicker_fuzz  the flicker detector, every kernel and the public entry, bit for bit
#                 against the literal transcription, for any 256 samples
#   text_fuzz     ConvertBinToString and the test-cycle record against independent
#                 expectations
# Each is registered as a short run (label "fuzz", MMI_FUZZ_SECONDS each); crash inputs
# are written to <build>/fuzz/. The README describes a long run.
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

# The flicker target's inputs are 1024 bytes of samples and 6 of parameters: full-size
# inputs from the start rather than libFuzzer's slowly growing lengths.
# It starts from the seeds in tests/fuzz/seeds/flicker (see make_flicker_seeds.py); inputs
# it finds are kept in <build>/fuzz/flicker_fuzz-corpus for later runs.
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
