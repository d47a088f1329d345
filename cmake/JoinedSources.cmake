# Sources that are compiled in groups, several in one translation unit: most of a build from nothing
# is the reading of the same headers again and again, so this saves half of it. A group hides an
# include that a source forgot, and after a change the whole group is compiled again.
set(TARSEL_JOIN_SOURCES "NONE" CACHE STRING "Sources to compile in groups: NONE, TESTS or ALL")
set_property(CACHE TARSEL_JOIN_SOURCES PROPERTY STRINGS NONE TESTS ALL)
if(NOT TARSEL_JOIN_SOURCES MATCHES "^(NONE|TESTS|ALL)$")
    message(FATAL_ERROR "TARSEL_JOIN_SOURCES is \"${TARSEL_JOIN_SOURCES}\": choose NONE, TESTS or ALL")
endif()

# tarsel_join_sources(PRODUCT|TESTS): for the targets that the calling folder makes from here on.
macro(tarsel_join_sources kind)
    set(CMAKE_UNITY_BUILD_BATCH_SIZE 16)
    if(TARSEL_JOIN_SOURCES STREQUAL "ALL" OR TARSEL_JOIN_SOURCES STREQUAL "${kind}")
        set(CMAKE_UNITY_BUILD ON)
    else()
        set(CMAKE_UNITY_BUILD OFF)
    endif()
endmacro()
