# Runs the demo once and checks its exit status and its output.
#   -DJAVA=... -DCLASSPATH=... -DLIBRARY_PATH=... -DVENDOR_DIR=...
#   -DARGS=<demo arguments> -DEXPECT_EXIT=<status>
#   -DEXPECT=<texts the output must contain>
# Lists are joined by "^^".
foreach(list IN ITEMS ARGS EXPECT)
  string(REPLACE "^^" ";" ${list} "${${list}}")
endforeach()
set(ENV{LD_LIBRARY_PATH} "${VENDOR_DIR}:$ENV{LD_LIBRARY_PATH}")
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
