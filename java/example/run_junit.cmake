# Runs the JUnit 5 example tests with the real java launcher and -Xcheck:jni, and fails when
# a test fails or the JVM printed a JNI warning (-Xcheck:jni only warns).
#   -DJAVA=... -DJUNIT=<console launcher jar> -DCLASSPATH=... -DLIBRARY_PATH=... -DVENDOR_DIR=...
#   -DTESTS=<the jar whose test classes run>
set(ENV{LD_LIBRARY_PATH} "${VENDOR_DIR}:$ENV{LD_LIBRARY_PATH}")
execute_process(
    COMMAND ${JAVA} -Xcheck:jni -Djava.library.path=${LIBRARY_PATH}
            -cp "${JUNIT}:${CLASSPATH}" org.junit.platform.console.ConsoleLauncher
            --disable-banner --details=tree --fail-if-no-tests --disable-ansi-colors
            --scan-classpath ${TESTS}
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output
    RESULT_VARIABLE result)
message("${output}")
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the JUnit tests failed (exit ${result})")
endif()
if(output MATCHES "WARNING in native method|WARNING: JNI local refs|FATAL ERROR in native method")
  message(FATAL_ERROR "the JVM printed a JNI warning")
endif()
