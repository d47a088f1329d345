# Every header of the product compiles alone: one translation unit a header that includes it twice.
# Part of the build where TARSEL_VERIFY_HEADERS is on, so a header that leans on its includer fails.
file(GLOB_RECURSE tarsel_verified_headers CONFIGURE_DEPENDS
    RELATIVE "${PROJECT_SOURCE_DIR}/src" "${PROJECT_SOURCE_DIR}/src/*.h")
# Headers over calls of another kind of system cannot compile here.
if(WIN32)
    list(FILTER tarsel_verified_headers EXCLUDE REGEX "_(posix|linux)\\.h$")
else()
    list(FILTER tarsel_verified_headers EXCLUDE REGEX "_windows\\.h$")
endif()
set(tarsel_header_units)
foreach(header IN LISTS tarsel_verified_headers)
    string(REPLACE "/" "." unit "${header}")
    set(unit "${PROJECT_BINARY_DIR}/header_self_containment/${unit}.cpp")
    file(CONFIGURE OUTPUT "${unit}" CONTENT "#include \"${header}\"\n#include \"${header}\"\n" @ONLY)
    list(APPEND tarsel_header_units "${unit}")
endforeach()

add_library(header_self_containment OBJECT ${tarsel_header_units})
target_link_libraries(header_self_containment PRIVATE
    tarsel_headers tarsel_build_settings
    Boost::filesystem Boost::json CURL::libcurl OpenSSL::SSL CLI11::CLI11 pugixml::pugixml
    spdlog::spdlog)
# Only the front end is asked: nothing of these units is ever linked.
if(NOT MSVC)
    target_compile_options(header_self_containment PRIVATE -O0 -g0 -fno-sanitize=all)
endif()
