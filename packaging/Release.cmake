# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Sets release_date, release_day (as in "Mon Jan 31 2000"), release_time (seconds since 1970) and
# package_release.
#
# The changelog is the only place with the date of a version. That date is also the timestamp of
# the package's files, as is Debian's custom, so a clone and an archive without history give the
# same bytes.
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/debian/changelog changelog REGEX "^(chimewerk \\(| -- )")
list(POP_FRONT changelog newest signed)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/debian/changelog)
if(NOT newest MATCHES "^chimewerk \\(([^-]+)-([^)]+)\\)" OR NOT CMAKE_MATCH_1 STREQUAL PROJECT_VERSION)
  message(FATAL_ERROR "packaging/debian/changelog does not begin with version ${PROJECT_VERSION}")
endif()
set(package_release ${CMAKE_MATCH_2})
if(NOT signed MATCHES ">  (.+)$")
  message(FATAL_ERROR "packaging/debian/changelog: the newest entry has no date")
endif()
set(signed ${CMAKE_MATCH_1})
foreach(wanted IN ITEMS "release_date;+%Y-%m-%d" "release_day;+%a %b %d %Y" "release_time;+%s")
  list(GET wanted 0 name)
  list(GET wanted 1 format)
  execute_process(COMMAND env LC_ALL=C date --utc --date ${signed} ${format} OUTPUT_VARIABLE ${name}
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endforeach()
