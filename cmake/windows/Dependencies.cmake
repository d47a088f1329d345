# Third-party libraries of the MinGW build, all static: see build-deps.sh beside this file.
set(Boost_NO_BOOST_CMAKE ON)
set(Boost_USE_STATIC_LIBS ON)
set(Boost_NO_WARN_NEW_VERSIONS ON)
find_package(Boost 1.81 REQUIRED COMPONENTS filesystem)
set_property(TARGET Boost::filesystem APPEND PROPERTY
    INTERFACE_COMPILE_DEFINITIONS BOOST_FILESYSTEM_STATIC_LINK=1 BOOST_FILESYSTEM_NO_LIB)
set_property(TARGET Boost::filesystem APPEND PROPERTY INTERFACE_LINK_LIBRARIES bcrypt)

# Boost.JSON is a library by one source that includes the rest.
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/boost_json.cpp"
    CONTENT "#include <boost/json/src.hpp>\n" @ONLY)
add_library(boost_json_static STATIC "${PROJECT_BINARY_DIR}/boost_json.cpp")
target_link_libraries(boost_json_static PUBLIC Boost::headers)
target_compile_definitions(boost_json_static
    PUBLIC BOOST_JSON_STATIC_LINK=1 BOOST_JSON_NO_LIB BOOST_ERROR_CODE_HEADER_ONLY
           BOOST_CONTAINER_NO_LIB)
add_library(Boost::json ALIAS boost_json_static)

set(OPENSSL_USE_STATIC_LIBS ON)
find_package(OpenSSL 3.0 REQUIRED)
set_property(TARGET OpenSSL::Crypto APPEND PROPERTY
    INTERFACE_LINK_LIBRARIES ws2_32 crypt32 gdi32 advapi32 user32 bcrypt)
find_package(CURL 7.80 REQUIRED CONFIG)

find_package(libssh 0.10 REQUIRED CONFIG)
set_property(TARGET ssh APPEND PROPERTY INTERFACE_COMPILE_DEFINITIONS LIBSSH_STATIC)
set_property(TARGET ssh APPEND PROPERTY INTERFACE_LINK_LIBRARIES
    OpenSSL::Crypto iphlpapi ws2_32 shlwapi)

# Headers alone: linked into the prefix by build-deps.sh.
foreach(name CLI11::CLI11 spdlog::spdlog_header_only)
    string(REPLACE "::" "_" target "${name}")
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE "${TARSEL_WINDOWS_DEPS}/include")
    add_library(${name} ALIAS ${target})
endforeach()
add_library(spdlog::spdlog ALIAS spdlog_spdlog_header_only)

add_library(pugixml::pugixml STATIC IMPORTED)
set_target_properties(pugixml::pugixml PROPERTIES
    IMPORTED_LOCATION "${TARSEL_WINDOWS_DEPS}/lib/libpugixml.a"
    INTERFACE_INCLUDE_DIRECTORIES "${TARSEL_WINDOWS_DEPS}/include")

if(TARSEL_BUILD_TESTS)
    # Debian ships its sources, not a library for Windows.
    # They know no policy that lets the two variables below through.
    set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
    set(gtest_force_shared_crt ON)
    set(INSTALL_GTEST OFF)
    add_subdirectory(/usr/src/googletest "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
    foreach(name gtest gmock gmock_main)
        if(NOT TARGET GTest::${name})
            add_library(GTest::${name} ALIAS ${name})
        endif()
    endforeach()
endif()
