# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Writes a linker's list: the symbols that these modules leave to others to define, and the functions by which a
# module is entered, whose names begin with the program's. LIBRARY says that it is for a library.
#
#     cmake -D NM=nm -D LIST=file -D LIBRARY=ON -P write_exports.cmake -- module.so...
set(symbols "")
set(is_module FALSE)
foreach(index RANGE ${CMAKE_ARGC})
  set(argument "${CMAKE_ARGV${index}}")
  if(is_module AND argument)
    execute_process(COMMAND ${NM} --dynamic --undefined-only --format=just-symbols ${argument}
      OUTPUT_VARIABLE undefined COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[^\n]*chimewerk[^\n]*" found "${undefined}")
    list(APPEND symbols ${found})
  elseif(argument STREQUAL "--")
    set(is_module TRUE)
  endif()
endforeach()
list(REMOVE_DUPLICATES symbols)
list(SORT symbols)
list(PREPEND symbols "chimewerk*")
list(JOIN symbols ";\n  " lines)
if(LIBRARY)
  file(CONFIGURE OUTPUT ${LIST} CONTENT "{\nglobal:\n  ${lines};\nlocal:\n  *;\n};\n")
else()
  file(CONFIGURE OUTPUT ${LIST} CONTENT "{\n  ${lines};\n};\n")
endif()
