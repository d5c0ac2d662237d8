# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# One static library per folder. Only targets that link a folder's library can include its headers,
# as "folder/header.h": the include path holds one link per library instead of the source root, so
# an include of any other folder, such as a higher layer, does not compile.
#
#     chimewerk_layer(sound SOURCES a.cpp b.cpp USES platform)
#
# makes the target chimewerk_sound. Its dependencies are public: targets that use it may include
# their headers too. The name of a nested folder has an underscore for the slash: ui_rules, included
# as "ui/rules/header.h".
function(chimewerk_layer name)
  cmake_parse_arguments(LAYER "" "" "SOURCES;USES" ${ARGN})
  set(target chimewerk_${name})
  string(REPLACE "_" "/" folder ${name})
  set(view ${PROJECT_BINARY_DIR}/include/${name})
  cmake_path(GET folder PARENT_PATH parent)
  file(MAKE_DIRECTORY ${view}/${parent})
  file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${view}/${folder} SYMBOLIC)

  if(LAYER_SOURCES)
    add_library(${target} STATIC ${LAYER_SOURCES})
    set(scope PUBLIC)
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  target_include_directories(${target} ${scope} ${view})
  foreach(used IN LISTS LAYER_USES)
    target_link_libraries(${target} ${scope} chimewerk_${used})
  endforeach()

  chimewerk_check_headers(${target} ${folder})
endfunction()

# Checks, in the target `checks`, that every public header compiles alone: each gets a translation
# unit that includes nothing else.
function(chimewerk_check_headers target folder)
  file(GLOB headers RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} CONFIGURE_DEPENDS *.h)
  # These units only compile, so a build with sanitizers would show nothing new.
  if(NOT headers OR CHIMEWERK_SANITIZE)
    return()
  endif()
  set(units "")
  foreach(header IN LISTS headers)
    set(unit ${CMAKE_CURRENT_BINARY_DIR}/alone/${header}.cpp)
    file(CONFIGURE OUTPUT ${unit} CONTENT "#include \"${folder}/${header}\"\n#include \"${folder}/${header}\"\n")
    list(APPEND units ${unit})
  endforeach()
  add_library(${target}_headers_alone OBJECT EXCLUDE_FROM_ALL ${units})
  add_dependencies(checks ${target}_headers_alone)
  target_link_libraries(${target}_headers_alone PRIVATE ${target})
endfunction()

#     chimewerk_sample_loops(resampler.cpp stereo_mix.cpp)
#
# says that these sources of the folder go over samples: in release builds they gain more from speed than from size.
function(chimewerk_sample_loops)
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS "$<$<CONFIG:Release>:-O3>")
endfunction()
