# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Runs during an installation, when the prefix is known.
set(program "${CMAKE_INSTALL_PREFIX}/bin/chimewerk")
set(command "${program}")
if(program MATCHES "[^-A-Za-z0-9/._+]")
  set(command "\"${program}\"")
endif()

# Desktops read autostart entries from two folders only.
set(autostart "${CMAKE_INSTALL_PREFIX}/etc/xdg/autostart")
if(CMAKE_INSTALL_PREFIX MATCHES "^/usr(/local)?$")
  set(autostart "/etc/xdg/autostart")
elseif(CMAKE_INSTALL_PREFIX STREQUAL "$ENV{HOME}/.local")
  set(autostart "$ENV{HOME}/.config/autostart")
  if(DEFINED ENV{XDG_CONFIG_HOME})
    set(autostart "$ENV{XDG_CONFIG_HOME}/autostart")
  endif()
endif()

function(install_filled_in template destination name)
  configure_file("${sources}/${template}.in" "${made}/${template}/${name}" @ONLY)
  file(INSTALL "${made}/${template}/${name}" DESTINATION "${destination}")
endfunction()

install_filled_in(chimewerk.desktop "${CMAKE_INSTALL_PREFIX}/share/applications" ${CHIMEWERK_ID}.desktop)
install_filled_in(dbus.service "${CMAKE_INSTALL_PREFIX}/share/dbus-1/services" ${CHIMEWERK_ID}.service)
# A user who has switched the start off wants it to stay so.
set(off "")
if(EXISTS "$ENV{DESTDIR}${autostart}/${CHIMEWERK_ID}.desktop")
  file(STRINGS "$ENV{DESTDIR}${autostart}/${CHIMEWERK_ID}.desktop" off REGEX "^(Hidden=true|X-GNOME-Autostart-enabled=false)")
endif()
if(off STREQUAL "")
  install_filled_in(autostart.desktop "${autostart}" ${CHIMEWERK_ID}.desktop)
endif()
