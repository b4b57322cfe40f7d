# What the tool and the tests use of other projects; the library itself needs the standard library alone.

find_package(CLI11 REQUIRED)
find_path(rapidjsonHeaders rapidjson/reader.h REQUIRED)  # where the compiler looks by itself
mark_as_advanced(rapidjsonHeaders)
if(NOT CMAKE_CROSSCOMPILING)
  find_package(PkgConfig)
  if(PkgConfig_FOUND)
    pkg_check_modules(libdw IMPORTED_TARGET libdw)
  endif()
endif()
if(CMAKE_CROSSCOMPILING)
  # Of this machine's headers those alone: beside them stand those of its C library.
  set(headers ${PROJECT_BINARY_DIR}/include)
  file(MAKE_DIRECTORY ${headers})
  foreach(folder IN ITEMS CLI rapidjson)
    file(CREATE_LINK /usr/include/${folder} ${headers}/${folder} SYMBOLIC)
  endforeach()
  set_target_properties(CLI11::CLI11 PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES ${headers})
endif()
if(CMAKE_CROSSCOMPILING OR CMAKE_CXX_FLAGS MATCHES "-stdlib=")
  # GoogleTest from its sources: Debian's libraries of it are for this machine's processor and for gcc's
  # C++ library.
  set(BUILD_GMOCK OFF)
  set(INSTALL_GTEST OFF)
  include(FetchContent)
  FetchContent_Declare(GTest SOURCE_DIR /usr/src/googletest OVERRIDE_FIND_PACKAGE)
endif()
