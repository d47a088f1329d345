# Cross-build for Windows x86-64 with MinGW-w64 of the POSIX thread model (the other one lacks
# std::thread). TARSEL_WINDOWS_DEPS, a variable or of the environment, is the folder that
# cmake/windows/build-deps.sh prints.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(mingw_triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${mingw_triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${mingw_triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${mingw_triplet}-windres)
set(CMAKE_AR ${mingw_triplet}-gcc-ar-posix CACHE FILEPATH "Archiver")
set(CMAKE_RANLIB ${mingw_triplet}-gcc-ranlib-posix CACHE FILEPATH "Archive indexer")

if(NOT TARSEL_WINDOWS_DEPS)
    set(TARSEL_WINDOWS_DEPS "$ENV{TARSEL_WINDOWS_DEPS}")
endif()
set(TARSEL_WINDOWS_DEPS "${TARSEL_WINDOWS_DEPS}" CACHE PATH "Third-party libraries for Windows")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TARSEL_WINDOWS_DEPS)

set(CMAKE_FIND_ROOT_PATH "${TARSEL_WINDOWS_DEPS}" /usr/${mingw_triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Windows 10 and its servers; on the command line, because libstdc++ defines NOMINMAX itself.
add_compile_definitions(NOMINMAX=1 WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
# No run-time library has to lie beside the program and the library.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/run-wine.sh")
