# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# The program and its modules are made of layers; each layer is in one of them.
#
#     chimewerk_objects(target linux_base platform)
#
# adds the objects of these layers to the target.
function(chimewerk_objects target)
  foreach(layer IN LISTS ARGN)
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:chimewerk_${layer}>)
  endforeach()
endfunction()

#     chimewerk_exports(target chimewerk-windows)
#
# lets these modules use what is in the target. Nothing else of it can be seen from outside, so the loader has
# little to do and the linker can leave out what nothing uses.
function(chimewerk_exports target)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    set(is_library OFF)
    set(option --dynamic-list)
  else()
    set(is_library ON)
    set(option --version-script)
  endif()
  set(list ${CMAKE_CURRENT_BINARY_DIR}/${target}.exports)
  list(TRANSFORM ARGN REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE modules)
  add_custom_command(
    OUTPUT ${list}
    COMMAND ${CMAKE_COMMAND} -D NM=${CMAKE_NM} -D LIST=${list} -D LIBRARY=${is_library} -P ${PROJECT_SOURCE_DIR}/cmake/write_exports.cmake
            -- ${modules}
    DEPENDS ${ARGN} ${PROJECT_SOURCE_DIR}/cmake/write_exports.cmake
    VERBATIM)
  target_sources(${target} PRIVATE ${list})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${list})
  target_link_options(${target} PRIVATE LINKER:${option}=${list})
endfunction()

#     chimewerk_optimize_whole(target linux_audio sound)
#
# Lets the compiler see all these layers of the target at once in release builds, which makes them smaller by a sixth. The
# toolkit does not allow that for what is linked into a program and uses the toolkit. The objects also hold plain code, for
# linkers that cannot do this.
function(chimewerk_optimize_whole target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    foreach(layer IN LISTS ARGN)
      target_compile_options(chimewerk_${layer} PRIVATE "$<$<CONFIG:Release>:-flto=auto;-ffat-lto-objects>")
    endforeach()
    target_link_options(${target} PRIVATE "$<$<CONFIG:Release>:-flto=auto>")
  endif()
endfunction()
