# Runs the demo once and checks its exit status, its output and the files it wrote.
#   -DJAVA=... -DCLASSPATH=... -DLIBRARY_PATH=... -DVENDOR_DIR=...
#   -DARGS=<demo arguments> -DEXPECT_EXIT=<status>
#   -DEXPECT=<texts the output must contain>
#   -DFILE=<a file the demo writes> -DFILE_EXPECT=<texts that file must contain>
# Lists are joined by "^^".
foreach(list IN ITEMS ARGS EXPECT FILE_EXPECT)
  string(REPLACE "^^" ";" ${list} "${${list}}")
endforeach()
set(ENV{LD_LIBRARY_PATH} "${VENDOR_DIR}:$ENV{LD_LIBRARY_PATH}")
if(DEFINED FILE)
  file(REMOVE "${FILE}")
endif()
execute_process(
    COMMAND ${JAVA} -Xcheck:jni -Djava.library.path=${LIBRARY_PATH} -cp ${CLASSPATH}
            com.corvex.mmitest.demo.Demo ${ARGS}
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output
    RESULT_VARIABLE result
    TIMEOUT 240)
message("${output}")
if(NOT result STREQUAL "${EXPECT_EXIT}")
  message(FATAL_ERROR "the demo exited with ${result}, not ${EXPECT_EXIT}")
endif()
if(output MATCHES "WARNING in native method|WARNING: JNI local refs|FATAL ERROR in native method")
  message(FATAL_ERROR "the JVM printed a JNI warning")
endif()
foreach(text IN LISTS EXPECT)
  string(FIND "${output}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "the demo's output lacks: ${text}")
  endif()
endforeach()
if(DEFINED FILE)
  if(NOT EXISTS "${FILE}")
    message(FATAL_ERROR "the demo did not write ${FILE}")
  endif()
  file(READ "${FILE}" written)
  foreach(text IN LISTS FILE_EXPECT)
    string(FIND "${written}" "${text}" at)
    if(at EQUAL -1)
      message(FATAL_ERROR "${FILE} lacks: ${text}")
    endif()
  endforeach()
endif()
