# The simulated handset as a tool: profiles, the light, the log capture, and the demo on
# every shipped profile (and a broken one) through the java launcher with -Xcheck:jni.
set(MMI_PROFILES_TEST_DIR ${CMAKE_CURRENT_LIST_DIR}/../profiles)

add_executable(mmi_profile_tests
    ${MMI_PROFILES_TEST_DIR}/profile_loader_test.cpp
    ${MMI_PROFILES_TEST_DIR}/light_source_test.cpp
    ${MMI_PROFILES_TEST_DIR}/log_capture_test.cpp)
target_link_libraries(mmi_profile_tests PRIVATE mmi_sim mmi_flicker nlohmann_json::nlohmann_json GTest::gtest_main
    mmi_warnings)
gtest_discover_tests(mmi_profile_tests TEST_PREFIX profiles. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)

set(MMI_DEMO_CLASSPATH
    "${CMAKE_BINARY_DIR}/java/mmi_app.jar:${CMAKE_BINARY_DIR}/java/mmi_sim.jar:${CMAKE_BINARY_DIR}/java/mmi_demo.jar")

# demo.NAME: the demo with ARGS exits with EXPECT_EXIT and prints every text of EXPECT.
function(mmi_demo_test name)
  cmake_parse_arguments(DEMO "" "EXPECT_EXIT" "ARGS;EXPECT" ${ARGN})
  string(REPLACE ";" "^^" args "${DEMO_ARGS}")  # lists travel to the script joined by "^^"
  string(REPLACE ";" "^^" expect "${DEMO_EXPECT}")
  add_test(NAME demo.${name}
      COMMAND ${CMAKE_COMMAND} -DJAVA=${Java_JAVA_EXECUTABLE} -DCLASSPATH=${MMI_DEMO_CLASSPATH}
              -DLIBRARY_PATH=${CMAKE_LIBRARY_OUTPUT_DIRECTORY} -DVENDOR_DIR=${CMAKE_BINARY_DIR}/vendor/lib
              "-DARGS=${args}" -DEXPECT_EXIT=${DEMO_EXPECT_EXIT} "-DEXPECT=${expect}"
              -P ${MMI_PROFILES_TEST_DIR}/run_demo.cmake)
  set_tests_properties(demo.${name} PROPERTIES TIMEOUT 300)
endfunction()

# Every shipped profile, aidl as the default, hidl with the flicker plot.
set(MMI_DEMO_WHOLE "61 of 61 native methods called" "Log (logcat -v brief)" "I/java: ZtMmiTest_jni: InitMmiNativeManager")
foreach(profile IN ITEMS legacy mixed bare flaky)
  mmi_demo_test(${profile} ARGS --device ${profile} EXPECT_EXIT 0 EXPECT "Simulated handset: ${profile} (" ${MMI_DEMO_WHOLE})
endforeach()
mmi_demo_test(aidl EXPECT_EXIT 0
    EXPECT "Simulated handset: aidl (" ${MMI_DEMO_WHOLE} "backends: AIDL 57 HIDL 4"
           "getBsnNative()                                                   AIDL     \"ZT26A0012345\"")
mmi_demo_test(hidl ARGS --device hidl --flicker-plot ${CMAKE_BINARY_DIR}/demo_flicker_hidl.svg EXPECT_EXIT 0
    EXPECT "Simulated handset: hidl (" ${MMI_DEMO_WHOLE}
           "getBsnNative()                                                   HIDL     \"ZT24H0098765\""
           "getCapabilitiesNative()                                          none     null"
           "Flicker spectrum written to ${CMAKE_BINARY_DIR}/demo_flicker_hidl.svg: light at 120 Hz; peak in bin 123")
mmi_demo_test(kill_aidl ARGS --device aidl --kill factory --kill camera EXPECT_EXIT 0
    EXPECT "-- killing the factory service --" "-- the library handled the death and dropped its connections --"
           "Factory interface (while the factory service is dead)"
           "getBsnNative()                                                   HIDL     \"\""
           "Factory interface (after the factory service came back)"
           "Camera always-on service (after the camera service came back)"
           "W/java: ServiceDied, remote hal service died" "E/java: RestartAidl" "61 of 61 native methods called (86 calls)")
mmi_demo_test(kill_hidl ARGS --device hidl --kill light EXPECT_EXIT 0
    EXPECT "Light (while the light service is dead)" "W/java: ZtMmiTest_jni: ProcessServiceDied, cookie is:6"
           "isPreexisting:0" "Light (after the light service came back)")
mmi_demo_test(kill_unserved ARGS --device bare --kill vibrator EXPECT_EXIT 0
    EXPECT "-- the vibrator service is not served on this handset: nothing to kill --")
mmi_demo_test(broken_profile ARGS --device ${MMI_PROFILES_TEST_DIR}/broken_display_version.json EXPECT_EXIT 1
    EXPECT "demo: bad device profile: ${MMI_PROFILES_TEST_DIR}/broken_display_version.json: families.display.version: HIDL display has no version 1.9 (served versions: 1.0 to 1.5)")
mmi_demo_test(unknown_family ARGS --kill modem EXPECT_EXIT 2
    EXPECT "demo: unknown family for --kill: modem" "usage: demo [--device NAME|FILE]")
