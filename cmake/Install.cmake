# What `cmake --install` installs in addition to the targets: headers, a CMake package, a pkg-config file and
# the generated reference. Every file finds the others relative to itself, so the tree can be moved.

include(CMakePackageConfigHelpers)

# The public headers include each other by their path in the source tree.
set(headerDir ${CMAKE_INSTALL_INCLUDEDIR}/cam_common)
install(FILES common/HeskParameterUpdater.h common/HeskSensorModeControl.h
  DESTINATION ${headerDir}/common)
install(FILES common/sensormode/SensorModeCfg.h common/sensormode/SensorScenario.h
  DESTINATION ${headerDir}/common/sensormode)
install(DIRECTORY platform DESTINATION ${headerDir} FILES_MATCHING PATTERN "*.h")
# host/Phone.h and the headers that it includes: a simulated phone for the tests of a pipeline.
install(FILES host/CameraMetadata.h host/Effect.h host/EffectCollector.h host/LogSink.h
    host/Observer.h host/Phone.h host/PhoneConfig.h host/PhoneFiles.h host/TextStore.h host/TuningBuffer.h
  DESTINATION ${headerDir}/host)
# The installed headers refer to docs/hooks.md and docs/scenarios.md.
install(FILES docs/hooks.md docs/scenarios.md docs/tags.md docs/rules.md docs/scenario.schema.json
  DESTINATION ${CMAKE_INSTALL_DOCDIR})

if(CAM_TOOL)
  install(FILES scripts/completion.bash RENAME camhook
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
endif()

set(packageDir ${CMAKE_INSTALL_LIBDIR}/cmake/cam_common)
install(EXPORT cam_common NAMESPACE cam_common:: DESTINATION ${packageDir}
  FILE cam_commonTargets.cmake)
configure_package_config_file(cmake/cam_commonConfig.cmake.in cam_commonConfig.cmake
  INSTALL_DESTINATION ${packageDir})
# Until 1.0 a new minor version may change the interface.
write_basic_package_version_file(cam_commonConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
  ${CMAKE_CURRENT_BINARY_DIR}/cam_commonConfig.cmake
  ${CMAKE_CURRENT_BINARY_DIR}/cam_commonConfigVersion.cmake
  DESTINATION ${packageDir})

set(pkgconfigDir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefixFromPkgconfig /${pkgconfigDir} /)
configure_file(cmake/cam_common.pc.in cam_common.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/cam_common.pc DESTINATION ${pkgconfigDir})
