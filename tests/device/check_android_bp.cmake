# Every Android.bp of the source tree parses and is formatted as bpfmt formats it: bpfmt -d
# prints nothing and exits 0 for such a file, and names the line and column of a parse error.
#
# -D SOURCE_DIR=<source tree> BPFMT=<bpfmt>
cmake_minimum_required(VERSION 3.25)

foreach(var SOURCE_DIR BPFMT)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "check_android_bp.cmake needs -D${var}=...")
  endif()
endforeach()

# Build folders and the repository itself are not looked into.
file(GLOB entries LIST_DIRECTORIES true RELATIVE ${SOURCE_DIR} ${SOURCE_DIR}/*)
set(files "")
foreach(entry IN LISTS entries)
  if(entry MATCHES "^(build.*|\\..*)$")
    continue()
  endif()
  if(entry STREQUAL "Android.bp")
    list(APPEND files ${SOURCE_DIR}/${entry})
  elseif(IS_DIRECTORY ${SOURCE_DIR}/${entry})
    file(GLOB_RECURSE found ${SOURCE_DIR}/${entry}/Android.bp)
    list(APPEND files ${found})
  endif()
endforeach()
if(NOT EXISTS ${SOURCE_DIR}/Android.bp)
  message(FATAL_ERROR "${SOURCE_DIR}/Android.bp is missing")
endif()

set(failures "")
foreach(file IN LISTS files)
  execute_process(COMMAND ${BPFMT} -d ${file} RESULT_VARIABLE failed OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(failed OR NOT output STREQUAL "")
    list(APPEND failures "${file} (bpfmt exit ${failed}):\n${output}")
  endif()
endforeach()
list(LENGTH files count)
if(failures)
  list(JOIN failures "\n" failures)
  message(FATAL_ERROR "not as bpfmt formats it:\n${failures}")
endif()
message(STATUS "${count} Android.bp files parse and are formatted as bpfmt formats them")
