# Compiler options, sanitizers and the compiler cache.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR};$ORIGIN")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

# The cache sees paths relative to the checkout, so that two checkouts share what they compiled.
find_program(VORLEX_CCACHE ccache)
if(VORLEX_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}"
        CCACHE_NOHASHDIR=1 "${VORLEX_CCACHE}")
endif()

add_library(vorlex_options INTERFACE)
target_compile_options(vorlex_options INTERFACE
    -Wall -Wextra -Werror "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=" "-ffile-prefix-map=${PROJECT_BINARY_DIR}/=")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Nobody replaces a function of the library by one of the same name, so calls inside it can be inlined.
    target_compile_options(vorlex_options INTERFACE -fno-semantic-interposition)
endif()
target_include_directories(vorlex_options INTERFACE "${PROJECT_SOURCE_DIR}")

if(VORLEX_SANITIZERS STREQUAL "address")
    add_compile_options(-fsanitize=address,undefined,fuzzer-no-link -fno-sanitize-recover=undefined
        -fno-omit-frame-pointer)
    # The vptr check wants type information that hidden classes do not share between libraries.
    add_compile_options(-fno-sanitize=vptr)
    add_link_options(-fsanitize=address,undefined -fno-sanitize=vptr)
elseif(VORLEX_SANITIZERS STREQUAL "thread")
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
elseif(VORLEX_SANITIZERS)
    message(FATAL_ERROR "VORLEX_SANITIZERS is '${VORLEX_SANITIZERS}'; use 'address', 'thread' or nothing")
endif()
