# bin/tarsel, lib/libupdate_scan_service.so, the public headers, and a CMake package:
# find_package(tarsel) gives tarsel::update_scan_service. The system lists beside the library are
# installed by the platform family that reads them.
include(CMakePackageConfigHelpers)

# Headers a front end names itself. What these include is installed with them.
file(GLOB tarsel_public_headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}/src"
    "${PROJECT_SOURCE_DIR}/src/service/update_scan_service/*.h")
list(APPEND tarsel_public_headers
    common/version/version.h
    platform/config/config.h
    platform/log/log_settings.h)

# tarsel_included_headers(<out> <header>...): the headers and, transitively, what they include from
# this project; generated ones excepted.
function(tarsel_included_headers out)
    set(pending ${ARGN})
    set(found)
    while(pending)
        list(POP_FRONT pending header)
        if(header IN_LIST found OR NOT EXISTS "${PROJECT_SOURCE_DIR}/src/${header}")
            continue()
        endif()
        list(APPEND found "${header}")
        file(STRINGS "${PROJECT_SOURCE_DIR}/src/${header}" lines REGEX "^#include \"")
        foreach(line IN LISTS lines)
            string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" included "${line}")
            list(APPEND pending "${included}")
        endforeach()
    endwhile()
    set(${out} "${found}" PARENT_SCOPE)
endfunction()

tarsel_included_headers(tarsel_installed_headers ${tarsel_public_headers})
foreach(header IN LISTS tarsel_installed_headers)
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "src/${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/tarsel/${folder}")
endforeach()
install(FILES "${PROJECT_BINARY_DIR}/src/generated/common/export.h"
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/tarsel/common")

install(TARGETS update_scan_service tarsel_headers EXPORT tarselTargets
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
    INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/tarsel")

install(EXPORT tarselTargets NAMESPACE tarsel::
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/tarsel")
configure_package_config_file(cmake/tarselConfig.cmake.in "${PROJECT_BINARY_DIR}/tarselConfig.cmake"
    INSTALL_DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/tarsel")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/tarselConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/tarselConfig.cmake"
              "${PROJECT_BINARY_DIR}/tarselConfigVersion.cmake"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/cmake/tarsel")
