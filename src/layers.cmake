# SPDX-License-Identifier: GPL-3.0-or-later
# quib_layer(NAME): the static library quib_NAME from every source below src/NAME.
function(quib_layer name)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  if(NOT sources)
    add_library(quib_${name} INTERFACE)
    return()
  endif()
  add_library(quib_${name} STATIC ${sources})
  target_include_directories(quib_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(quib_${name} PRIVATE quib_warnings)
endfunction()
