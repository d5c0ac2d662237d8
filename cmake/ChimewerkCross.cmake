# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Toolchain file: builds with Debian's cross compiler for another architecture of Debian, whose name is in
# CHIMEWERK_ARCHITECTURE, for example arm64.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CHIMEWERK_ARCHITECTURE)
foreach(value IN ITEMS GNU_TYPE GNU_CPU MULTIARCH)
  execute_process(COMMAND dpkg-architecture --host-arch ${CHIMEWERK_ARCHITECTURE} --force --query DEB_HOST_${value}
    OUTPUT_VARIABLE ${value} OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endforeach()
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${GNU_CPU})
set(CMAKE_CXX_COMPILER ${GNU_TYPE}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${MULTIARCH})
# pkg-config and CMake find the libraries of that architecture, and Qt's own tools among this machine's.
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${MULTIARCH}/pkgconfig:/usr/share/pkgconfig)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(QT_HOST_PATH /usr)
