"""The shipped program end to end: harbrix without a display on a bus of its own, harbrixctl, the installed
mount tools, a real smbd on loopback. HARBRIX_BUILD names the folder with the programs."""

import json
import os
import pty
import re
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "support"))
from harbrix_program import Harbrix, kill_mount_tool, mounts_below, processes_naming  # noqa: E402
from machine import why_missing, why_no_fuse, why_no_program  # noqa: E402
from smb_server import SmbServer  # noqa: E402

BUILD = os.environ.get("HARBRIX_BUILD", "")
USER, PASSWORD = "ann", 'pa"ss\\wörd-7f3a91'
ODD_SHARE = "50% off & ü"
QUIT_SECONDS, SLACK = 5.0, 2.0


def why_skipped():
    return why_no_program(BUILD) or why_no_fuse() or why_missing(
        "/usr/sbin/mount_smbfs", "/usr/sbin/diskutil", "/usr/bin/expect",
        "smbd", "smbpasswd", "fusermount3", "dbus-daemon")


def content(path):
    with open(path, "rb") as file:
        return file.read()


def eventually(condition, seconds, what):
    """Waits for something that happens outside of this process and tells nobody."""
    deadline = time.monotonic() + seconds
    while True:
        try:
            if condition():
                return
        except OSError:
            pass
        if time.monotonic() > deadline:
            raise AssertionError(what)
        time.sleep(0.05)


class ProgramTest(unittest.TestCase):
    def setUp(self):
        self.addCleanup(self.ends_clean)
        self.samples = tempfile.mkdtemp(prefix="harbrix-e2e-")
        self.addCleanup(shutil.rmtree, self.samples)
        self.data = os.urandom(1_500_000)
        shares = {}
        for name in ("data", ODD_SHARE):
            shares[name] = os.path.join(self.samples, name)
            os.mkdir(shares[name])
            with open(os.path.join(shares[name], "Übung 1.bin"), "wb") as file:
                file.write(self.data)
        self.server = SmbServer(shares, {USER: PASSWORD})
        self.addCleanup(self.server.close)
        self.harbrix = Harbrix(BUILD)
        self.addCleanup(self.harbrix.close)

    def ends_clean(self):
        self.assertEqual(processes_naming(self.harbrix.folder), [], "a process was left behind")

    def start(self):
        self.server.start()
        self.harbrix.start()

    def add(self, name, *arguments, password=PASSWORD, share="data"):
        added = self.harbrix.ctl("add", "--name", name, "--address", self.server.address,
                                 "--share", share, "--user", USER, "--password-stdin", *arguments,
                                 password=password)
        self.assertEqual(added.returncode, 0, added.stderr)

    def add_guest(self, name, *arguments, address=None, share="data"):
        added = self.harbrix.ctl("add", "--name", name, "--address", address or self.server.address,
                                 "--share", share, "--auth", "guest", *arguments)
        self.assertEqual(added.returncode, 0, added.stderr)

    def mount(self, name):
        mounted = self.harbrix.ctl("mount", name)
        self.assertEqual(mounted.returncode, 0, mounted.stderr + self.harbrix.log())

    def read(self, name):
        return content(os.path.join(self.harbrix.volume(name), "Übung 1.bin"))

    def write_configs(self, text):
        self.harbrix.write_defaults(json.dumps(
            {"version": 1, "values": {"com.harbrix.configs": {"dataAsText": text}}}))


class Shares(ProgramTest):
    def test_mounts_reads_writes_and_unmounts(self):
        self.start()
        self.add("Films")
        self.mount("Films")
        self.assertEqual(self.read("Films"), self.data)
        with open(os.path.join(self.harbrix.volume("Films"), "new.txt"), "w") as file:
            file.write("hello")
        self.assertEqual(content(os.path.join(self.samples, "data", "new.txt")), b"hello")
        share = self.harbrix.status("Films")
        self.assertEqual((share["state"], share["volume"]), ("mounted", "present"))

        unmounted = self.harbrix.ctl("unmount", "Films")
        self.assertEqual(unmounted.returncode, 0, unmounted.stderr)
        share = self.harbrix.status("Films")
        self.assertEqual((share["state"], share["volume"]), ("idle", "missing"))
        self.assertFalse(os.path.exists(self.harbrix.volume("Films")), "the mount point stays")
        self.assertTrue(os.path.exists(os.path.join(self.samples, "data", "new.txt")))

    def test_all_at_once_and_read_only(self):
        self.start()
        self.add("A")
        self.add_guest("B", "--read-only", share=ODD_SHARE)
        self.add_guest("C", "--disabled")
        both = self.harbrix.ctl("mount-all")
        # Without a network of its own the machine has shares that belong nowhere.
        if not self.harbrix.status()["network"]["connected"]:
            self.assertIn("left alone", both.stdout)
            self.mount("A")
            self.mount("B")
        self.assertEqual(both.returncode, 0, both.stderr)
        self.assertEqual(self.read("B"), self.data)
        with self.assertRaises(OSError):
            open(os.path.join(self.harbrix.volume("B"), "new.txt"), "w")
        self.assertNotIn("C:", both.stdout)
        self.assertEqual(self.harbrix.status("C")["state"], "idle")
        gone = self.harbrix.ctl("unmount-all")
        self.assertEqual(gone.returncode, 0, gone.stderr)
        self.assertEqual(mounts_below(self.harbrix.folder), [])

    def test_names_and_paths_of_every_kind(self):
        self.start()
        for name in ("Films/2024/new", 'the "best" ones', "it's\nhere", "100% ü 映画"):
            with self.subTest(name=name):
                # Left alone by the mounts that follow a start.
                self.add(name, "--disabled", share="/" + ODD_SHARE + "/")
                self.mount(name)
                self.assertEqual(self.read(name), self.data)
                unmounted = self.harbrix.ctl("unmount", name)
                self.assertEqual(unmounted.returncode, 0, unmounted.stderr)
                self.assertEqual(mounts_below(self.harbrix.folder), [])
        listed = self.harbrix.ctl("list").stdout
        self.assertEqual(len(listed.splitlines()), 5, "a name broke its line: " + listed)

    def test_what_cannot_be_mounted_says_so(self):
        self.start()
        file = os.path.join(self.harbrix.folder, "a file")
        with open(file, "w"):
            pass
        cases = {
            "unknown host": dict(address="no-such-host.invalid"),
            "nothing listens": dict(address="127.0.0.1:9"),
            "no such share": dict(share="nothing here"),
        }
        for name, parameters in cases.items():
            with self.subTest(name):
                self.add_guest(name, **parameters)
                begun = time.monotonic()
                mounted = self.harbrix.ctl("mount", name)
                self.assertLess(time.monotonic() - begun, 32)
                self.assertEqual(mounted.returncode, 1)
                self.assertIn("mount_smbfs exited with code", mounted.stderr)
                self.assertEqual(self.harbrix.status(name)["state"], "failed")
        self.add_guest("on a file", "--mount-point", file)
        mounted = self.harbrix.ctl("mount", "on a file")
        self.assertEqual(mounted.returncode, 1)
        self.assertIn("Mount point path exists but is not a directory: " + file, mounted.stderr)
        self.assertEqual(content(file), b"")

    def test_wrong_password_is_told_and_mended(self):
        self.start()
        self.add("Films", password="not it")
        mounted = self.harbrix.ctl("mount", "Films")
        self.assertEqual(mounted.returncode, 1)
        self.assertIn("check the user name, the password", mounted.stderr)
        self.assertEqual(self.harbrix.status("Films")["volume"], "missing")
        changed = self.harbrix.ctl("edit", "Films", "--password-stdin", "--mount", password=PASSWORD)
        self.assertEqual(changed.returncode, 0, changed.stderr)
        self.assertEqual(self.read("Films"), self.data)

    def test_a_password_that_the_script_trips_over_is_not_shown(self):
        self.start()
        for password in ("-9Aq2x", "9A$q2x", "9A[q2x", "9A[q2 x]"):
            name = f"Films {len(password)}"
            self.add(name, password=password)
            mounted = self.harbrix.ctl("mount", name)
            self.assertEqual(mounted.returncode, 1, password)
            self.assertIn("exited with code 1", mounted.stderr)
            self.assertNotRegex(mounted.stderr, "9A|q2")
            self.assertEqual(self.harbrix.ctl("remove", name).returncode, 0)

    def test_edit_and_remove(self):
        self.start()
        self.add("Films")
        kept = self.harbrix.status("Films")
        self.assertEqual(self.harbrix.ctl("edit", kept["id"].lower(), "--name", "Cinema",
                                          "--ssid", "Home").returncode, 0)
        share = self.harbrix.status("Cinema")
        self.assertEqual(share["binding"]["ssids"], ["Home"])
        self.assertEqual((share["id"], share["user"]), (kept["id"], USER))
        self.mount("Cinema")
        removed = self.harbrix.ctl("remove", "Cinema")
        self.assertEqual(removed.returncode, 0)
        self.assertIn("stays mounted", removed.stderr)
        self.assertEqual(self.harbrix.ctl("mount", "Cinema").returncode, 2)
        self.assertEqual(self.read("Cinema"), self.data)

    def test_watch_tells_each_change(self):
        self.start()
        self.add_guest("Films", "--disabled")
        with subprocess.Popen([self.harbrix.control, "watch", "--json"], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, env=self.harbrix.environment, text=True) as watch:
            self.assertEqual(json.loads(watch.stdout.readline())["state"], "idle")
            self.mount("Films")
            states = [json.loads(watch.stdout.readline())["state"] for _ in range(2)]
            self.assertEqual(states, ["mounting", "mounted"])
            self.harbrix.ctl("remove", "Films")
            self.assertTrue(json.loads(watch.stdout.readline())["removed"])
            self.harbrix.kill()
            self.assertEqual(watch.wait(10), 69)


class Faults(ProgramTest):
    def test_server_killed_and_restarted_while_mounted(self):
        self.start()
        self.add("Films")
        self.mount("Films")
        self.assertEqual(self.read("Films"), self.data)
        self.server.kill()
        begun = time.monotonic()
        os.listdir(os.path.dirname(self.harbrix.volume("Films")))
        os.statvfs(self.harbrix.volume("Films"))
        self.assertEqual(self.harbrix.ctl("status").returncode, 0)
        self.assertLess(time.monotonic() - begun, 10)
        self.server.start()
        eventually(lambda: self.read("Films") == self.data, 40, "the share did not come back")

    def test_dead_mount_is_cleared_by_the_next_mount(self):
        self.start()
        self.add("Films")
        self.mount("Films")
        kill_mount_tool(self.harbrix.volume("Films"))
        eventually(lambda: not processes_naming(self.harbrix.volume("Films")), 10, "it lives")
        with self.assertRaises(OSError):
            os.stat(self.harbrix.volume("Films"))
        self.assertEqual(self.harbrix.status("Films")["volume"], "missing")
        self.mount("Films")
        self.assertEqual(self.read("Films"), self.data)
        self.assertEqual(mounts_below(self.harbrix.folder), [self.harbrix.volume("Films")])

    def test_damaged_settings_are_kept_aside(self):
        self.harbrix.write_defaults('{"values": {"com.harbrix')
        self.start()
        self.assertEqual(self.harbrix.status()["shares"], [])
        self.add_guest("New")
        folder = os.path.dirname(self.harbrix.defaults_path)
        kept = [content(os.path.join(folder, name)) for name in os.listdir(folder)
                if "damaged" in name]
        self.assertEqual(kept, [b'{"values": {"com.harbrix'])

    def test_damaged_shares_stay_until_the_next_change(self):
        damaged = '[{"name": "Old", "retryCount": '
        self.write_configs(damaged)
        self.start()
        self.assertEqual(self.harbrix.status()["shares"], [])
        self.assertIn("Failed to decode persisted configs", self.harbrix.log())
        self.assertIn("Old", content(self.harbrix.defaults_path).decode())

    def test_unreadable_secrets(self):
        self.start()
        self.add("Films")
        secrets = os.path.join(self.harbrix.environment["XDG_DATA_HOME"], "Harbrix", "secrets.json")
        self.assertEqual(stat.S_IMODE(os.stat(secrets).st_mode), 0o600)
        self.harbrix.kill()
        with open(secrets, "w") as file:
            file.write("{not json")
        self.harbrix.start()
        mounted = self.harbrix.ctl("mount", "Films")
        self.assertEqual(mounted.returncode, 1)
        self.assertIn("No password found in keychain for Films", mounted.stderr)

    def test_the_bus_goes_away(self):
        self.start()
        self.harbrix.bus.stop()
        self.assertEqual(self.harbrix.ctl("status").returncode, 69)
        self.assertIsNone(self.harbrix.process.poll())
        self.harbrix.process.send_signal(signal.SIGTERM)
        self.assertEqual(self.harbrix.process.wait(15), 0)


class Process(ProgramTest):
    def test_a_quit_takes_five_seconds_and_leaves_the_shares_mounted(self):
        self.start()
        self.add("Films")
        self.mount("Films")
        begun = time.monotonic()
        quit_ = self.harbrix.ctl("quit")
        self.assertEqual(quit_.returncode, 0, quit_.stderr)
        self.assertEqual(self.harbrix.process.wait(15), 0)
        taken = time.monotonic() - begun
        self.assertTrue(QUIT_SECONDS <= taken < QUIT_SECONDS + SLACK, taken)
        self.assertEqual(self.read("Films"), self.data)
        self.assertIn("Harbrix application terminated", self.harbrix.log())

        self.harbrix.start()
        share = self.harbrix.status("Films")
        self.assertEqual(share["volume"], "present")
        self.mount("Films")
        self.assertEqual(len(mounts_below(self.harbrix.folder)), 1)
        self.assertEqual(self.harbrix.ctl("unmount", "Films").returncode, 0)

    def test_a_quit_waits_for_no_mount(self):
        self.start()
        self.server.pause()
        self.add_guest("Films")
        mounting = subprocess.Popen([self.harbrix.control, "mount", "Films"],
                                    env=self.harbrix.environment, stderr=subprocess.DEVNULL)
        eventually(lambda: self.harbrix.status("Films")["state"] == "mounting", 5, "no attempt")
        begun = time.monotonic()
        self.harbrix.process.send_signal(signal.SIGINT)
        self.assertEqual(self.harbrix.process.wait(15), 0)
        self.assertLess(time.monotonic() - begun, QUIT_SECONDS + SLACK)
        self.assertEqual(mounting.wait(5), 69)
        for process in processes_naming(self.harbrix.folder):
            os.kill(process, signal.SIGKILL)

    def test_the_second_instance_leaves_the_first_alone(self):
        self.start()
        self.add("Films")
        self.mount("Films")
        begun = time.monotonic()
        second = self.harbrix.launch()
        self.assertEqual(second.wait(15), 0)
        self.assertGreaterEqual(time.monotonic() - begun, QUIT_SECONDS)
        self.assertIn("Another Harbrix instance is running. Activating it and exiting.",
                      self.harbrix.log())
        self.assertEqual(self.read("Films"), self.data)
        self.assertEqual(self.harbrix.status("Films")["state"], "mounted")

    def test_runs_without_a_bus_and_without_a_display(self):
        environment = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent/bus", "DISPLAY": ":9876"}
        first = self.harbrix.launch(**environment)
        eventually(lambda: "started successfully" in self.harbrix.log(), 10, "it did not start")
        self.assertIn("No session bus; remote control (harbrixctl) is off", self.harbrix.log())
        self.assertIn("The display cannot be reached", self.harbrix.log())
        self.assertNotRegex(self.harbrix.log(), "qt.qpa|xcb|could not connect")
        second = self.harbrix.launch(**environment)
        self.assertEqual(second.wait(15), 0)
        self.assertIn("Another Harbrix instance is running", self.harbrix.log())
        self.assertIsNone(first.poll())

    def test_the_password_is_seen_nowhere(self):
        self.harbrix.write_defaults('{"version": 1, "values": {"log.fileEnabled": true}}')
        self.start()
        seen = []
        done = threading.Event()

        def look():
            while not done.is_set():
                for process in filter(str.isdigit, os.listdir("/proc")):
                    for place in ("cmdline", "environ"):
                        try:
                            if PASSWORD.encode() in content(f"/proc/{process}/{place}"):
                                seen.append((process, place))
                        except OSError:
                            pass

        watcher = threading.Thread(target=look)
        watcher.start()
        try:
            self.add("Films")
            self.mount("Films")
            self.harbrix.ctl("unmount", "Films")
        finally:
            done.set()
            watcher.join()
        self.assertEqual(seen, [])
        with open(f"/proc/{self.harbrix.process.pid}/limits") as limits:
            self.assertRegex(limits.read(), r"Max core file size\s+1\s+1\s")
        info = subprocess.run([self.harbrix.program, "--debug-info"], env=self.harbrix.environment,
                              capture_output=True, text=True, timeout=30)
        self.assertEqual(info.returncode, 0, info.stderr)
        self.assertIn('"name": "Films"', info.stdout)
        told = [info.stdout, self.harbrix.log(), json.dumps(self.harbrix.status())]
        logs = os.path.join(self.harbrix.environment["XDG_DATA_HOME"], "Harbrix", "Logs")
        self.assertTrue(os.listdir(logs))
        told += [content(os.path.join(logs, name)).decode() for name in os.listdir(logs)]
        for text in told:
            self.assertNotIn("7f3a91", text)

    def test_the_terminal_shows_no_password(self):
        self.start()
        process, terminal = pty.fork()
        if process == 0:
            os.execve(self.harbrix.control,
                      ["harbrixctl", "add", "--name", "Films", "--address", self.server.address,
                       "--share", "data", "--user", USER], self.harbrix.environment)
        shown = b""
        while b"Password for Films: " not in shown:
            shown += os.read(terminal, 4096)
        os.write(terminal, PASSWORD.encode() + b"\n")
        try:
            while chunk := os.read(terminal, 4096):
                shown += chunk
        except OSError:  # the way a terminal ends
            pass
        os.close(terminal)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(process, 0)[1]), 0, shown)
        self.assertNotIn(b"7f3a91", shown)
        self.mount("Films")

    def test_wrong_usage_is_one_line(self):
        table = [
            (self.harbrix.program, ["--frobnicate"]),
            (self.harbrix.program, ["file"]),
            (self.harbrix.control, []),
            (self.harbrix.control, ["mont", "Films"]),
            (self.harbrix.control, ["mount"]),
            (self.harbrix.control, ["mount", "a\nb", "c\nd"]),
            (self.harbrix.control, ["add", "--name", "A"]),
            (self.harbrix.control, ["add", "--password", "x"]),
        ]
        for program, arguments in table:
            with self.subTest(arguments=arguments):
                run = subprocess.run([program, *arguments], capture_output=True, text=True, timeout=10,
                                     env=self.harbrix.environment)
                self.assertEqual((run.returncode, run.stdout), (64, ""))
                self.assertTrue(re.fullmatch(r"[^\n]+\n", run.stderr), run.stderr)

    def test_harbrixctl_without_the_program_or_a_terminal(self):
        self.harbrix.bus.start()
        for arguments in (["status"], ["mount", "Films"], ["quit"], ["watch"],
                          ["add", "--name", "A", "--address", "h", "--share", "s"]):
            run = self.harbrix.ctl(*arguments)
            self.assertEqual((run.returncode, run.stderr),
                             (69, "harbrixctl: Harbrix is not running; start it with `harbrix`\n"))
        self.harbrix.start()
        asked = self.harbrix.ctl("add", "--name", "A", "--address", "h", "--share", "s")
        self.assertEqual(asked.returncode, 64)
        self.assertIn("--password-stdin", asked.stderr)


if __name__ == "__main__":
    reason = why_skipped()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
