# Load with service faults: threads attached to the Java VM call every native method while a
# seeded schedule kills and restarts the handset's services. The display processor's vendor
# library is on the loader's path, so video interpolation runs under the load too. One test
# per handset.
file(GLOB MMI_STRESS_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/../stress/*.cpp)
add_executable(mmi_stress_tests ${MMI_STRESS_SOURCES})
target_link_libraries(mmi_stress_tests PRIVATE mmi_test_harness mmi_warnings)
add_dependencies(mmi_stress_tests ZtMmi_jni mmi_app mmi_sim_java pixelworks_mmi_sim)
get_target_property(MMI_STRESS_PANEL_DIR pixelworks_mmi_sim LIBRARY_OUTPUT_DIRECTORY)
# The run measures the process's allocations to the kilobyte, so the Java VM runs interpreted
# with the serial collector and glibc keeps no per-thread caches (docs/stress.md says why);
# not in a sanitizer build, whose allocator replaces malloc. A run ends within
# MMI_STRESS_TIME_FACTOR times its load time; CTest's timeout, from the same figures, stops
# only a process that hangs outside the run's own waits. The tests are listed, not
# discovered, so that their environment (a list) reaches CTest whole.
set(MMI_STRESS_TIME_FACTOR 30)
set(MMI_STRESS_SECONDS_CONFIGURED 4)
if(DEFINED ENV{MMI_STRESS_SECONDS} AND "$ENV{MMI_STRESS_SECONDS}" MATCHES "^([0-9]+)")
  math(EXPR MMI_STRESS_SECONDS_CONFIGURED "${CMAKE_MATCH_1} + 1")
endif()
math(EXPR MMI_STRESS_TIMEOUT "${MMI_STRESS_TIME_FACTOR} * ${MMI_STRESS_SECONDS_CONFIGURED} + 120")
target_compile_definitions(mmi_stress_tests PRIVATE MMI_STRESS_TIME_FACTOR=${MMI_STRESS_TIME_FACTOR})
set(MMI_STRESS_ENVIRONMENT "")
if(MMI_SANITIZE STREQUAL "")
  set(MMI_STRESS_ENVIRONMENT "JAVA_TOOL_OPTIONS=-Xint -XX:+UseSerialGC" "GLIBC_TUNABLES=glibc.malloc.tcache_count=0")
endif()
foreach(handset IN ITEMS Aidl Hidl Mixed)
  add_test(NAME StressTest.${handset}Handset COMMAND mmi_stress_tests --gtest_filter=StressTest.${handset}Handset)
  set_tests_properties(StressTest.${handset}Handset PROPERTIES
      TIMEOUT ${MMI_STRESS_TIMEOUT}
      ENVIRONMENT "${MMI_STRESS_ENVIRONMENT}"
      ENVIRONMENT_MODIFICATION "LD_LIBRARY_PATH=path_list_prepend:${MMI_STRESS_PANEL_DIR}")
endforeach()
