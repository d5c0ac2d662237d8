#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""An installation must pass the desktop validators and work in any folder, and the package must pass its checker."""

import configparser
import os
import stat
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUILD, SESSION, DEMO, ID = (sys.argv.pop(1) for _ in range(4))
LIMIT = 300

# Report descriptors.
MOUSE = bytes([5, 1, 9, 2, 0xA1, 1, 0xC0])
HINGE = bytes([5, 0x20, 9, 0x8A, 0xA1, 1, 0x85, 1, 9, 0x8A, 0x75, 16, 0x95, 1, 0x81, 2, 0xC0])
PRERM = Path(__file__).parents[2] / "packaging/debian/prerm"


def run(*command, **options):
    """Returns the command's output. Fails the test if the command fails."""
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=LIMIT, check=False,
                            **options)
    if result.returncode != 0:
        raise AssertionError(f"{command[0]} ended with status {result.returncode}:\n{result.stdout}")
    return result.stdout


def acl_for_user(user):
    """Returns the access control list that lets this user read and write, as the kernel stores it."""
    nobody = 0xFFFFFFFF
    entries = ((0x01, 6, nobody), (0x02, 6, user), (0x04, 0, nobody), (0x10, 6, nobody), (0x20, 0, nobody))
    return struct.pack("<I", 2) + b"".join(struct.pack("<HHI", *entry) for entry in entries)


def read_entry(file):
    entry = configparser.ConfigParser(interpolation=None, delimiters="=", strict=True)
    entry.optionxform = str
    with open(file, encoding="utf-8") as lines:
        entry.read_file(lines)
    return entry


class AnInstallation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.prefix = Path(cls.folder.name, "first place")
        run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        cls.desktop = cls.prefix / f"share/applications/{ID}.desktop"
        cls.autostart = cls.prefix / f"etc/xdg/autostart/{ID}.desktop"

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_passes_the_desktop_validators(self):
        for file in (self.desktop, self.autostart):
            with self.subTest(file=file):
                # Hints count as errors.
                self.assertEqual(run("desktop-file-validate", file), "")
        run("appstreamcli", "validate", "--no-net", self.prefix / f"share/metainfo/{ID}.metainfo.xml")

    def test_refers_only_to_existing_things(self):
        program = str(self.prefix / "bin/chimewerk")
        usage = run(program, "--help")
        entry = read_entry(self.desktop)
        actions = entry["Desktop Entry"]["Actions"].rstrip(";").split(";")
        for action in actions:
            with self.subTest(action=action):
                command, option = entry[f"Desktop Action {action}"]["Exec"].rsplit(" ", 1)
                self.assertEqual(command.strip('"'), program)
                self.assertEqual(option, f"--{action}")
                self.assertIn(option, usage)
        service = read_entry(self.prefix / f"share/dbus-1/services/{ID}.service")["D-BUS Service"]
        self.assertEqual(service["Name"], ID)
        started = read_entry(self.autostart)["Desktop Entry"]
        for command in service["Exec"], started["Exec"]:
            self.assertEqual(command.replace('"', ""), f"{program} --background")
        self.assertIn("--background", usage)
        for file in (self.desktop, self.autostart):
            with self.subTest(file=file):
                icon = read_entry(file)["Desktop Entry"]["Icon"]
                self.assertTrue((self.prefix / f"share/icons/hicolor/scalable/apps/{icon}.svg").exists())
                self.assertEqual(read_entry(file)["Desktop Entry"]["TryExec"], program)

    def test_takes_the_permission_for_the_hinge_sensor_back_when_it_is_removed(self):
        with tempfile.TemporaryDirectory() as root:
            os.chmod(root, 0o755)
            helper = Path(root, "usr/lib/udev/chimewerk-hinge-sensor")
            helper.parent.mkdir(parents=True)
            helper.symlink_to(self.prefix / "lib/udev/chimewerk-hinge-sensor")
            Path(root, "dev").mkdir()
            for name, descriptor in (("hidraw0", MOUSE), ("hidraw1", HINGE)):
                device = Path(root, "sys/class/hidraw", name, "device")
                device.mkdir(parents=True)
                (device / "report_descriptor").write_bytes(descriptor)
                Path(root, "dev", name).touch()
                os.setxattr(Path(root, "dev", name), "system.posix_acl_access", acl_for_user(1000))
            run("sh", "-e", PRERM, "remove", env={**os.environ, "DPKG_ROOT": root})
            masks = [Path(root, "dev", name).stat().st_mode & stat.S_IRWXG for name in ("hidraw0", "hidraw1")]
        self.assertEqual(masks, [stat.S_IRGRP | stat.S_IWGRP, 0])

    def test_recognises_the_hinge_sensor_with_the_rights_of_nobody(self):
        helper = self.prefix / "lib/udev/chimewerk-hinge-sensor"
        with tempfile.TemporaryDirectory() as folder:
            os.chmod(folder, 0o755)
            file = Path(folder, "report_descriptor")
            self.assertEqual(subprocess.run([helper, file], check=False).returncode, 1)
            for descriptor, mode, status in ((HINGE, 0o444, 0), (MOUSE, 0o444, 1), (HINGE, 0o400, os.geteuid() == 0)):
                with self.subTest(descriptor=descriptor, mode=mode):
                    file.unlink(missing_ok=True)
                    file.write_bytes(descriptor)
                    file.chmod(mode)
                    self.assertEqual(subprocess.run([helper, file], check=False).returncode, status)

    def test_starts_with_the_session_of_the_user_who_installs_it_and_does_not_where_that_is_switched_off(self):
        with tempfile.TemporaryDirectory(prefix="a home") as home:
            environment = {**os.environ, "HOME": home}
            environment.pop("XDG_CONFIG_HOME", None)
            entry = Path(home, f".config/autostart/{ID}.desktop")
            for before, after in (("", f"TryExec={home}/.local/bin/chimewerk"), ("Hidden=true", "Hidden=true")):
                if before:
                    entry.write_text(f"[Desktop Entry]\n{before}\n")
                run("cmake", "--install", BUILD, "--prefix", f"{home}/.local", env=environment)
                self.assertIn(after, entry.read_text().splitlines())
            self.assertFalse(Path(home, ".local/etc").exists())

    def test_works_in_another_folder(self):
        with tempfile.TemporaryDirectory() as elsewhere:
            moved = Path(elsewhere, "moved")
            self.prefix.rename(moved)
            try:
                heard = run(SESSION, "--", DEMO, moved / "bin/chimewerk", "trash_add", cwd=elsewhere)
            finally:
                moved.rename(self.prefix)
        self.assertRegex(heard, "(?m)^trash_add +heard")


class ThePackage(unittest.TestCase):
    def test_is_reproducible_and_passes_the_checker(self):
        packages = []
        with tempfile.TemporaryDirectory() as folder:
            for name, zone in (("one", "UTC"), ("other", "Asia/Kathmandu")):
                run("cpack", "--config", f"{BUILD}/CPackConfig.cmake", "-B", f"{folder}/{name}", cwd=folder,
                    env={**os.environ, "TZ": zone}, umask=0o022)
                packages += Path(folder, name).glob("*.deb")
            self.assertEqual(*(package.read_bytes() for package in packages))
            run("lintian", "--allow-root", "--fail-on", "error,warning", packages[0])


if __name__ == "__main__":
    unittest.main()
