# Build settings shared by every target of our own.

# A compiler cache when the machine has one: rebuilding from a clean tree then costs little.
find_program(LODEQDB_CCACHE ccache)
if(LODEQDB_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${LODEQDB_CCACHE}")
endif()

if(LODEQDB_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer
                        -fno-sanitize-recover=undefined)
    # Tests of very large inputs take smaller ones where every access is checked.
    add_compile_definitions(LODEQDB_SANITIZED)
    add_link_options(-fsanitize=address,undefined)
endif()

# ThreadSanitizer: for the tests that read, walk and classify different drawings on several
# threads at once (the tsan preset builds only what they need).
if(LODEQDB_SANITIZE_THREAD)
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_compile_definitions(LODEQDB_SANITIZED)
    add_link_options(-fsanitize=thread)
endif()

if(LODEQDB_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
                        -fno-sanitize-recover=undefined)
    # The drawing readers then take any checksum, so that mutations reach what lies behind.
    add_compile_definitions(PWDB_FUZZING_ACCEPTS_ANY_CHECKSUM)
    add_link_options(-fsanitize=address,undefined)
endif()

# Strict warnings for code we write; third-party headers come in as system headers. They stop
# the build only where developers and the test run ask for it (the presets do): a packager's
# plain configure with another compiler or optimisation level isn't stopped by a warning.
option(LODEQDB_WARNINGS_AS_ERRORS "Treat compiler warnings in the project's code as errors" OFF)
function(lodeqdb_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic
                           $<$<BOOL:${LODEQDB_WARNINGS_AS_ERRORS}>:-Werror>)
    # g++ 12 at -O2 reports std::variant members of strings as "maybe uninitialized" where
    # they cannot be; clang and the sanitizer builds still check for uninitialised reads.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endfunction()

# A shared library of ours: strict warnings, versioned, position independent.
function(lodeqdb_configure_library target)
    lodeqdb_warnings(${target})
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        POSITION_INDEPENDENT_CODE ON)
endfunction()

# Adds headers of the public interface to a library's installed header set. They live under
# include/lodeqdb/ and are included as <lodeqdb/folder/Header.h>, in the tree and from an
# installed package alike.
function(lodeqdb_public_headers target)
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/include"
                   FILES ${ARGN})
endfunction()

# Adds one folder to a target: its sources (folder/*.cpp, flat), and its public headers
# (include/lodeqdb/folder/*.h). The folder's other headers are internal: reachable from the
# source root as "folder/Header.h" by what is built here, never installed.
function(lodeqdb_add_folder target folder)
    file(GLOB folder_sources CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.cpp")
    file(GLOB folder_headers CONFIGURE_DEPENDS
         "${PROJECT_SOURCE_DIR}/include/lodeqdb/${folder}/*.h")
    if(folder_sources)
        target_sources(${target} PRIVATE ${folder_sources})
    endif()
    if(folder_headers)
        lodeqdb_public_headers(${target} ${folder_headers})
    endif()
endfunction()
