# Sets TARN_HAS_DESKTOP if the desktop host can be built. Everything else works without Qt.
set(TARN_HAS_DESKTOP OFF)
if(TARN_BUILD_DESKTOP)
  find_package(Qt6 6.2 QUIET COMPONENTS Widgets)
  find_path(QSCINTILLA_INCLUDE_DIR Qsci/qsciscintilla.h
    PATHS ${Qt6Widgets_INCLUDE_DIRS} NO_CMAKE_FIND_ROOT_PATH)
  find_library(QSCINTILLA_LIBRARY qscintilla2_qt6)
  if(Qt6_FOUND AND QSCINTILLA_INCLUDE_DIR AND QSCINTILLA_LIBRARY)
    set(TARN_HAS_DESKTOP ON)
    add_library(QScintilla INTERFACE)
    target_include_directories(QScintilla SYSTEM INTERFACE ${QSCINTILLA_INCLUDE_DIR})
    target_link_libraries(QScintilla INTERFACE ${QSCINTILLA_LIBRARY} Qt6::Widgets)
  else()
    message(STATUS "The desktop host is left out: Qt 6 and QScintilla are not installed "
      "(scripts/setup ide gets them).")
  endif()
else()
  message(STATUS "The desktop host is left out: TARN_BUILD_DESKTOP is off.")
endif()
