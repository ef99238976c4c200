# The HIDL interfaces of interfaces/: their C++ headers, generated at build time by the
# machine's hidl-gen (also in a cross build: the headers do not depend on the target), and the
# host's glue for them, one source file written from the interface definitions (see
# host/include/hidl/HidlInterfaceGlue.h).

find_program(HIDL_GEN_EXECUTABLE hidl-gen NO_CMAKE_FIND_ROOT_PATH REQUIRED)

# The text of a .hal file without its comments.
function(_mmi_hal_text file out)
  file(READ ${file} text)
  set(code "")
  while(TRUE)
    string(FIND "${text}" "/*" start)
    if(start EQUAL -1)
      break()
    endif()
    string(SUBSTRING "${text}" 0 ${start} before)
    string(APPEND code "${before}")
    string(SUBSTRING "${text}" ${start} -1 text)
    string(FIND "${text}" "*/" end)
    if(end EQUAL -1)
      message(FATAL_ERROR "${file}: comment without end")
    endif()
    math(EXPR end "${end} + 2")
    string(SUBSTRING "${text}" ${end} -1 text)
  endwhile()
  string(APPEND code "${text}")
  string(REGEX REPLACE "//[^\n]*" "" code "${code}")
  set(${out} "${code}" PARENT_SCOPE)
endfunction()

# "pkg.name@M.m::IName" -> "::pkg::name::VM_m::IName"
function(_mmi_hidl_cpp_type fqname out)
  if(NOT fqname MATCHES "^([A-Za-z0-9_.]+)@([0-9]+)\\.([0-9]+)::([A-Za-z0-9_]+)$")
    message(FATAL_ERROR "not a fully qualified HIDL name: ${fqname}")
  endif()
  string(REPLACE "." "::" namespaces ${CMAKE_MATCH_1})
  set(${out} "::${namespaces}::V${CMAKE_MATCH_2}_${CMAKE_MATCH_3}::${CMAKE_MATCH_4}" PARENT_SCOPE)
endfunction()

# mmi_hidl_interfaces(<target> ROOT <package root> DIR <its folder> BASE_DIR <android.hidl root>
#                     GLUE_SOURCE <variable>)
# Makes <target>, an interface library that gives the generated headers (built before any
# target that links it compiles), and sets <variable> to the glue source for the library that
# stands for the generated interface libraries. Every .hal file under DIR except those under
# BASE_DIR is a package of the build.
function(mmi_hidl_interfaces target)
  cmake_parse_arguments(arg "" "ROOT;DIR;BASE_DIR;GLUE_SOURCE" "" ${ARGN})
  set(out ${CMAKE_BINARY_DIR}/generated/hidl)
  set(stamp ${CMAKE_BINARY_DIR}/generated/hidl.stamp)

  file(GLOB_RECURSE all_hal_files CONFIGURE_DEPENDS ${arg_DIR}/*.hal)
  set(hal_files "")
  foreach(hal IN LISTS all_hal_files)
    string(FIND "${hal}" "${arg_BASE_DIR}/" in_base)
    if(NOT in_base EQUAL 0)
      list(APPEND hal_files ${hal})
    endif()
  endforeach()
  file(GLOB_RECURSE base_hal_files CONFIGURE_DEPENDS ${arg_BASE_DIR}/*.hal)

  set(packages "")
  set(headers "")
  set(interfaces "")
  foreach(hal IN LISTS hal_files)
    _mmi_hal_text(${hal} code)
    if(NOT code MATCHES "package[ \t\r\n]+([A-Za-z0-9_.]+)@([0-9]+)\\.([0-9]+)[ \t\r\n]*;")
      message(FATAL_ERROR "${hal}: no package statement")
    endif()
    set(package ${CMAKE_MATCH_1})
    set(version ${CMAKE_MATCH_2}.${CMAKE_MATCH_3})
    string(FIND "${package}" "${arg_ROOT}." under_root)
    if(NOT under_root EQUAL 0)
      message(FATAL_ERROR "${hal}: package ${package} is not under ${arg_ROOT}")
    endif()
    string(REPLACE "." "/" folder ${package})
    list(APPEND packages ${package}@${version})
    get_filename_component(name ${hal} NAME_WE)
    list(APPEND headers ${out}/${folder}/${version}/${name}.h)
    if(name STREQUAL "types")
      continue()
    endif()
    if(NOT code MATCHES "interface[ \t\r\n]+${name}([ \t\r\n]+extends[ \t\r\n]+([A-Za-z0-9_.@:]+))?[ \t\r\n]*{")
      message(FATAL_ERROR "${hal}: no interface ${name}")
    endif()
    set(extends "${CMAKE_MATCH_2}")
    set(fqname ${package}@${version}::${name})
    if(extends STREQUAL "")
      set(parent android.hidl.base@1.0::IBase)
    elseif(extends MATCHES "^@[0-9]+\\.[0-9]+::[A-Za-z0-9_]+$")
      set(parent ${package}${extends})
    elseif(extends MATCHES "^[A-Za-z0-9_]+$")
      set(parent ${package}@${version}::${extends})
    else()
      set(parent ${extends})
    endif()
    list(APPEND interfaces ${fqname})
    string(MAKE_C_IDENTIFIER ${fqname} key)
    set(parent_of_${key} ${parent})
    set(header_of_${key} ${folder}/${version}/${name}.h)
  endforeach()
  list(REMOVE_DUPLICATES packages)
  list(SORT packages)
  list(SORT interfaces)

  # The glue: every interface's parent first, then its definitions and its casts.
  set(parents "")
  set(definitions "")
  set(includes "")
  foreach(fqname IN LISTS interfaces)
    string(MAKE_C_IDENTIFIER ${fqname} key)
    _mmi_hidl_cpp_type(${fqname} type)
    _mmi_hidl_cpp_type(${parent_of_${key}} parent_type)
    string(APPEND includes "#include <${header_of_${key}}>\n")
    string(APPEND parents "HIDL_HOST_PARENT(${type}, ${parent_type})\n")
    string(APPEND definitions "HIDL_HOST_INTERFACE(${type}, \"${fqname}\")\n")
    set(ancestor ${parent_of_${key}})
    while(NOT ancestor STREQUAL "android.hidl.base@1.0::IBase")
      string(MAKE_C_IDENTIFIER ${ancestor} ancestor_key)
      if(NOT DEFINED parent_of_${ancestor_key})
        message(FATAL_ERROR "${fqname} extends ${ancestor}, which no .hal file under ${arg_DIR} defines")
      endif()
      _mmi_hidl_cpp_type(${ancestor} ancestor_type)
      string(APPEND definitions "HIDL_HOST_CAST_FROM(${type}, ${ancestor_type})\n")
      set(ancestor ${parent_of_${ancestor_key}})
    endwhile()
  endforeach()
  file(RELATIVE_PATH shown_dir ${PROJECT_SOURCE_DIR} ${arg_DIR})
  set(glue ${CMAKE_CURRENT_BINARY_DIR}/${target}_glue.cpp)
  file(WRITE ${glue}.new "// Written by the build from the HIDL interfaces in ${shown_dir}/
// (cmake/HidlInterfaces.cmake).
${includes}
#include <hidl/HidlInterfaceGlue.h>

${parents}
${definitions}")
  configure_file(${glue}.new ${glue} COPYONLY)

  list(LENGTH packages count)
  add_custom_command(OUTPUT ${stamp}
      BYPRODUCTS ${headers}
      COMMAND ${CMAKE_COMMAND} -E rm -rf ${out}
      COMMAND ${HIDL_GEN_EXECUTABLE} -o ${out} -L c++-headers
              -r ${arg_ROOT}:${arg_DIR} -r android.hidl:${arg_BASE_DIR} ${packages}
      COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
      DEPENDS ${hal_files} ${base_hal_files}
      COMMENT "Generating the C++ headers of ${count} HIDL packages with hidl-gen"
      VERBATIM)
  add_custom_target(${target}_generate DEPENDS ${stamp})
  add_library(${target} INTERFACE)
  target_include_directories(${target} INTERFACE ${out})
  add_dependencies(${target} ${target}_generate)
  set(${arg_GLUE_SOURCE} ${glue} PARENT_SCOPE)
endfunction()
