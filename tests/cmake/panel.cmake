# Video interpolation: each executable runs with one build of the simulated vendor library on
# LD_LIBRARY_PATH, the current one or an older one lacking two entry points.
set(MMI_PANEL_EXECUTABLES mmi_panel_tests mmi_older_panel_tests)
set(MMI_PANEL_LIBRARIES pixelworks_mmi_sim pixelworks_mmi_sim_older)
set(MMI_PANEL_SOURCES panel/panel_library_test.cpp panel/older_panel_library_test.cpp)
foreach(executable library source IN ZIP_LISTS MMI_PANEL_EXECUTABLES MMI_PANEL_LIBRARIES MMI_PANEL_SOURCES)
  add_executable(${executable} ${source})
  target_include_directories(${executable} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/panel
      $<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>)
  target_link_libraries(${executable} PRIVATE mmi_test_harness mmi_warnings)
  add_dependencies(${executable} ZtMmi_jni mmi_app mmi_sim_java ${library})
  get_target_property(library_dir ${library} LIBRARY_OUTPUT_DIRECTORY)
  gtest_discover_tests(${executable} DISCOVERY_TIMEOUT 60
      PROPERTIES TIMEOUT 120 ENVIRONMENT_MODIFICATION "LD_LIBRARY_PATH=path_list_prepend:${library_dir}")
endforeach()
