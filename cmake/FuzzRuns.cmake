# A short run of each fuzz target as a ctest test: it starts from the seeds in the tree, keeps what it
# finds in the build folder, and leaves a file fuzz-<target>-<kind>-<hash> there when it fails.

set(SONARELLO_FUZZ_SECONDS 20 CACHE STRING "Seconds that ctest gives to each fuzz target")
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/found)

get_property(targets DIRECTORY ${PROJECT_SOURCE_DIR}/fuzz PROPERTY BUILDSYSTEM_TARGETS)
foreach(target ${targets})
  get_target_property(type ${target} TYPE)
  if(NOT type STREQUAL EXECUTABLE)
    continue()
  endif()
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/found/${target})
  set(seeds ${PROJECT_SOURCE_DIR}/fuzz/corpus/${target})
  if(NOT IS_DIRECTORY ${seeds})
    set(seeds ${PROJECT_SOURCE_DIR}/fuzz/corpus)
  endif()
  add_test(NAME "fuzz: ${target}"
           COMMAND ${target} -max_total_time=${SONARELLO_FUZZ_SECONDS} -timeout=10 -rss_limit_mb=2048
                   -artifact_prefix=${CMAKE_BINARY_DIR}/fuzz-${target}- -print_final_stats=1
                   ${CMAKE_BINARY_DIR}/found/${target} ${seeds})
  set_tests_properties("fuzz: ${target}" PROPERTIES LABELS fuzz TIMEOUT 300 COST 100)
endforeach()
