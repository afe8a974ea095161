# SPDX-License-Identifier: GPL-3.0-or-later
# quib_compile_by_folder(TARGET): where sources are compiled together, those of one folder are, a few at a time. The
# names in the unnamed namespaces of a folder's sources differ; those of two folders may be equal.
function(quib_compile_by_folder target)
  get_target_property(sources ${target} SOURCES)
  foreach(source ${sources})
    file(RELATIVE_PATH folder ${CMAKE_CURRENT_SOURCE_DIR} ${source})
    get_filename_component(folder "${folder}" DIRECTORY)
    string(MAKE_C_IDENTIFIER "${folder}" folder)
    math(EXPR count_${folder} "${count_${folder}} + 1")
    math(EXPR batch "${count_${folder}} / 6")
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP "${folder}_${batch}")
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
endfunction()

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
