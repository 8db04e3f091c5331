# Rooms: one static library and one test binary each.

add_library(sonarello_flags INTERFACE)
target_compile_options(sonarello_flags INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror)
if(SONARELLO_SANITIZE)
  target_compile_options(sonarello_flags INTERFACE -fsanitize=${SONARELLO_SANITIZE}
                         -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(sonarello_flags INTERFACE -fsanitize=${SONARELLO_SANITIZE})
endif()

# add_room(<name> [USES <rooms on lower lines>...]): the library of src/<name>.
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
  foreach(used ${ROOM_USES})
    target_link_libraries(sonarello_${name} PUBLIC sonarello_${used})
  endforeach()
endfunction()

# add_room_tests(<name> <libraries>...): the test binary of tests/<name>, its tests known to ctest.
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
  gtest_discover_tests(test_${name} TEST_PREFIX "${name}: " DISCOVERY_TIMEOUT 60)
endfunction()
