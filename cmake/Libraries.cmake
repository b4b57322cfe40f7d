# cam_library(TARGET): version, include directories and installation of a shared library.
function(cam_library target)
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION}
    # Until 1.0 a minor version may change the interface. Each has its own name, so that the loader refuses a
    # program that was built against another one.
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    # The libraries lie in one directory, in the build tree and installed.
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib
    BUILD_WITH_INSTALL_RPATH ON
    INSTALL_RPATH "$ORIGIN")
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/cam_common>)
  install(TARGETS ${target} EXPORT cam_common LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endfunction()

# cam_harden(TARGET): link options that make a fault harder to use against the process that loads the library.
function(cam_harden target)
  target_link_options(${target} PRIVATE
    # Relocated data becomes read-only, which requires that all symbols are bound at load.
    LINKER:-z,relro LINKER:-z,now
    LINKER:-z,noexecstack
    # Code that needs relocation at load does not link.
    LINKER:-z,text)
endfunction()
