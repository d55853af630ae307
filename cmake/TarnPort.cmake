# Checks that all parts have an implementation for the target platform. On Windows each folder posix
# needs a folder win32 next to it. TARN_PORTABLE_ONLY defines a single target instead, tarn_portable,
# which compiles all sources that are the same on every platform and links nothing.
option(TARN_PORTABLE_ONLY "Compile only the sources that are the same on every platform" OFF)

if(WIN32)
  file(GLOB_RECURSE sources RELATIVE ${CMAKE_SOURCE_DIR} src/* components/* hosts/* include/*)
  list(FILTER sources INCLUDE REGEX "/posix/")
  list(TRANSFORM sources REPLACE "/posix/.*" "/win32")
  list(REMOVE_DUPLICATES sources)
  set(missing "")
  foreach(folder ${sources})
    file(GLOB present ${folder}/*)
    if(NOT present)
      string(APPEND missing "\n  ${folder}")
    endif()
  endforeach()
  if(missing)
    string(CONCAT missing "Tarn can't be built for Windows yet. PORTING.md describes what these "
      "folders have to supply:${missing}\n")
    if(NOT TARN_PORTABLE_ONLY)
      message(FATAL_ERROR "${missing}TARN_PORTABLE_ONLY=ON compiles all other sources.")
    endif()
    message(WARNING "${missing}All other sources are compiled, but nothing is linked.")
  endif()
endif()

if(TARN_PORTABLE_ONLY)
  set(headers ${CMAKE_BINARY_DIR}/headers)
  file(MAKE_DIRECTORY ${headers})
  execute_process(COMMAND ${CMAKE_SOURCE_DIR}/scripts/check-port --link-headers ${headers}
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND ${CMAKE_SOURCE_DIR}/scripts/check-port --list
    OUTPUT_VARIABLE sources COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+" sources "${sources}")
  add_library(tarn_portable OBJECT ${sources})
  target_compile_options(tarn_portable PRIVATE -Wall -Wextra)
  target_include_directories(tarn_portable PRIVATE src . include)
  target_include_directories(tarn_portable SYSTEM PRIVATE ${headers})
  target_compile_definitions(tarn_portable PRIVATE
    "TARN_VERSION=\"${PROJECT_VERSION}\"" "TARN_DATA_FROM_LIBRARY=\"..\"")
endif()
