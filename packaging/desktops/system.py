# SPDX-FileCopyrightText: 2026 Chimewerk developers
# SPDX-License-Identifier: GPL-3.0-or-later

"""A Debian system without devices, in namespaces of its own, with a user who is logged in."""

import os
import shlex
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
USER = "tester"
SESSION = {"HOME": f"/home/{USER}", "USER": USER, "LOGNAME": USER, "SHELL": "/bin/bash", "LANG": "C.UTF-8",
           "PATH": "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin", "XDG_RUNTIME_DIR": "/run/user/1000",
           "DBUS_SESSION_BUS_ADDRESS": "unix:path=/run/user/1000/bus"}
BOOT_TIMEOUT = 60.0
COMMAND_TIMEOUT = 60.0


class SystemFailed(Exception):
    """The system did not do what it needs to."""


def eventually(condition, seconds, interval=0.2):
    """Returns the first true value of condition(), or its last value after so many seconds."""
    deadline = time.monotonic() + seconds
    while not (value := condition()) and time.monotonic() < deadline:
        time.sleep(interval)
    return value


class System:
    """Boots a root folder. What changes in it is thrown away at the end. Needs root."""

    def __init__(self, root, folder):
        self.changes = Path(folder) / "changes"
        self.environment = {}
        self._units = 0
        mounts = (Path("/sys/fs/cgroup/unified"), Path("/sys/fs/cgroup"))
        self._group = next(each for each in mounts if (each / "cgroup.procs").exists()) / f"try-desktops-{os.getpid()}"
        self._group.mkdir()
        # The first process must be in its group before the group becomes the root of a namespace.
        enter = f"echo $$ >{shlex.quote(str(self._group))}/cgroup.procs && exec \"$@\""
        self._outer = subprocess.Popen(
            ["setpriv", "--pdeathsig", "KILL", "sh", "-c", enter, "sh", "unshare", "--mount", "--uts", "--ipc", "--net",
             "--pid", "--cgroup", "--fork", "--kill-child", HERE / "boot", Path(root).resolve(),
             self.changes.resolve()],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, start_new_session=True)
        self._first = None

    def __enter__(self):
        try:
            self._first = eventually(self._first_process, BOOT_TIMEOUT)
            if not self._first or not eventually(
                    lambda: self.run("test -S /run/user/1000/bus", user="root").returncode == 0, BOOT_TIMEOUT, 0.5):
                raise SystemFailed("the system does not boot")
            return self
        except BaseException:
            self.__exit__()
            raise

    def __exit__(self, *_):
        if self._first:
            os.kill(self._first, signal.SIGKILL)
        self._outer.kill()
        self._outer.wait()
        # The kernel frees the groups a moment after their last process.
        eventually(self._remove_groups, 10)
        shutil.rmtree(self.changes, ignore_errors=True)

    def file(self, path):
        """Returns the path, on this side, of a file of the system."""
        return Path(f"/proc/{self._first}/root") / path.lstrip("/")

    def command(self, command, user=USER):
        """Returns the command line that runs a shell command in the system, in the session of its user."""
        variables = {**SESSION, **self.environment} if user == USER else {"PATH": SESSION["PATH"], "LANG": "C.UTF-8"}
        return ["nsenter", "--target", str(self._first), "--mount", "--uts", "--ipc", "--net", "--pid", "--cgroup",
                "--root", "--wd", "--", "runuser", "--user", user, "--", "env", "--ignore-environment",
                *(f"{name}={value}" for name, value in variables.items()), "bash", "-c",
                f"cd; {command}"]

    def run(self, command, user=USER, seconds=COMMAND_TIMEOUT):
        """Runs a shell command to its end. After so many seconds the command is ended, with status 124."""
        # A file, not a pipe: what the command leaves running may hold its output open.
        with tempfile.TemporaryFile("w+", errors="replace") as output:
            done = subprocess.run(["timeout", "--kill-after=2", str(seconds), *self.command(command, user)],
                                  check=False, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT)
            output.seek(0)
            done.stdout = output.read()
            return done

    def output(self, command, user=USER):
        """Returns what a shell command prints; raises SystemFailed if it fails."""
        done = self.run(command, user)
        if done.returncode:
            raise SystemFailed(f"{command}: {done.stdout.strip()}")
        return done.stdout.strip()

    def start(self, command):
        """Starts a shell command as a unit of the user's manager, with its output in ~/UNIT.log; returns the unit."""
        self._units += 1
        unit = f"try-{self._units}"
        variables = " ".join(shlex.quote(f"--setenv={name}={value}") for name, value in self.environment.items())
        self.output(f"systemd-run --quiet --user --collect --unit={unit} {variables} "
                    f"bash -c {shlex.quote(f'cd; exec >~/{unit}.log 2>&1; {command}')}")
        return unit

    def _first_process(self):
        try:
            children = Path(f"/proc/{self._outer.pid}/task/{self._outer.pid}/children").read_text("ascii").split()
            is_up = children and Path(f"/proc/{children[0]}/comm").read_text("ascii").strip() == "systemd"
        except OSError:
            return None
        return int(children[0]) if is_up else None

    def _remove_groups(self):
        try:
            for folder, _, _ in os.walk(self._group, topdown=False):
                os.rmdir(folder)
        except OSError:
            return False
        return True
