# The device build (see "On a device" in README.md): the AIDL declarations of hal/ held to the
# definitions in interfaces/, and the Android.bp files.

# The platform's AIDL compiler generates headers from interfaces/, and the product's AIDL
# sources and the simulated handset's AIDL services (which implement every method of every
# interface) must compile against them, without hal/ on the include path.
find_program(AIDL_EXECUTABLE aidl NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(GLOB MMI_AIDL_CHECKED_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/aidl/*.cpp)
list(APPEND MMI_AIDL_CHECKED_SOURCES ${PROJECT_SOURCE_DIR}/sim/src/aidl_fakes.cpp)
set(MMI_AIDL_CHECK_INCLUDES ${PROJECT_SOURCE_DIR}/host/include ${PROJECT_SOURCE_DIR}/common ${PROJECT_SOURCE_DIR}/jni
    ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/algo ${PROJECT_SOURCE_DIR}/sim/include)
set(MMI_AIDL_CHECK_SYSTEM_INCLUDES ${ANDROID_INCLUDE_DIR} ${JNI_INCLUDE_DIRS})
list(JOIN MMI_AIDL_CHECKED_SOURCES "|" sources)
list(JOIN MMI_AIDL_CHECK_INCLUDES "|" includes)
list(JOIN MMI_AIDL_CHECK_SYSTEM_INCLUDES "|" system_includes)
add_test(NAME device.aidl_definitions
    COMMAND ${CMAKE_COMMAND} -DINTERFACES=${PROJECT_SOURCE_DIR}/interfaces -DAIDL=${AIDL_EXECUTABLE}
            -DCXX=${CMAKE_CXX_COMPILER} -DOUT=${CMAKE_CURRENT_BINARY_DIR}/aidl_check
            "-DNDK_PACKAGES=vendor.zentel.hardware.biometrics.fingerprint|android.hardware.biometrics.fingerprint"
            -DINCLUDES=${includes} -DSYSTEM_INCLUDES=${system_includes} -DSOURCES=${sources}
            -P ${CMAKE_CURRENT_SOURCE_DIR}/device/check_aidl.cmake)
set_tests_properties(device.aidl_definitions PROPERTIES TIMEOUT 300)

# bpfmt, built from Debian's blueprint sources (golang-github-google-blueprint-dev) for the
# machine that builds, also in a cross build.
find_program(GO_EXECUTABLE go NO_CMAKE_FIND_ROOT_PATH REQUIRED)
set(MMI_BLUEPRINT_GOPATH /usr/share/gocode)
set(MMI_BPFMT ${CMAKE_BINARY_DIR}/tools/bpfmt)
add_custom_command(OUTPUT ${MMI_BPFMT}
    COMMAND ${CMAKE_COMMAND} -E env GOPATH=${MMI_BLUEPRINT_GOPATH} GO111MODULE=off CGO_ENABLED=0
            GOCACHE=${CMAKE_BINARY_DIR}/tools/gocache GOOS= GOARCH=
            ${GO_EXECUTABLE} build -o ${MMI_BPFMT} github.com/google/blueprint/bpfmt
    DEPENDS ${MMI_BLUEPRINT_GOPATH}/src/github.com/google/blueprint/bpfmt/bpfmt.go
    COMMENT "Building bpfmt from Debian's blueprint sources"
    VERBATIM)
add_custom_target(bpfmt ALL DEPENDS ${MMI_BPFMT})

add_test(NAME device.android_bp_format
    COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${PROJECT_SOURCE_DIR} -DBPFMT=${MMI_BPFMT}
            -P ${CMAKE_CURRENT_SOURCE_DIR}/device/check_android_bp.cmake)
add_test(NAME device.android_bp_sources
    COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${PROJECT_SOURCE_DIR} "-DPRODUCT_DIRS=jni|aidl|hidl|algo|common"
            -P ${CMAKE_CURRENT_SOURCE_DIR}/device/check_bp_sources.cmake)
