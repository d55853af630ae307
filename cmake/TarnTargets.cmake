# tarn_library(NAME SOURCES... [LINK targets...]): a static library of one layer.
# tarn_module(NAME SOURCES... [LINK targets...]): a shared library lib<NAME>.so.
# tarn_test(NAME SOURCES... [LINK targets...]): a test program, run by ctest.
# tarn_qt_test(NAME SOURCES... [LINK targets...]): the same with widgets.

function(tarn_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC tarn_options ${ARG_LINK})
endfunction()

function(tarn_module name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} SHARED ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC tarn_options ${ARG_LINK})
  set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${name} LIBRARY DESTINATION ${TARN_INSTALL_LIBDIR})
endfunction()

function(tarn_test_program name main)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE tarn_options ${ARG_LINK} ${main} GTest::gmock)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300 ENVIRONMENT "TARN_SOURCE_DIR=${CMAKE_SOURCE_DIR}")
endfunction()

function(tarn_test name)
  tarn_test_program(${name} GTest::gtest_main ${ARGN})
endfunction()

function(tarn_qt_test name)
  tarn_test_program(${name} tarn_qt_test_main ${ARGN})
endfunction()
