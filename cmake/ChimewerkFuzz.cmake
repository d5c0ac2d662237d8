# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# chimewerk_fuzz_test(name SOURCES a.cpp b.cpp LAYERS linux_storage platform [LIBRARIES sndfile] [SEEDS folder]
#                     [WORDS dictionary] [RUNS 3000] [MODULE_SOURCES c.cpp MODULE_LIBRARIES avcodec]):
# Builds a libFuzzer program of these sources and adds a CTest test that runs it for a few seconds:
# 20,000 inputs, or RUNS, starting from those in the folder. The sources may include the headers of the
# layers and of tests/support. The program is built by clang++, whichever compiler builds the rest;
# without clang++, and in builds with sanitizers, it is left out. For a longer run use tools/fuzz.
# The module, if there is one, is chimewerk-m4a.so in CHIMEWERK_MODULE_DIR, instrumented like the program.
find_program(CHIMEWERK_FUZZ_COMPILER clang++)
add_custom_target(fuzzers)
add_dependencies(checks fuzzers)

function(chimewerk_fuzz_test name)
  cmake_parse_arguments(FUZZ "" "RUNS;SEEDS;WORDS" "SOURCES;LAYERS;LIBRARIES;MODULE_SOURCES;MODULE_LIBRARIES" ${ARGN})
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
  list(TRANSFORM FUZZ_LIBRARIES PREPEND -l)
  list(TRANSFORM FUZZ_MODULE_LIBRARIES PREPEND -l)
  foreach(source IN LISTS FUZZ_SOURCES)
    cmake_path(ABSOLUTE_PATH source)
    list(APPEND sources ${source})
  endforeach()

  if(NOT FUZZ_RUNS)
    set(FUZZ_RUNS 20000)
  endif()
  if(FUZZ_WORDS)
    set(words -dict=${FUZZ_WORDS})
  endif()

  set(program ${CMAKE_CURRENT_BINARY_DIR}/${name})
  set(compile ${CHIMEWERK_FUZZ_COMPILER} -std=c++20 -g -O1 -Wall -Wextra -fno-sanitize-recover=all ${includes})
  if(FUZZ_MODULE_SOURCES)
    set(modules ${program}-modules)
    file(MAKE_DIRECTORY ${modules})
    set(module ${modules}/chimewerk-m4a.so)
    list(APPEND compile "-DCHIMEWERK_MODULE_DIR=\"${modules}\""
         -DCHIMEWERK_M4A_FUNCTION=openM4a "-DCHIMEWERK_M4A_FUNCTION_NAME=\"openM4a\"")
    add_custom_command(
      OUTPUT ${module}
      COMMAND ${compile} -fsanitize=fuzzer-no-link,address,undefined -shared -fPIC
              ${FUZZ_MODULE_SOURCES} ${FUZZ_MODULE_LIBRARIES} -o ${module}
      DEPENDS ${FUZZ_MODULE_SOURCES} ${headers}
      COMMENT "Building the module of the fuzzer ${name}"
      VERBATIM)
  endif()
  add_custom_command(
    OUTPUT ${program}
    COMMAND ${compile} -fsanitize=fuzzer,address,undefined ${sources} ${FUZZ_LIBRARIES} -o ${program}
    DEPENDS ${sources} ${headers} ${module}
    COMMENT "Building the fuzzer ${name}"
    VERBATIM)
  add_custom_target(${name}_program DEPENDS ${program})
  add_dependencies(fuzzers ${name}_program)

  # New inputs go into a separate folder, never into the seeds.
  set(found ${program}-found)
  file(MAKE_DIRECTORY ${found})
  add_test(NAME ${name}
    COMMAND ${program} -seed=1 -runs=${FUZZ_RUNS} -timeout=30 -rss_limit_mb=1024 -artifact_prefix=${found}/
            -print_final_stats=1 ${words} ${found} ${FUZZ_SEEDS})
  set_tests_properties(${name} PROPERTIES LABELS fuzz TIMEOUT 120)
endfunction()
