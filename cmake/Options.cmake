# How every target of the project is compiled: cam_options.

add_library(cam_options INTERFACE)
target_include_directories(cam_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(cam_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  # Every processor computes the same floats.
  -ffp-contract=off
  # No path of the machine that built it stands in what is shipped. Profiles keep theirs: what reads
  # them looks for the sources.
  -fdebug-prefix-map=${PROJECT_SOURCE_DIR}=.
  -fmacro-prefix-map=${PROJECT_SOURCE_DIR}=.)
if(CAM_WARNINGS_AS_ERRORS)
  target_compile_options(cam_options INTERFACE -Werror)
endif()
