"""The shipped program follows its network: Harbrix on one host, smbd on another, a cable between them that the
test pulls, moves and clogs; sleep and wake from a mocked logind, notifications to a mocked daemon.
HARBRIX_BUILD names the folder with the programs."""

import json
import os
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "support"))
from harbrix_program import Harbrix, kill_mount_tool, mounts_below, processes_naming  # noqa: E402
from machine import why_missing, why_no_fuse, why_no_network_namespaces, why_no_program  # noqa: E402
from network_lab import AWAY, HOME, SERVER, NetworkLab, inside  # noqa: E402
from smb_server import SmbServer  # noqa: E402

BUILD = os.environ.get("HARBRIX_BUILD", "")
PORT = 4455
# The delays of the program, and what a told state may come later than they say.
DEBOUNCE, SETTLE, LAUNCH, WAKE, SLACK = 2.0, 5.0, 2.0, 2.0, 1.5
KEEP_ALIVE = 3.0


def why_skipped():
    try:
        import dbus  # noqa: F401
        import dbusmock  # noqa: F401
    except ImportError as missing:
        return str(missing)
    return (why_no_program(BUILD) or why_no_fuse() or
            why_missing("/usr/sbin/mount_smbfs", "smbd", "fusermount3", "dbus-daemon", "ip") or
            why_no_network_namespaces())


class Mocks:
    """A logind and a notification daemon on the program's own bus."""

    def __init__(self, bus):
        self.bus = bus
        self.processes = []

    def start(self):
        import dbus
        environment = {**os.environ, "DBUS_SYSTEM_BUS_ADDRESS": self.bus.address,
                       "DBUS_SESSION_BUS_ADDRESS": self.bus.address}
        self.notes = tempfile.TemporaryFile("w+")
        for template, output in (("logind", subprocess.DEVNULL), ("notification_daemon", self.notes)):
            self.processes.append(subprocess.Popen(
                ["/usr/bin/python3", "-m", "dbusmock", "--template", template], env=environment,
                stdin=subprocess.DEVNULL, stdout=output, stderr=output))
        self.connection = dbus.bus.BusConnection(self.bus.address)
        deadline = time.monotonic() + 10
        for name in ("org.freedesktop.login1", "org.freedesktop.Notifications"):
            while not self.connection.name_has_owner(name):
                if time.monotonic() > deadline:
                    raise RuntimeError(name + " did not come up")
                time.sleep(0.02)

    def prepare_for_sleep(self, begins):
        manager = self.connection.get_object("org.freedesktop.login1", "/org/freedesktop/login1")
        manager.EmitSignal("org.freedesktop.login1.Manager", "PrepareForSleep", "b", [begins],
                           dbus_interface="org.freedesktop.DBus.Mock")

    def notifications(self):
        self.notes.seek(0)
        return [line for line in self.notes if "Notify" in line]

    def stop(self):
        for process in self.processes:
            process.terminate()
            process.wait()
        self.notes.close()
        self.connection.close()


class StallMeter(threading.Thread):
    """Asks the program's main thread for an answer over and over; the longest wait is its longest stall."""

    def __init__(self, address):
        super().__init__()
        self.address, self.longest, self.asked = address, 0.0, 0
        self.ended = threading.Event()

    def run(self):
        import dbus
        connection = dbus.bus.BusConnection(self.address)
        program = connection.get_object("com.harbrix.app", "/com/harbrix/RemoteControl")
        while not self.ended.wait(0.02):
            begun = time.monotonic()
            program.Get("com.harbrix.RemoteControl1", "Version",
                        dbus_interface="org.freedesktop.DBus.Properties")
            self.longest = max(self.longest, time.monotonic() - begun)
            self.asked += 1
        connection.close()

    def __exit__(self, *_):
        self.ended.set()
        self.join()

    def __enter__(self):
        self.start()
        return self


class FollowsTheNetwork(unittest.TestCase):
    def setUp(self):
        self.lab = NetworkLab()
        self.addCleanup(self.lab.remove)
        self.lab.build()
        self.folder = tempfile.mkdtemp(prefix="harbrix-e2e-")
        self.addCleanup(shutil.rmtree, self.folder)
        with open(os.path.join(self.folder, "note.txt"), "w") as file:
            file.write("here")
        self.server = SmbServer({"data": self.folder, "more": self.folder}, port=PORT,
                                options={"bind interfaces only": "no"})
        self.addCleanup(self.server.close)
        with inside(self.lab.server):
            self.server.start()
        self.harbrix = Harbrix(BUILD)
        self.addCleanup(self.harbrix.close)
        self.harbrix.bus.start()
        self.mocks = Mocks(self.harbrix.bus)
        self.addCleanup(self.mocks.stop)
        self.mocks.start()
        self.harbrix.write_defaults(json.dumps({"version": 1, "values": {
            "keepAliveInterval": {"double": KEEP_ALIVE}}}))
        self.start_program()
        self.add("bound", "data", "--ip-range", HOME.rsplit(".", 1)[0] + ".0/24")
        self.add("roaming", "more")
        answer = self.harbrix.ctl("mount-all")
        self.assertEqual(answer.returncode, 0, answer.stderr + self.harbrix.log())

    def start_program(self):
        self.started = time.monotonic()
        with inside(self.lab.client):
            self.harbrix.start()

    def add(self, name, share, *arguments):
        added = self.harbrix.ctl("add", "--name", name, "--address", f"{SERVER}:{PORT}", "--share", share,
                                 "--auth", "guest", *arguments)
        self.assertEqual(added.returncode, 0, added.stderr)

    def states(self):
        return {share["name"]: share["state"] for share in self.harbrix.status()["shares"]}

    def expect(self, within, since, **states):
        """The states come within that many seconds of `since`, and the slack."""
        while self.states() != states:
            if time.monotonic() - since > within + SLACK:
                self.fail(f"{self.states()} instead of {states} after {within + SLACK} s\n{self.harbrix.log()}")
            time.sleep(0.02)

    def unmount_all(self):
        """A volume can be busy for a moment on a loaded machine; its unmount is refused then, and asked for again."""
        deadline = time.monotonic() + 20
        while True:
            answer = self.harbrix.ctl("unmount-all")
            if not mounts_below(self.harbrix.folder):
                return
            self.assertLess(time.monotonic(), deadline, f"still mounted: {answer.stderr}{self.harbrix.log()}")
            time.sleep(0.2)

    def expect_notification(self, text, seen):
        """One with that text beyond the first `seen` of all; they come a second after what they are about."""
        deadline = time.monotonic() + 1 + SLACK
        while not any(text in line for line in self.mocks.notifications()[seen:]):
            self.assertLess(time.monotonic(), deadline, f"no notification {text}")
            time.sleep(0.05)

    def settle(self):
        """Waits for what the start itself sets off: the network counts as changed then."""
        time.sleep(max(0, self.started + DEBOUNCE + SETTLE + 1 - time.monotonic()))

    def assert_readable(self, name, within=0):
        """A connection that the network cut comes back by itself."""
        deadline = time.monotonic() + within
        while True:
            try:
                with open(os.path.join(self.harbrix.volume(name), "note.txt")) as file:
                    return self.assertEqual(file.read(), "here")
            except OSError as fault:
                self.assertLess(time.monotonic(), deadline, f"{name}: {fault}")
                time.sleep(0.2)

    def descriptors(self):
        return len(os.listdir(f"/proc/{self.harbrix.process.pid}/fd"))

    def tearDown(self):
        children = subprocess.run(["ps", "-o", "stat=", "--ppid", str(self.harbrix.process.pid)],
                                  capture_output=True, text=True, check=False).stdout.split()
        self.assertFalse([state for state in children if state.startswith("Z")], "a zombie was left")

    def test_cable_pulled_and_plugged_in(self):
        before = self.descriptors()
        pulled = time.monotonic()
        self.lab.unplug()
        self.expect(DEBOUNCE, pulled, bound="offline", roaming="offline")
        self.assertEqual(len(mounts_below(self.harbrix.folder)), 2, "a lost network unmounts nothing")
        plugged = time.monotonic()
        self.lab.plug_in()
        self.expect(DEBOUNCE + SETTLE, plugged, bound="mounted", roaming="mounted")
        self.assert_readable("bound")
        self.assertLessEqual(self.descriptors(), before + 2)

    def test_a_share_stays_behind_in_its_subnet(self):
        moved = time.monotonic()
        self.lab.move_to(AWAY)
        self.expect(DEBOUNCE + 1, moved, bound="idle", roaming="mounted")
        self.assertFalse(os.path.exists(self.harbrix.volume("bound")), "a stale mount point was left")
        self.assert_readable("roaming", within=20)
        returned = time.monotonic()
        self.lab.move_to(HOME)
        self.expect(DEBOUNCE + SETTLE + 1, returned, bound="mounted", roaming="mounted")
        self.assert_readable("bound")

    def test_a_vanished_volume_is_mounted_again(self):
        self.settle()
        killed = time.monotonic()
        kill_mount_tool(self.harbrix.volume("roaming"))
        self.expect(KEEP_ALIVE, killed, bound="mounted", roaming="offline")
        self.expect(KEEP_ALIVE + SETTLE + 1, killed, bound="mounted", roaming="mounted")
        self.assert_readable("roaming")

    def test_server_killed_and_back(self):
        self.settle()
        self.server.kill()
        self.unmount_all()
        seen = len(self.mocks.notifications())
        self.assertEqual(self.harbrix.ctl("mount", "bound").returncode, 1)
        self.assertEqual(self.states()["bound"], "failed")
        retry = self.harbrix.status("bound")["retry"]
        self.assertEqual(retry["failures"], 1)
        failed = time.monotonic() - (10 - retry["seconds"])
        self.expect_notification("NAS 连接失败", seen)
        seen = len(self.mocks.notifications())
        with inside(self.lab.server):
            self.server.start()
        self.expect(10 + 1, failed, bound="mounted", roaming="idle")
        self.assert_readable("bound")
        self.expect_notification("NAS 已连接", seen)

    def test_server_that_swallows_everything(self):
        with StallMeter(self.harbrix.bus.address) as meter:
            self.lab.swallow()
            begun = time.monotonic()
            while time.monotonic() - begun < 60:
                asked = time.monotonic()
                for name in ("bound", "roaming"):
                    os.stat(self.harbrix.volume(name))
                    # Whether it fails or is answered from memory, it comes back.
                    subprocess.run(["ls", self.harbrix.volume(name)], capture_output=True, check=False)
                self.assertLess(time.monotonic() - asked, 10)
                self.assertEqual(self.states(), {"bound": "mounted", "roaming": "mounted"})
                time.sleep(2)
            self.lab.deliver()
        print(f"\nlongest stall of the event loop: {meter.longest * 1000:.1f} ms in {meter.asked} looks",
              file=sys.stderr)
        self.assert_readable("bound", within=15)

    def test_sleep_and_wake(self):
        self.settle()
        self.mocks.prepare_for_sleep(True)
        kill_mount_tool(self.harbrix.volume("roaming"))
        time.sleep(KEEP_ALIVE + 1)
        self.assertEqual(self.states()["roaming"], "mounted", "asleep, nothing is checked")
        woken = time.monotonic()
        self.mocks.prepare_for_sleep(False)
        self.expect(1, woken, bound="mounted", roaming="offline")
        self.expect(WAKE + DEBOUNCE + SETTLE, woken, bound="mounted", roaming="mounted")
        self.assert_readable("roaming")

    def test_mounts_at_launch_and_ends_clean(self):
        self.unmount_all()
        self.harbrix.kill()
        started = time.monotonic()
        self.start_program()
        self.expect(LAUNCH + 1, started, bound="mounted", roaming="mounted")
        self.unmount_all()
        self.assertEqual(processes_naming(self.harbrix.volume("")), [])


if __name__ == "__main__":
    reason = why_skipped()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
