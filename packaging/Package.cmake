# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# Settings of the Debian package, which packaging/make-package builds, and of the RPM, which
# 'cpack -G RPM' builds in build/release where rpmbuild is.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME chimewerk)
set(CPACK_PACKAGE_VENDOR Chimewerk)
set(CPACK_PACKAGE_HOMEPAGE_URL ${PROJECT_HOMEPAGE_URL})
set(CPACK_PACKAGE_CONTACT "Chimewerk developers <developers@chimewerk.org>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_RPM_FILE_NAME RPM-DEFAULT)
# A package fits only the release whose libraries it was linked with. So its version names the release,
# as a later release's must be newer.
cmake_host_system_information(RESULT distribution QUERY DISTRIB_ID)
cmake_host_system_information(RESULT distribution_version QUERY DISTRIB_VERSION_ID)
if(distribution STREQUAL "debian" AND distribution_version)
  string(APPEND package_release "~deb${distribution_version}u1")
elseif(distribution_version)
  string(APPEND package_release "~${distribution}${distribution_version}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE ${package_release})
if(CMAKE_CROSSCOMPILING AND CMAKE_LIBRARY_ARCHITECTURE)
  execute_process(COMMAND dpkg-architecture --host-type ${CMAKE_LIBRARY_ARCHITECTURE} --query DEB_HOST_ARCH
    OUTPUT_VARIABLE CPACK_DEBIAN_PACKAGE_ARCHITECTURE OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endif()
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(summary "short sounds when something happens to the computer")
set(description
"Chimewerk lives in the tray and plays a short sound when something happens: a
file goes into the trash, the lid crosses an angle, a key is pressed, the
charger is plugged in, the network comes back, an application starts.
.
It knows 19 events. Each has its own switch, sound and volume; six themes of
sounds come with it, and others can be made of one's own files.")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "${summary}\n${description}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The program looks for each of these at run time; without it, one feature is missing.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
  "fonts-noto-color-emoji, pipewire-pulse | pulseaudio, qt6-wayland, upower, xdg-utils")

string(REPLACE "\n.\n" "\n\n" CPACK_RPM_PACKAGE_DESCRIPTION "${description}")
set(CPACK_RPM_PACKAGE_SUMMARY "Short sounds when something happens to the computer")
set(CPACK_RPM_PACKAGE_LICENSE "GPL-3.0-or-later AND CC0-1.0")
set(CPACK_RPM_PACKAGE_GROUP "Applications/Multimedia")
set(CPACK_RPM_PACKAGE_RELEASE ${CPACK_DEBIAN_PACKAGE_RELEASE})
set(CPACK_RPM_PACKAGE_AUTOREQ ON)
set(CPACK_RPM_PACKAGE_RELOCATABLE OFF)
set(CPACK_RPM_SPEC_MORE_DEFINE "%define packager ${CPACK_PACKAGE_CONTACT}")
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/rpm_changelog
  CONTENT "* ${release_day} ${CPACK_PACKAGE_CONTACT} - ${PROJECT_VERSION}-${package_release}\n- See the project's changelog.\n")
set(CPACK_RPM_CHANGELOG_FILE ${CMAKE_CURRENT_BINARY_DIR}/rpm_changelog)
set(CPACK_RPM_USER_FILELIST "%config(noreplace) /etc/xdg/autostart/${CHIMEWERK_ID}.desktop")
set(CPACK_RPM_EXCLUDE_FROM_AUTO_FILELIST_ADDITION
  /etc/xdg /etc/xdg/autostart /usr/lib/udev /usr/lib/udev/rules.d /usr/share/applications /usr/share/dbus-1
  /usr/share/dbus-1/services /usr/share/icons /usr/share/icons/hicolor /usr/share/icons/hicolor/16x16
  /usr/share/icons/hicolor/16x16/apps /usr/share/icons/hicolor/scalable /usr/share/icons/hicolor/scalable/apps
  /usr/share/icons/hicolor/symbolic /usr/share/icons/hicolor/symbolic/apps /usr/share/licenses /usr/share/man
  /usr/share/man/man1 /usr/share/metainfo)

# The package installs into /usr, whatever the build's prefix, and into the system's folders
# beside it.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)

set(debian ${CMAKE_CURRENT_LIST_DIR}/debian)
file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/conffiles
  CONTENT "/etc/xdg/autostart/${CHIMEWERK_ID}.desktop\n")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA
  ${CMAKE_CURRENT_BINARY_DIR}/conffiles ${debian}/postinst ${debian}/prerm ${debian}/postrm)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
configure_file(finish_package.cmake.in finish_package.cmake @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/finish_package.cmake)

include(CPack)
