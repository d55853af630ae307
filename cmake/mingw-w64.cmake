# Toolchain file for 64-bit Windows: mingw-w64, with its own headers and libraries only.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(triplet x86_64-w64-mingw32)

# Debian has a second variant, without the threads of the standard library.
foreach(language C CXX)
  set(name ${triplet}-gcc)
  if(language STREQUAL "CXX")
    set(name ${triplet}-g++)
  endif()
  find_program(TARN_MINGW_${language} NAMES ${name}-posix ${name})
  if(NOT TARN_MINGW_${language})
    message(FATAL_ERROR "${name} is not installed (scripts/setup check gets it).")
  endif()
  set(CMAKE_${language}_COMPILER ${TARN_MINGW_${language}})
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/${triplet})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
