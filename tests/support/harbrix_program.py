"""The running Harbrix, for tests and for trying things out: the real program with a message bus and folders
of its own, so that it neither sees nor disturbs what the user has."""

import json
import os
import re
import shutil
import signal
import subprocess
import tempfile
import time

# No service folders: nothing is started on demand, whatever the machine has installed.
BUS_CONFIG = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:path={socket}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>
"""


class PrivateBus:
    def __init__(self, folder, user=None):
        self.user = user
        self.socket = os.path.join(folder, "bus")
        self.address = "unix:path=" + self.socket
        self.config = os.path.join(folder, "bus.conf")
        self.process = None

    def start(self):
        with open(self.config, "w") as file:
            file.write(BUS_CONFIG.format(socket=self.socket))
        self.process = subprocess.Popen(
            ["dbus-daemon", "--config-file", self.config, "--nofork", "--print-address"],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
            start_new_session=True, **as_user(self.user))
        # The address is printed once the socket takes connections.
        if not self.process.stdout.readline():
            raise RuntimeError("dbus-daemon did not start")

    def stop(self):
        if self.process:
            self.process.terminate()
            self.process.wait()
            self.process.stdout.close()
            self.process = None


class Harbrix:
    """The program with a home, settings and a bus of its own in a temporary folder. `build`: the build folder,
    None for the installed program. `user`: the number of the ordinary user that root runs it as."""

    def __init__(self, build, user=None):
        programs = os.path.join(os.path.abspath(build), "src", "app") if build else "/usr/bin"
        self.program = os.path.join(programs, "harbrix")
        self.control = os.path.join(programs, "harbrixctl")
        self.folder = tempfile.mkdtemp(prefix="harbrix-run-")
        self.user = user
        self.bus = PrivateBus(self.folder, user)
        self.environment = self._environment()
        if user is not None:
            self._hand_over()
        self.processes = []
        self.log_path = os.path.join(self.folder, "harbrix.log")

    def _environment(self):
        places = {"HOME": "home", "XDG_CONFIG_HOME": "config", "XDG_DATA_HOME": "data",
                  "XDG_CACHE_HOME": "cache", "XDG_RUNTIME_DIR": "run", "TMPDIR": "tmp"}
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
        for name, place in places.items():
            environment[name] = os.path.join(self.folder, place)
            os.makedirs(environment[name], mode=0o700, exist_ok=True)
        # The trials read the texts of the base language.
        environment.update(LC_ALL="C.UTF-8", LANGUAGE="zh_CN")
        # The machine's own sleep and Wi-Fi are no business of a trial.
        for bus in ("SESSION", "SYSTEM"):
            environment[f"DBUS_{bus}_BUS_ADDRESS"] = self.bus.address
        return environment

    def _hand_over(self):
        """The folder becomes the user's, with copies of the programs: the build folder may be out of reach."""
        for name in ("program", "control"):
            setattr(self, name, shutil.copy(getattr(self, name), self.folder))
        for path in [self.folder] + [os.path.join(self.folder, entry) for entry in os.listdir(self.folder)]:
            os.chown(path, self.user, self.user)

    # The program

    @property
    def process(self):
        return self.processes[-1]

    def start(self, **environment):
        """Returns once the remote control answers."""
        if not self.bus.process:
            self.bus.start()
        self.launch(**environment)
        deadline = time.monotonic() + 15
        while self.ctl("list").returncode != 0:
            if self.process.poll() is not None or time.monotonic() > deadline:
                raise RuntimeError("Harbrix did not come up:\n" + self.log())
            time.sleep(0.02)

    def launch(self, **environment):
        """Starts a process of the program and waits for nothing."""
        with open(self.log_path, "ab") as log:
            self.processes.append(subprocess.Popen(
                [self.program], env={**self.environment, **environment}, stdin=subprocess.DEVNULL,
                stdout=log, stderr=log, cwd=self.folder, start_new_session=True, **as_user(self.user)))
        return self.process

    def kill(self):
        """Ends every process at once; mounts stay."""
        for process in self.processes:
            if process.poll() is None:
                process.kill()
            process.wait()
        self.processes.clear()

    def log(self):
        with open(self.log_path, errors="replace") as log:
            return log.read()

    def close(self):
        """Ends everything and removes the folder, unless something is still mounted below it."""
        self.kill()
        self.bus.stop()
        unmount_below(self.folder)
        if mounts_below(self.folder):
            raise RuntimeError("still mounted: " + ", ".join(mounts_below(self.folder)))
        shutil.rmtree(self.folder)

    # harbrixctl

    def ctl(self, *arguments, password=None, timeout=60):
        return subprocess.run([self.control, *arguments], env=self.environment, timeout=timeout,
                              input=None if password is None else password + "\n",
                              stdin=subprocess.DEVNULL if password is None else None,
                              capture_output=True, text=True, start_new_session=True, **as_user(self.user))

    def status(self, share=None):
        answer = self.ctl("status", *([share] if share else []), "--json")
        if answer.returncode != 0:
            raise RuntimeError(answer.stderr)
        return json.loads(answer.stdout)

    # Files

    def volume(self, name):
        return os.path.join(self.environment["HOME"], "HarbrixVolumes", name)

    @property
    def defaults_path(self):
        return os.path.join(self.environment["XDG_CONFIG_HOME"], "Harbrix", "defaults.json")

    def write_defaults(self, text):
        os.makedirs(os.path.dirname(self.defaults_path), exist_ok=True)
        with open(self.defaults_path, "w") as file:
            file.write(text)


def as_user(number):
    """What makes subprocess run a program as that user, in a group of the same number and no other."""
    return {} if number is None else {"user": number, "group": number, "extra_groups": []}


def mounts_below(folder):
    """The mount points in the folder, innermost first, read without asking any server."""
    found = []
    with open("/proc/self/mountinfo", "rb") as table:
        for line in table:
            # White space and backslashes stand in octal: "\\040".
            path = re.sub(rb"\\([0-7]{3})", lambda code: bytes([int(code[1], 8)]), line.split(b" ")[4])
            if path.startswith(os.fsencode(os.path.realpath(folder)) + b"/"):
                found.append(os.fsdecode(path))
    return sorted(found, key=len, reverse=True)


def unmount_below(folder):
    for path in mounts_below(folder):
        subprocess.run(["/usr/sbin/diskutil", "unmount", "force", path],
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False)
        if path in mounts_below(folder):
            subprocess.run(["fusermount3", "-uz", path], stderr=subprocess.DEVNULL, check=False)


def processes_naming(text):
    """The ids of the processes that have the text in their arguments."""
    found = []
    for name in os.listdir("/proc"):
        try:
            with open(f"/proc/{name}/cmdline", "rb") as arguments:
                if name.isdigit() and text.encode() in arguments.read():
                    found.append(int(name))
        except OSError:
            pass
    return found


def kill_mount_tool(mount_point):
    """Ends the daemon behind a mount as if it had crashed."""
    for process in processes_naming(mount_point):
        os.kill(process, signal.SIGKILL)
