# Packages of the tool and the tests. The library itself needs the standard library alone.

# Header-only packages: link to cam_packages.
add_library(cam_packages INTERFACE)
foreach(package IN ITEMS CLI/CLI.hpp:libcli11-dev rapidjson/reader.h:rapidjson-dev)
  string(REPLACE ":" ";" package ${package})
  list(POP_FRONT package header)
  string(MAKE_C_IDENTIFIER CAM_INCLUDE_${header} variable)
  find_path(${variable} ${header})
  mark_as_advanced(${variable})
  if(NOT ${variable})
    message(FATAL_ERROR "CAM_TOOL needs the header ${header} (Debian: ${package}); "
      "-DCAM_TOOL=OFF builds the library alone")
  endif()
  set(include ${${variable}})
  if(CMAKE_CROSSCOMPILING)
    # The folder may also hold the C library's headers of the build machine.
    set(include ${PROJECT_BINARY_DIR}/include)
    cmake_path(GET header PARENT_PATH folder)
    file(MAKE_DIRECTORY ${include})
    file(CREATE_LINK ${${variable}}/${folder} ${include}/${folder} SYMBOLIC)
  endif()
  target_include_directories(cam_packages SYSTEM INTERFACE ${include})
endforeach()

if(CAM_STEPS)
  find_package(PkgConfig QUIET)
  if(PkgConfig_FOUND)
    pkg_check_modules(libdw QUIET IMPORTED_TARGET libdw)
  endif()
  if(NOT libdw_FOUND)
    message(FATAL_ERROR "CAM_STEPS needs libdw and pkg-config (Debian: libdw-dev pkgconf); "
      "-DCAM_STEPS=OFF builds a camhook that does not name steps")
  endif()
endif()

if(CAM_GTEST_SOURCE)
  set(BUILD_GMOCK OFF)
  set(INSTALL_GTEST OFF)
  include(FetchContent)
  FetchContent_Declare(GTest SOURCE_DIR ${CAM_GTEST_SOURCE} OVERRIDE_FIND_PACKAGE)
endif()
