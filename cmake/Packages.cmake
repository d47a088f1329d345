# What `cmake --build ... --target package` (or `cpack` in the build tree) makes of the installed
# files: tarsel-sdk-<version>-<system>-<machine>.tar.gz and a Debian package on Linux, a .zip for
# Windows. The package that a scan carries to a server is another one: scripts/package.sh.
set(CPACK_PACKAGE_NAME tarsel)
set(CPACK_PACKAGE_VENDOR "Tarsel developers")
set(CPACK_PACKAGE_CONTACT "Tarsel developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
    "The command line tarsel, and the library it uses with headers and CMake files for programs of others: which firmware and software a server, its chassis, switch or hypervisor has installed, in which version.")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

string(TOLOWER "${CMAKE_SYSTEM_NAME}" tarsel_system)
string(TOLOWER "${CMAKE_SYSTEM_PROCESSOR}" tarsel_machine)
if(tarsel_machine STREQUAL "amd64")
    set(tarsel_machine x86_64)
endif()
set(CPACK_PACKAGE_FILE_NAME "tarsel-sdk-${PROJECT_VERSION}-${tarsel_system}-${tarsel_machine}")

if(WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    set(CPACK_GENERATOR TGZ DEB)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
    set(CPACK_DEBIAN_PACKAGE_SECTION admin)
    # Needs dpkg-shlibdeps; the shared library also brings the trigger for the loader's cache.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
    # The system lists are for administrators to edit: an upgrade must not undo that.
    file(GLOB system_lists RELATIVE "${PROJECT_SOURCE_DIR}/src/platform/system_check/lists"
        "${PROJECT_SOURCE_DIR}/src/platform/system_check/lists/*.txt")
    list(TRANSFORM system_lists PREPEND "/usr/${CMAKE_INSTALL_LIBDIR}/")
    list(JOIN system_lists "\n" system_lists)
    file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/debian/conffiles" CONTENT "${system_lists}\n" @ONLY)
    set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/debian/conffiles")
    # Found at run time, or by who compiles with the headers.
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "ca-certificates, pci.ids")
    set(CPACK_DEBIAN_PACKAGE_SUGGESTS "ipmitool, libboost1.81-dev")
endif()
include(CPack)
