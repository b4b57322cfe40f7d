# What a build for another processor takes of the packages that this machine has for its own.

# Of the headers those alone: beside them stand those of this machine's C library.
set(crossHeaders ${PROJECT_BINARY_DIR}/include)
file(MAKE_DIRECTORY ${crossHeaders})
foreach(folder IN ITEMS nlohmann CLI)
  file(CREATE_LINK /usr/include/${folder} ${crossHeaders}/${folder} SYMBOLIC)
endforeach()
set_target_properties(nlohmann_json::nlohmann_json CLI11::CLI11 PROPERTIES
  INTERFACE_INCLUDE_DIRECTORIES ${crossHeaders})

# GoogleTest from its sources: Debian's libraries of it are built for this machine.
set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
include(FetchContent)
FetchContent_Declare(GTest SOURCE_DIR /usr/src/googletest OVERRIDE_FIND_PACKAGE)
