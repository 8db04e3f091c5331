# How everything is compiled: the standard, the warnings, the kinds of build.

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Release or Debug" FORCE)
endif()
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
# The target all_verify_interface_header_sets compiles each header of a room by itself.
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)

find_program(SONARELLO_CCACHE ccache)
if(SONARELLO_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${SONARELLO_CCACHE})
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # Lets ccache look into precompiled headers.
  add_compile_options(-fpch-preprocess)
endif()

# Linked by every library and program of ours.
add_library(sonarello_flags INTERFACE)
target_compile_options(sonarello_flags INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # With g++ -Wconversion leaves signs alone in C++; one rule for both compilers.
  target_compile_options(sonarello_flags INTERFACE -Wno-sign-conversion)
endif()
target_compile_definitions(sonarello_flags INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
if(SONARELLO_SANITIZE)
  target_compile_options(sonarello_flags INTERFACE -fsanitize=${SONARELLO_SANITIZE}
                         -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(sonarello_flags INTERFACE -fsanitize=${SONARELLO_SANITIZE})
endif()
