# Runs the JUnit 5 example tests with the real java launcher and -Xcheck:jni, twice: classes
# and methods in the order of their names, then in the reverse order
# (com.corvex.mmitest.example.ReverseOrder). Fails when a test fails, when the JVM printed a
# JNI warning (-Xcheck:jni only warns), or when a test's result differs between the orders.
#   -DJAVA=... -DJUNIT=<console launcher jar> -DCLASSPATH=... -DLIBRARY_PATH=... -DVENDOR_DIR=...
#   -DTESTS=<the jar whose test classes run> -DREPORTS=<folder for the XML reports>
cmake_minimum_required(VERSION 3.25)
set(ENV{LD_LIBRARY_PATH} "${VENDOR_DIR}:$ENV{LD_LIBRARY_PATH}")

# Each test of a report as "class#name: outcome", sorted. A test's outcome element comes
# before its output (<system-out>), which may hold any text.
function(read_results report out)
  file(READ ${report} rest)
  set(results)
  while(TRUE)
    string(FIND "${rest}" "<testcase " start)
    if(start EQUAL -1)
      break()
    endif()
    math(EXPR start "${start} + 10")
    string(SUBSTRING "${rest}" ${start} -1 rest)
    set(case "${rest}")
    foreach(end IN ITEMS "<testcase " "<system-out" "</testcase>")
      string(FIND "${case}" "${end}" at)
      if(NOT at EQUAL -1)
        string(SUBSTRING "${case}" 0 ${at} case)
      endif()
    endforeach()
    string(REGEX MATCH "^name=\"([^\"]*)\"" _ "${case}")
    set(name "${CMAKE_MATCH_1}")
    string(REGEX MATCH "classname=\"([^\"]*)\"" _ "${case}")
    set(class "${CMAKE_MATCH_1}")
    set(outcome passed)
    foreach(kind IN ITEMS failure error skipped)
      string(FIND "${case}" "<${kind}" at)
      if(NOT at EQUAL -1)
        set(outcome ${kind})
      endif()
    endforeach()
    list(APPEND results "${class}#${name}: ${outcome}")
  endwhile()
  list(SORT results)
  set(${out} "${results}" PARENT_SCOPE)
endfunction()

set(orders
    "org.junit.jupiter.api.ClassOrderer$ClassName|org.junit.jupiter.api.MethodOrderer$MethodName"
    "com.corvex.mmitest.example.ReverseOrder|com.corvex.mmitest.example.ReverseOrder")
set(run 0)
set(failed FALSE)
foreach(order IN LISTS orders)
  math(EXPR run "${run} + 1")
  string(REPLACE "|" ";" orderers "${order}")
  list(GET orderers 0 classOrder)
  list(GET orderers 1 methodOrder)
  file(REMOVE_RECURSE ${REPORTS}/${run})
  message("== run ${run}: classes by ${classOrder}, methods by ${methodOrder}")
  execute_process(
      COMMAND ${JAVA} -Xcheck:jni -Djava.library.path=${LIBRARY_PATH}
              -cp "${JUNIT}:${CLASSPATH}" org.junit.platform.console.ConsoleLauncher
              --disable-banner --details=tree --fail-if-no-tests --disable-ansi-colors
              --config=junit.jupiter.testclass.order.default=${classOrder}
              --config=junit.jupiter.testmethod.order.default=${methodOrder}
              --reports-dir=${REPORTS}/${run}
              --scan-classpath ${TESTS}
      OUTPUT_VARIABLE output
      ERROR_VARIABLE output
      RESULT_VARIABLE result)
  message("${output}")
  if(NOT result EQUAL 0)
    message(SEND_ERROR "run ${run}: the JUnit tests failed (exit ${result})")
    set(failed TRUE)
  endif()
  if(output MATCHES "WARNING in native method|WARNING: JNI local refs|FATAL ERROR in native method")
    message(SEND_ERROR "run ${run}: the JVM printed a JNI warning")
    set(failed TRUE)
  endif()
  read_results(${REPORTS}/${run}/TEST-junit-jupiter.xml results${run})
endforeach()

list(LENGTH results1 count)
if(count EQUAL 0)
  message(FATAL_ERROR "no test results in ${REPORTS}/1/TEST-junit-jupiter.xml")
endif()
if(NOT results1 STREQUAL results2)
  string(REPLACE ";" "\n  " first "${results1}")
  string(REPLACE ";" "\n  " second "${results2}")
  message(FATAL_ERROR "the results differ between the orders:\nby name:\n  ${first}\nreversed:\n  ${second}")
endif()
message("${count} tests, the same results in both orders")
if(failed)
  message(FATAL_ERROR "the JUnit example failed")
endif()
