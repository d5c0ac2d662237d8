# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# chimewerk_fuzz_test(name SOURCES a.cpp b.cpp LAYERS linux_storage platform [SEEDS folder] [WORDS dictionary]):
# Builds a libFuzzer program of these sources and adds a CTest test that runs it for a few seconds:
# 20,000 inputs, starting from those in the folder. The sources may include the headers of the
# layers and of tests/support. The program is built by clang++, whichever compiler builds the rest;
# without clang++, and in builds with sanitizers, it is left out. For a longer run use tools/fuzz.
find_program(CHIMEWERK_FUZZ_COMPILER clang++)

function(chimewerk_fuzz_test name)
  cmake_parse_arguments(FUZZ "" "SEEDS;WORDS" "SOURCES;LAYERS" ${ARGN})
  if(NOT CHIMEWERK_FUZZ_COMPILER OR CHIMEWERK_SANITIZE)
    message(STATUS "${name}: left out")
    return()
  endif()

  set(includes -I${PROJECT_SOURCE_DIR}/tests)
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/support/*.h)
  foreach(layer IN LISTS FUZZ_LAYERS)
    list(APPEND includes -I${PROJECT_BINARY_DIR}/include/${layer})
    string(REPLACE "_" "/" folder ${layer})
    file(GLOB found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.h)
    list(APPEND headers ${found})
  endforeach()
  set(sources "")
  foreach(source IN LISTS FUZZ_SOURCES)
    cmake_path(ABSOLUTE_PATH source)
    list(APPEND sources ${source})
  endforeach()

  if(FUZZ_WORDS)
    set(words -dict=${FUZZ_WORDS})
  endif()

  set(program ${CMAKE_CURRENT_BINARY_DIR}/${name})
  add_custom_command(
    OUTPUT ${program}
    COMMAND ${CHIMEWERK_FUZZ_COMPILER} -std=c++20 -g -O1 -Wall -Wextra -fsanitize=fuzzer,address,undefined
            -fno-sanitize-recover=all ${includes} ${sources} -o ${program}
    DEPENDS ${sources} ${headers}
    COMMENT "Building the fuzzer ${name}"
    VERBATIM)
  add_custom_target(${name}_program DEPENDS ${program})
  add_dependencies(checks ${name}_program)

  # New inputs go into a separate folder, never into the seeds.
  set(found ${program}-found)
  file(MAKE_DIRECTORY ${found})
  add_test(NAME ${name}
    COMMAND ${program} -seed=1 -runs=20000 -max_len=4096 -timeout=10 -rss_limit_mb=1024 -artifact_prefix=${found}/
            -print_final_stats=1 ${words} ${found} ${FUZZ_SEEDS})
  set_tests_properties(${name} PROPERTIES LABELS fuzz TIMEOUT 120)
endfunction()
