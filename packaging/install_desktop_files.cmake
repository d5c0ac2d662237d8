# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Runs during an installation, when the prefix is known.
set(program "${CMAKE_INSTALL_PREFIX}/bin/chimewerk")
set(command "${program}")
if(program MATCHES "[^-A-Za-z0-9/._+]")
  set(command "\"${program}\"")
endif()

# With the prefix /usr, settings are in /etc.
set(settings "${CMAKE_INSTALL_PREFIX}/etc")
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(settings "/etc")
endif()

function(install_filled_in template destination name)
  configure_file("${sources}/${template}.in" "${made}/${template}/${name}" @ONLY)
  file(INSTALL "${made}/${template}/${name}" DESTINATION "${destination}")
endfunction()

install_filled_in(chimewerk.desktop "${CMAKE_INSTALL_PREFIX}/share/applications" ${CHIMEWERK_ID}.desktop)
install_filled_in(dbus.service "${CMAKE_INSTALL_PREFIX}/share/dbus-1/services" ${CHIMEWERK_ID}.service)
install_filled_in(autostart.desktop "${settings}/xdg/autostart" ${CHIMEWERK_ID}.desktop)
