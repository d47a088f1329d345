# bin/tarsel, lib/libupdate_scan_service.so (on Windows bin/update_scan_service.dll and its import
# library in lib), the public headers, licences, and a CMake package: find_package(tarsel) gives
# tarsel::update_scan_service. The system lists beside the library are installed by the platform
# family that reads them.
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

# Libraries of others for machines that lack them. The C library and its kin are the machine's own:
# they belong to its kernel and its configuration.
if(TARSEL_BUNDLE_LIBRARIES)
    set(tarsel_dependency_set RUNTIME_DEPENDENCY_SET tarsel_runtime)
    install(RUNTIME_DEPENDENCY_SET tarsel_runtime
        PRE_EXCLUDE_REGEXES
            "^ld-linux" "^linux-vdso"
            "^lib(anl|c|dl|m|mvec|nss_[a-z]+|pthread|resolv|rt|util)\\.so"
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
    # Only this older kind of run path is also followed for what those libraries need themselves.
    target_link_options(tarsel PRIVATE -Wl,--disable-new-dtags)
    target_link_options(update_scan_service PRIVATE -Wl,--disable-new-dtags)
endif()

install(TARGETS update_scan_service tarsel_headers EXPORT tarselTargets
    ${tarsel_dependency_set}
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

# What of others is inside the library must be told with it: everything, where it is linked
# statically.
install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}")
if(MINGW AND CMAKE_CROSSCOMPILING)
    set(tarsel_licence_folder "${CMAKE_INSTALL_DOCDIR}/licences")
    install(DIRECTORY "${TARSEL_WINDOWS_DEPS}/licences/" DESTINATION "${tarsel_licence_folder}")
    # Headers that are compiled in, and the compiler's run-time libraries.
    foreach(package
            libcli11-dev libfmt-dev libspdlog-dev gcc-mingw-w64-base mingw-w64-x86-64-dev)
        install(FILES "/usr/share/doc/${package}/copyright"
            DESTINATION "${tarsel_licence_folder}" RENAME "${package}")
    endforeach()
endif()
