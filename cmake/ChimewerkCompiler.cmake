# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Language level, warnings and sanitizers, the same for every target.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_compile_options(
  -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wcast-qual -Wcast-align
  -Wmissing-declarations -Wshadow -Wundef -Wdouble-promotion)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  add_compile_options(-Wsuggest-override -Wduplicated-cond -Wlogical-op)
endif()
if(CHIMEWERK_WERROR)
  add_compile_options(-Werror)
endif()

# Release builds: hardened, and without paths of the build machine.
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fcf-protection CHIMEWERK_HAS_CF_PROTECTION)
check_cxx_compiler_flag(-mbranch-protection=standard CHIMEWERK_HAS_BRANCH_PROTECTION)
if(CHIMEWERK_HAS_CF_PROTECTION)
  add_compile_options($<$<CONFIG:Release>:-fcf-protection>)
elseif(CHIMEWERK_HAS_BRANCH_PROTECTION)
  add_compile_options($<$<CONFIG:Release>:-mbranch-protection=standard>)
endif()
add_compile_options(
  "$<$<CONFIG:Release>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2;-D_GLIBCXX_ASSERTIONS>"
  "$<$<CONFIG:Release>:-fstack-protector-strong;-fstack-clash-protection>"
  "$<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=;-ffile-prefix-map=${PROJECT_BINARY_DIR}/=>")
add_link_options("$<$<CONFIG:Release>:-Wl,-z,relro,-z,now>")

# Release builds: without what nothing uses, and with a list of relocations a tenth as long.
include(CheckSourceRuns)
add_compile_options("$<$<CONFIG:Release>:-ffunction-sections;-fdata-sections>")
add_link_options("$<$<CONFIG:Release>:-Wl,--gc-sections>")
if(NOT CMAKE_CROSSCOMPILING)
  # Some linkers know the option and write programs that do not start.
  set(CMAKE_REQUIRED_LINK_OPTIONS -pie -Wl,-z,pack-relative-relocs)
  set(CMAKE_REQUIRED_FLAGS -fPIE)
  check_source_runs(CXX "const char* volatile text = \"\"; int main() { return *text; }"
    CHIMEWERK_HAS_PACKED_RELOCATIONS)
  unset(CMAKE_REQUIRED_LINK_OPTIONS)
  unset(CMAKE_REQUIRED_FLAGS)
endif()
if(CHIMEWERK_HAS_PACKED_RELOCATIONS)
  add_link_options("$<$<CONFIG:Release>:-Wl,-z,pack-relative-relocs>")
endif()
include(CheckPIESupported)
check_pie_supported()

if(CHIMEWERK_SANITIZE)
  add_compile_options(-fsanitize=${CHIMEWERK_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${CHIMEWERK_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # With sanitizers, GCC cannot see that a value is always set before it is read.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()
