# Factory record tests that need an environment of their own: the application's model
# classes as another build may declare them (fields missing or of another type), first on
# the class path of the embedded JVM.
set(MMI_RECORDS_DIR ${CMAKE_CURRENT_LIST_DIR}/../records)

file(GLOB_RECURSE MMI_RECORDS_MODELS CONFIGURE_DEPENDS ${MMI_RECORDS_DIR}/java/*.java)
add_jar(mmi_records_models SOURCES ${MMI_RECORDS_MODELS} OUTPUT_DIR ${CMAKE_BINARY_DIR}/java)

add_executable(mmi_records_tests ${MMI_RECORDS_DIR}/model_fields_test.cpp)
target_link_libraries(mmi_records_tests PRIVATE mmi_test_harness mmi_warnings)
add_dependencies(mmi_records_tests ZtMmi_jni mmi_app mmi_sim_java mmi_records_models)
gtest_discover_tests(mmi_records_tests DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 120 ENVIRONMENT "MMI_TEST_CLASSPATH=${CMAKE_BINARY_DIR}/java/mmi_records_models.jar")

# The test-cycle tests make memset_s fail through the host library's fault switch, so the
# test program shares the library's copy of it.
target_link_libraries(mmi_tests PRIVATE c_secshared)
