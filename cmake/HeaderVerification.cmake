# Every header of the product compiles alone. One that its own source includes before anything else
# is proven by that; each other one has a translation unit that holds nothing else. Part of the build
# where TARSEL_VERIFY_HEADERS is on, so a header that leans on its includer fails.
if(TARSEL_JOIN_SOURCES STREQUAL "ALL")
    message(FATAL_ERROR "TARSEL_VERIFY_HEADERS needs sources of the product that are compiled one by "
        "one: set TARSEL_JOIN_SOURCES to TESTS or NONE")
endif()
file(GLOB_RECURSE tarsel_verified_headers CONFIGURE_DEPENDS
    RELATIVE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/src/*.h")
list(FILTER tarsel_verified_headers EXCLUDE REGEX "${TARSEL_FOREIGN_FILES}")

# The header that a source includes first; empty when it is none of ours.
function(tarsel_first_include source result)
    file(STRINGS "${source}" line REGEX "^#include" LIMIT_COUNT 1)
    if(line MATCHES "^#include \"([^\"]+)\"")
        set(${result} "${CMAKE_MATCH_1}" PARENT_SCOPE)
    else()
        set(${result} "" PARENT_SCOPE)
    endif()
endfunction()

file(GLOB_RECURSE tarsel_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/src/*.cpp")
list(FILTER tarsel_sources EXCLUDE REGEX "${TARSEL_FOREIGN_FILES}")
foreach(source IN LISTS tarsel_sources)
    tarsel_first_include("${source}" header)
    list(REMOVE_ITEM tarsel_verified_headers "${header}")
endforeach()

set(tarsel_header_units)
foreach(header IN LISTS tarsel_verified_headers)
    string(REPLACE "/" "." unit "${header}")
    set(unit "${PROJECT_BINARY_DIR}/header_self_containment/${unit}.cpp")
    file(CONFIGURE OUTPUT "${unit}" CONTENT "#include \"${header}\"\n" @ONLY)
    list(APPEND tarsel_header_units "${unit}")
endforeach()

add_library(header_self_containment OBJECT ${tarsel_header_units})
target_link_libraries(header_self_containment PRIVATE
    tarsel_headers tarsel_build_settings
    Boost::filesystem Boost::json CURL::libcurl OpenSSL::SSL CLI11::CLI11 pugixml::pugixml
    spdlog::spdlog)
set_target_properties(header_self_containment PROPERTIES UNITY_BUILD OFF)
# Only the front end is asked: nothing of these units is ever linked.
if(NOT MSVC)
    target_compile_options(header_self_containment PRIVATE -O0 -g0 -fno-sanitize=all)
endif()
