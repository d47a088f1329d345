# Warnings, sanitizers and coverage for every target of the project.
# Link tarsel_build_settings privately; it carries no include path and no library.
add_library(tarsel_build_settings INTERFACE)

if(MSVC)
    target_compile_options(tarsel_build_settings INTERFACE /W4 /utf-8 /EHsc /permissive- /Zc:__cplusplus /wd4251)
    # Those of the MinGW toolchain file.
    target_compile_definitions(tarsel_build_settings INTERFACE
        NOMINMAX=1 WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
    if(TARSEL_WARNINGS_AS_ERRORS)
        target_compile_options(tarsel_build_settings INTERFACE /WX)
    endif()
else()
    target_compile_options(tarsel_build_settings INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
    # A group of sources looks to GCC like a header with unnamed namespaces in it.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT TARSEL_JOIN_SOURCES STREQUAL "NONE")
        target_compile_options(tarsel_build_settings INTERFACE -Wno-subobject-linkage)
    endif()
    # GCC 12 sees overlapping copies in the joining of strings that are not there (GCC bug 105651).
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        target_compile_options(tarsel_build_settings INTERFACE -Wno-restrict)
        # With MinGW it sees reads behind short texts as well (GCC bug 104336).
        if(MINGW)
            target_compile_options(tarsel_build_settings INTERFACE
                -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
        endif()
    endif()
    if(TARSEL_WARNINGS_AS_ERRORS)
        target_compile_options(tarsel_build_settings INTERFACE -Werror)
    endif()
endif()

if(TARSEL_SANITIZE)
    target_compile_options(tarsel_build_settings INTERFACE
        -fsanitize=address -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(tarsel_build_settings INTERFACE -fsanitize=address,undefined)
endif()
# Wrong use of memory is looked for everywhere. The checks for undefined behaviour are for what the
# calling folder makes from here on: in tests they would double the time that mocks take to compile.
macro(tarsel_check_undefined_behaviour)
    if(TARSEL_SANITIZE)
        add_compile_options(-fsanitize=undefined)
    endif()
endmacro()

# Harnesses are linked with libFuzzer; everything they call carries its counters.
if(TARSEL_FUZZ)
    target_compile_options(tarsel_build_settings INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(TARSEL_COVERAGE)
    target_compile_options(tarsel_build_settings INTERFACE --coverage)
    target_link_options(tarsel_build_settings INTERFACE --coverage)
endif()
