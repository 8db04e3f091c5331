# Rooms: one static library and one test binary each.

# add_room(<name> [USES <rooms on lower lines>...]): the library sonarello_<name> of src/<name>.
function(add_room name)
  cmake_parse_arguments(ROOM "" "" "USES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/${name}/*.h)
  if(NOT sources)
    add_library(sonarello_${name} INTERFACE)
    return()
  endif()
  add_library(sonarello_${name} STATIC ${sources})
  target_sources(sonarello_${name} PUBLIC FILE_SET HEADERS
                 BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${headers})
  target_link_libraries(sonarello_${name} PUBLIC sonarello_flags)
  if(SONARELLO_SANITIZE)
    # Tests of big songs stay quick. Only rooms: on test files and CLI11 g++ 12 takes minutes for this.
    target_compile_options(sonarello_${name} PRIVATE -O1)
  endif()
  foreach(used ${ROOM_USES})
    target_link_libraries(sonarello_${name} PUBLIC sonarello_${used})
  endforeach()
endfunction()

# add_drivers(): the library sonarello_drivers of src/playback/drivers, the only one that knows the
# libraries for MIDI, audio and sound.
function(add_drivers)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(RTMIDI REQUIRED IMPORTED_TARGET rtmidi)
  pkg_check_modules(JACK REQUIRED IMPORTED_TARGET jack)
  pkg_check_modules(RTAUDIO REQUIRED IMPORTED_TARGET rtaudio)
  pkg_check_modules(FLUIDSYNTH REQUIRED IMPORTED_TARGET fluidsynth)
  find_package(Threads REQUIRED)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/playback/drivers/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/playback/drivers/*.h)
  if(NOT sources)
    add_library(sonarello_drivers INTERFACE)
    return()
  endif()
  add_library(sonarello_drivers STATIC ${sources})
  target_sources(sonarello_drivers PUBLIC FILE_SET HEADERS
                 BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${headers})
  target_link_libraries(sonarello_drivers PUBLIC sonarello_playback
                        PRIVATE PkgConfig::RTMIDI PkgConfig::JACK PkgConfig::RTAUDIO PkgConfig::FLUIDSYNTH
                                Threads::Threads)
endfunction()

# add_room_tests(<name> <libraries>...): the binary test_<name> of tests/<name>, known to ctest test by
# test. Under a sanitizer the binary runs as one test: a start costs more there than most tests do.
function(add_room_tests name)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${name}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources})
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(test_${name} PRIVATE ${ARGN} sonarello_flags GTest::gtest_main GTest::gmock)
  target_compile_definitions(test_${name} PRIVATE
                             SONARELLO_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  # The test library's headers take longer to read than most tests to compile.
  target_precompile_headers(test_${name} PRIVATE <gtest/gtest.h> <gmock/gmock.h> <algorithm> <array> <cstdint>
                            <string> <vector>)
  if(SONARELLO_SANITIZE)
    add_test(NAME "${SONARELLO_SANITIZE}: ${name}" COMMAND test_${name} --gtest_brief=1)
    set_tests_properties("${SONARELLO_SANITIZE}: ${name}" PROPERTIES TIMEOUT 600 ENVIRONMENT
                         UBSAN_OPTIONS=print_stacktrace=1)
  else()
    gtest_discover_tests(test_${name} TEST_PREFIX "${name}: " DISCOVERY_TIMEOUT 60
                         PROPERTIES TIMEOUT 120)
  endif()
endfunction()
