# Video interpolation through the display processor's vendor library: each executable runs
# with one build of the simulated library on the loader's path (LD_LIBRARY_PATH), the
# current one or an older one that lacks two entry points. The tests of a handset without
# the library are in the main test executable, which has neither on its path.
foreach(variant IN ITEMS current older)
  if(variant STREQUAL "current")
    set(executable mmi_panel_tests)
    set(library pixelworks_mmi_sim)
    set(source panel/panel_library_test.cpp)
  else()
    set(executable mmi_older_panel_tests)
    set(library pixelworks_mmi_sim_older)
    set(source panel/older_panel_library_test.cpp)
  endif()
  add_executable(${executable} ${source} panel/panel_control.cpp)
  target_include_directories(${executable} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/panel)
  # The panel library's header only: the tests reach the library through dlopen.
  target_include_directories(${executable} PRIVATE $<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>)
  target_link_libraries(${executable} PRIVATE mmi_test_harness mmi_warnings)
  add_dependencies(${executable} ZtMmi_jni mmi_app mmi_sim_java ${library})
  get_target_property(library_dir ${library} LIBRARY_OUTPUT_DIRECTORY)
  gtest_discover_tests(${executable} DISCOVERY_TIMEOUT 60
      PROPERTIES TIMEOUT 120 ENVIRONMENT_MODIFICATION "LD_LIBRARY_PATH=path_list_prepend:${library_dir}")
endforeach()
