# The AIDL definitions of interfaces/ are the source of truth for the declarations in hal/:
# this check runs the platform's AIDL compiler on every .aidl file and compiles the given
# sources against the headers it generates instead of hal/'s. A method, argument, result or
# parcelable field that differs between the two fails the compile.
#
# -D INTERFACES=<dir> AIDL=<aidl> CXX=<compiler> OUT=<scratch dir>
#    NDK_PACKAGES=<packages generated for the NDK backend; the rest for the C++ backend>
#    INCLUDES=<include dirs after the generated headers> SYSTEM_INCLUDES=<system include dirs>
#    SOURCES=<files to compile>
# (lists separated by "|").
#
# The compiler of this machine predates @VintfStability (it rejects the annotation and then
# crashes), so the definitions are copied without it first.
cmake_minimum_required(VERSION 3.25)

foreach(var NDK_PACKAGES INCLUDES SYSTEM_INCLUDES SOURCES)
  string(REPLACE "|" ";" ${var} "${${var}}")
endforeach()

file(REMOVE_RECURSE ${OUT})
set(src ${OUT}/aidl)
set(generated ${OUT}/include)

# One source tree, each file at the place its package names.
file(GLOB_RECURSE definitions ${INTERFACES}/*.aidl)
set(copies "")
foreach(definition IN LISTS definitions)
  file(READ ${definition} text)
  if(NOT text MATCHES "package[ \t\r\n]+([A-Za-z0-9_.]+)[ \t\r\n]*;")
    message(FATAL_ERROR "${definition}: no package statement")
  endif()
  set(package ${CMAKE_MATCH_1})
  string(REPLACE "." "/" folder ${package})
  get_filename_component(name ${definition} NAME)
  if(NOT definition MATCHES "/${folder}/${name}$")
    message(FATAL_ERROR "${definition}: package ${package} does not match the file's folder")
  endif()
  string(REGEX REPLACE "@VintfStability[ \t]*" "" text "${text}")
  file(WRITE ${src}/${folder}/${name} "${text}")
  list(APPEND copies "${package}:${src}/${folder}/${name}")
endforeach()
list(LENGTH copies count)
if(count EQUAL 0)
  message(FATAL_ERROR "no .aidl file under ${INTERFACES}")
endif()

foreach(entry IN LISTS copies)
  string(REGEX MATCH "^([^:]+):(.*)$" entry "${entry}")
  set(package ${CMAKE_MATCH_1})
  set(file ${CMAKE_MATCH_2})
  set(lang cpp)
  if(package IN_LIST NDK_PACKAGES)
    set(lang ndk)
  endif()
  execute_process(COMMAND ${AIDL} --lang=${lang} --structured -I ${src} -o ${OUT}/sources -h ${generated} ${file}
      RESULT_VARIABLE failed OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(failed)
    message(FATAL_ERROR "aidl --lang=${lang} failed on ${file} (${failed}):\n${output}")
  endif()
endforeach()
message(STATUS "aidl: ${count} definitions compiled")

# A parcelable field of a plain type without a default in its definition is left
# uninitialised by the generated code; the library relies on fresh records holding 0.
file(GLOB_RECURSE headers ${generated}/*.h)
set(undefaulted "")
foreach(header IN LISTS headers)
  file(STRINGS ${header} fields REGEX "^  (bool|int8_t|int32_t|int64_t|char16_t|float|double) [A-Za-z0-9_]+;$")
  foreach(field IN LISTS fields)
    string(STRIP "${field}" field)
    file(RELATIVE_PATH shown ${generated} ${header})
    list(APPEND undefaulted "${shown}: ${field}")
  endforeach()
endforeach()
if(undefaulted)
  list(JOIN undefaulted "\n  " undefaulted)
  message(FATAL_ERROR "parcelable fields without a default in their .aidl definition:\n  ${undefaulted}")
endif()

set(flags -std=c++17 -fsyntax-only -Wall -Wextra -Werror -I ${generated})
foreach(dir IN LISTS INCLUDES)
  list(APPEND flags -I ${dir})
endforeach()
foreach(dir IN LISTS SYSTEM_INCLUDES)
  list(APPEND flags -isystem ${dir})
endforeach()
set(failures 0)
foreach(source IN LISTS SOURCES)
  execute_process(COMMAND ${CXX} ${flags} ${source}
      RESULT_VARIABLE failed OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(failed)
    message("${source} does not compile against the generated AIDL headers:\n${output}")
    math(EXPR failures "${failures} + 1")
  endif()
endforeach()
list(LENGTH SOURCES checked)
if(failures GREATER 0)
  message(FATAL_ERROR "${failures} of ${checked} sources do not compile against the AIDL definitions")
endif()
message(STATUS "${checked} sources compile against the generated AIDL headers")
