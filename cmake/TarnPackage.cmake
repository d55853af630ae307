# Files for building programs that embed Tarn: the C interface, and the metadata for pkg-config and
# find_package. All paths are relative to the files themselves, so an installation can be moved.
include(CMakePackageConfigHelpers)

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

add_library(tarn_embedding INTERFACE)
set_target_properties(tarn_embedding PROPERTIES EXPORT_NAME Automation)
target_include_directories(tarn_embedding INTERFACE
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(tarn_embedding INTERFACE ${CMAKE_DL_LIBS})
install(TARGETS tarn_embedding EXPORT TarnTargets)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Tarn)
install(EXPORT TarnTargets NAMESPACE Tarn:: DESTINATION ${package_folder})
configure_package_config_file(cmake/TarnConfig.cmake.in ${CMAKE_BINARY_DIR}/TarnConfig.cmake
  INSTALL_DESTINATION ${package_folder}
  PATH_VARS TARN_INSTALL_LIBDIR CMAKE_INSTALL_DATADIR)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/TarnConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/TarnConfig.cmake ${CMAKE_BINARY_DIR}/TarnConfigVersion.cmake
  DESTINATION ${package_folder})

file(RELATIVE_PATH prefix_from_pc
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pc ${prefix_from_pc})
configure_file(cmake/tarn.pc.in ${CMAKE_BINARY_DIR}/tarn.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/tarn.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
