# tarn_library(NAME SOURCES... [LINK targets...]): a static library of one layer.
# tarn_module(NAME SOURCES... EXPORTS names... [INTERNAL patterns...] [LINK targets...]): a shared
#   library lib<NAME>.so. It exports these C functions, and the C++ names that match the patterns,
#   for the other programs and libraries of this build.
# tarn_test(NAME SOURCES... [LINK targets...] [THREADS]): a test program, run by ctest. THREADS: it
#   contains multithreaded tests. With the thread sanitizer all others are built on request only,
#   because it can't find anything in them.
# tarn_qt_test(NAME SOURCES... [LINK targets...]): like tarn_test, for tests with widgets.

function(tarn_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC tarn_options ${ARG_LINK})
endfunction()

function(tarn_module name)
  cmake_parse_arguments(ARG "" "" "SOURCES;EXPORTS;INTERNAL;LINK" ${ARGN})
  add_library(${name} SHARED ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC tarn_options ${ARG_LINK})
  # Unlike compiler options, a version script also hides symbols of static libraries, including the
  # standard library.
  set(exports ${CMAKE_CURRENT_BINARY_DIR}/${name}.map)
  list(JOIN ARG_EXPORTS "; " names)
  set(internal "")
  if(ARG_INTERNAL)
    list(JOIN ARG_INTERNAL "; " patterns)
    set(internal "\n  extern \"C++\" { ${patterns}; };")
  endif()
  file(CONFIGURE OUTPUT ${exports} CONTENT "{\n  global: ${names};${internal}\n  local: *;\n};\n")
  target_link_options(${name} PRIVATE "LINKER:--version-script=${exports}")
  set_target_properties(${name} PROPERTIES LINK_DEPENDS ${exports} INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${name} LIBRARY DESTINATION ${TARN_INSTALL_LIBDIR})
endfunction()

function(tarn_test_program name main)
  cmake_parse_arguments(ARG "THREADS" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE tarn_options ${ARG_LINK} ${main} GTest::gmock)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(TARN_SANITIZE STREQUAL "thread" AND NOT ARG_THREADS)
    set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
    return()
  endif()
  set(timeout 900)
  if(TARN_SANITIZE)
    set(timeout 1800)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT ${timeout} ENVIRONMENT "TARN_SOURCE_DIR=${CMAKE_SOURCE_DIR}")
endfunction()

function(tarn_test name)
  tarn_test_program(${name} GTest::gtest_main ${ARGN})
endfunction()

function(tarn_qt_test name)
  tarn_test_program(${name} tarn_qt_test_main ${ARGN})
endfunction()
