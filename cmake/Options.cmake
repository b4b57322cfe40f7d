# Compiler options of every target of the project: link to cam_options.

add_library(cam_options INTERFACE)
target_include_directories(cam_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(cam_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  # All processors compute the same floats.
  -ffp-contract=off
  # The binaries contain no path of the build machine. Profiles keep their paths, because the profile reader
  # opens the sources.
  -fdebug-prefix-map=${PROJECT_SOURCE_DIR}=.
  -fmacro-prefix-map=${PROJECT_SOURCE_DIR}=.)
if(CAM_WARNINGS_AS_ERRORS)
  target_compile_options(cam_options INTERFACE -Werror)
endif()

# Sanitizers and coverage need the same options for every object, those of other projects included.
if(CAM_SANITIZE)
  add_compile_options(-fsanitize=${CAM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    add_compile_options(-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/sanitizers.ignore)
  endif()
  add_link_options(-fsanitize=${CAM_SANITIZE})
endif()
if(CAM_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()

# cam_compile_together(BATCH TARGET...): compiles BATCH sources of a target as one, or all for 0, which takes less time.
function(cam_compile_together batch)
  if(NOT CMAKE_CXX_CLANG_TIDY) # which reads each source alone
    set_target_properties(${ARGN} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${batch})
  endif()
endfunction()
