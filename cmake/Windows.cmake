# The parts of the program with windows: a static library for each folder of app/.
find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets Network)

# What every file of app/ includes; compiled once.
add_library(sonarello_qt INTERFACE)
target_link_libraries(sonarello_qt INTERFACE Qt6::Widgets Qt6::Network)
target_compile_definitions(sonarello_qt INTERFACE QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII
                           QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# Headers of Qt that nearly every window needs, precompiled for a target.
function(precompile_qt target)
  target_precompile_headers(${target} PRIVATE <QApplication> <QWidget> <QPainter> <QPainterPath> <QString>
                            <QMouseEvent> <QKeyEvent> <QAccessibleWidget> <QLayout> <QLabel> <QPushButton>
                            <QTimer> <functional> <memory> <string> <vector>)
endfunction()

# add_app_part(<folder> [USES <parts>...] [ROOMS <rooms>...]): the library sonarello_app_<folder>.
function(add_app_part name)
  cmake_parse_arguments(PART "" "" "USES;ROOMS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/app/${name}/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/app/${name}/*.h)
  set(library sonarello_app_${name})
  if(NOT sources)
    add_library(${library} INTERFACE)
    return()
  endif()
  add_library(${library} STATIC ${sources} ${headers})
  set_target_properties(${library} PROPERTIES AUTOMOC ON)
  target_include_directories(${library} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${library} PUBLIC sonarello_flags sonarello_qt)
  foreach(room ${PART_ROOMS})
    target_link_libraries(${library} PUBLIC sonarello_${room})
  endforeach()
  foreach(used ${PART_USES})
    target_link_libraries(${library} PUBLIC sonarello_app_${used})
  endforeach()
  precompile_qt(${library})
endfunction()

# add_app_tests(<name> <libraries>...): the Qt tests of tests/app/<name>/, one program, offscreen. Its main
# is tests/app/TestMain.cpp.
function(add_app_tests name)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/app/${name}/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/app/${name}/*.h)
  if(NOT sources)
    return()
  endif()
  set(program test_app_${name})
  add_executable(${program} ${sources} ${headers} ${PROJECT_SOURCE_DIR}/tests/app/TestMain.cpp)
  set_target_properties(${program} PROPERTIES AUTOMOC ON)
  target_include_directories(${program} PRIVATE ${PROJECT_SOURCE_DIR}/tests ${PROJECT_SOURCE_DIR})
  target_link_libraries(${program} PRIVATE ${ARGN} sonarello_app_controls Qt6::Test GTest::gtest
                        GTest::gmock)
  target_compile_definitions(${program} PRIVATE SONARELLO_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                             SONARELLO_SCREENSHOTS="${PROJECT_BINARY_DIR}/screenshots")
  precompile_qt(${program})
  gtest_discover_tests(${program} TEST_PREFIX "app ${name}: " DISCOVERY_TIMEOUT 60
                       PROPERTIES TIMEOUT 120 ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()
