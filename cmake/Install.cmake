# What `cmake --install` lays down besides the libraries, so that another build finds them: headers, a
# CMake package and a pkg-config file. All find the rest from their own place, wherever the tree is put.

include(CMakePackageConfigHelpers)

# The public headers include others by their place in the tree.
set(headerDir ${CMAKE_INSTALL_INCLUDEDIR}/cam_common)
install(FILES common/HeskParameterUpdater.h common/HeskSensorModeControl.h
  DESTINATION ${headerDir}/common)
install(FILES common/sensormode/SensorModeTables.h common/sensormode/SensorScenario.h
  DESTINATION ${headerDir}/common/sensormode)
# The public headers refer to these documents.
install(FILES docs/hooks.md docs/tags.md DESTINATION ${headerDir}/docs)
install(DIRECTORY platform DESTINATION ${headerDir} FILES_MATCHING PATTERN "*.h")

set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/cam_common)
install(EXPORT cam_common NAMESPACE cam_common:: DESTINATION ${packageDir}
  FILE cam_commonTargets.cmake)
configure_package_config_file(cmake/cam_commonConfig.cmake.in cam_commonConfig.cmake
  INSTALL_DESTINATION ${packageDir})
# Until 1.0 a new minor version may change the interface.
write_basic_package_version_file(cam_commonConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/cam_commonConfig.cmake
  ${PROJECT_BINARY_DIR}/cam_commonConfigVersion.cmake
  DESTINATION ${packageDir})

set(pkgconfigDir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefixFromPkgconfig /${pkgconfigDir} /)
configure_file(cmake/cam_common.pc.in cam_common.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/cam_common.pc DESTINATION ${pkgconfigDir})
