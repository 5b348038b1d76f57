# A module is a static library made of every source file in its folder; adding a file to a
# module needs no CMake change.
function(kestrin_add_library name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  # Headers are listed too, so that the Qt code generator sees a header added after its source.
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  add_library(${name} STATIC ${sources})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  target_link_libraries(${name} PUBLIC ${ARG_DEPENDS})
endfunction()
