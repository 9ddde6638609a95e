"""The shipped program with NFS shares, end to end: harbrix and harbrixctl on one host, nfs-ganesha on another, and
the way over sudo with a rule and without. HARBRIX_BUILD names the folder with the programs.

It runs in a mount namespace of its own, so that neither its mounts nor its users and sudoers rules are the
machine's.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "support"))
from harbrix_program import Harbrix, kill_mount_tool, mounts_below, processes_naming  # noqa: E402
from machine import (why_missing, why_no_fuse, why_no_mount_namespaces, why_no_network_namespaces,  # noqa: E402
                     why_no_program)
from network_lab import SERVER, NetworkLab, inside  # noqa: E402
from nfs_server import NfsServer, why_unavailable  # noqa: E402

BUILD = os.environ.get("HARBRIX_BUILD", "")
INSIDE = "HARBRIX_TEST_NAMESPACE"
KERNEL_TOOL = "/sbin/mount.nfs4"
FIRST_RETRY = 10.0
# The start counts as a change of the network, upon which everything is mounted once more.
SETTLED = 8.0
USER, USER_ID = "harbrix-tester", 61234
RULE = USER + " ALL=(root) NOPASSWD: /sbin/mount_nfs\n"
SUDO_REQUIRED = "NFS 挂载需要 root 权限"
INVALID_ARGUMENT = "mount_nfs 参数错误"


def why_skipped():
    return (why_unavailable() or why_no_program(BUILD) or why_no_fuse() or
            why_missing("/usr/sbin/mount_nfs", "/usr/sbin/diskutil", "fusermount3", "dbus-daemon", "ip", "unshare") or
            why_no_mount_namespaces() or why_no_network_namespaces())


def content(path):
    with open(path, "rb") as file:
        return file.read()


def mount_line(path):
    with open("/proc/self/mountinfo") as table:
        return next((line for line in table if line.split(" ")[4] == path), None)


class NfsTest(unittest.TestCase):
    SERVER_SETTINGS = {}
    RUNS_AS = None

    def setUp(self):
        self.addCleanup(self.ends_clean)
        self.lab = NetworkLab()
        self.addCleanup(self.lab.remove)
        self.lab.build()
        self.server = NfsServer(address=SERVER, port=2049, **self.SERVER_SETTINGS)
        self.addCleanup(self.server.__exit__)
        self.data = os.urandom(3_000_000)
        with open(os.path.join(self.server.data, "Übung 1.bin"), "wb") as file:
            file.write(self.data)
        self.start_server()
        self.harbrix = Harbrix(BUILD, user=self.RUNS_AS)
        self.addCleanup(self.harbrix.close)
        self.started = time.monotonic()
        with inside(self.lab.client):
            self.harbrix.start()

    def start_server(self):
        with inside(self.lab.server):
            self.server.start()

    def ends_clean(self):
        self.assertEqual(processes_naming(self.harbrix.folder), [], "a process was left behind")

    def add(self, name, *arguments, share=None):
        added = self.harbrix.ctl("add", "--name", name, "--protocol", "nfs", "--address", SERVER,
                                 "--share", share or self.server.pseudo, *arguments)
        self.assertEqual(added.returncode, 0, added.stderr)

    def mount(self, name):
        mounted = self.harbrix.ctl("mount", name)
        self.assertEqual(mounted.returncode, 0, mounted.stderr + self.harbrix.log())

    def path(self, name, *below):
        return os.path.join(self.harbrix.volume(name), *below)

    def eventually(self, condition, seconds, what):
        deadline = time.monotonic() + seconds
        while not condition():
            self.assertLess(time.monotonic(), deadline, what)
            time.sleep(0.05)


class Shares(NfsTest):
    def test_mounts_reads_writes_and_unmounts(self):
        self.add("Films")
        self.mount("Films")
        self.assertIn(f" - fuse.nfs {SERVER}:/export/data ", mount_line(self.path("Films")))
        self.assertEqual(content(self.path("Films", "Übung 1.bin")), self.data)
        with open(self.path("Films", "new.bin"), "wb") as file:
            file.write(self.data[::-1])
        self.assertEqual(content(os.path.join(self.server.data, "new.bin")), self.data[::-1])
        share = self.harbrix.status("Films")
        self.assertEqual((share["state"], share["volume"]), ("mounted", "present"))
        self.mount("Films")
        self.assertEqual(len(mounts_below(self.harbrix.folder)), 1, "mounted twice")

        unmounted = self.harbrix.ctl("unmount", "Films")
        self.assertEqual(unmounted.returncode, 0, unmounted.stderr)
        share = self.harbrix.status("Films")
        self.assertEqual((share["state"], share["volume"]), ("idle", "missing"))
        self.assertFalse(os.path.exists(self.path("Films")), "the mount point stays")
        self.assertEqual(sorted(os.listdir(self.server.data)), ["new.bin", "Übung 1.bin"])

    def test_read_only(self):
        self.add("Films", "--read-only")
        self.mount("Films")
        self.assertRegex(mount_line(self.path("Films")).split(" ")[5], r"^ro\b")
        self.assertEqual(content(self.path("Films", "Übung 1.bin")), self.data)
        with self.assertRaises(OSError):
            open(self.path("Films", "new"), "w")

    def test_what_cannot_be_mounted_says_so(self):
        for name, share, text in (
                ("missing", "/export/nothing", r"mount_nfs exited with code 1: mount_nfs: .*no such export"),
                ("a file", "/export/data/Übung 1.bin", r"mount_nfs exited with code 1: mount_nfs: .*not a folder"),
                ("upwards", "/export/../data", INVALID_ARGUMENT)):
            with self.subTest(name):
                self.add(name, share=share)
                mounted = self.harbrix.ctl("mount", name)
                self.assertEqual(mounted.returncode, 1)
                self.assertRegex(mounted.stderr, text)
                self.assertEqual(self.harbrix.status(name)["state"], "failed")
        self.assertEqual(mounts_below(self.harbrix.folder), [])

    def test_backs_off_while_the_server_is_away(self):
        time.sleep(max(0, self.started + SETTLED - time.monotonic()))
        self.server.kill()
        self.add("Films")
        mounted = self.harbrix.ctl("mount", "Films")
        failed = time.monotonic()
        self.assertEqual(mounted.returncode, 1)
        self.assertIn("Connection refused", mounted.stderr)
        share = self.harbrix.status("Films")
        self.assertEqual((share["state"], share["retry"]["failures"]), ("failed", 1))
        self.assertLessEqual(share["retry"]["seconds"], FIRST_RETRY)
        self.start_server()
        self.eventually(lambda: self.harbrix.status("Films")["state"] == "mounted", FIRST_RETRY + 2,
                        "the retry did not mount it")
        self.assertGreater(time.monotonic() - failed, FIRST_RETRY - 1)
        self.assertEqual(content(self.path("Films", "Übung 1.bin")), self.data)

    def test_dead_mount_is_cleared_by_the_next_mount(self):
        self.add("Films")
        self.mount("Films")
        kill_mount_tool(self.path("Films"))
        self.eventually(lambda: not processes_naming(self.path("Films")), 10, "it lives")
        with self.assertRaises(OSError):
            os.stat(self.path("Films"))
        self.assertEqual(self.harbrix.status("Films")["volume"], "missing")
        self.mount("Films")
        self.assertEqual(content(self.path("Films", "Übung 1.bin")), self.data)
        self.assertEqual(mounts_below(self.harbrix.folder), [self.path("Films")])

    def test_silent_server_delays_neither_the_program_nor_the_unmount(self):
        self.add("Films")
        self.mount("Films")
        self.server.freeze()
        self.addCleanup(self.server.kill)
        begun = time.monotonic()
        os.stat(self.path("Films"))
        os.statvfs(self.path("Films"))
        self.assertEqual(self.harbrix.status("Films")["state"], "mounted")
        self.assertLess(time.monotonic() - begun, 2)
        begun = time.monotonic()
        unmounted = self.harbrix.ctl("unmount", "Films")
        self.assertEqual(unmounted.returncode, 0, unmounted.stderr)
        self.assertLess(time.monotonic() - begun, 6)
        self.assertEqual(mounts_below(self.harbrix.folder), [])


@unittest.skipUnless(os.path.exists("/usr/bin/sudo"), "sudo is not installed")
class Sudo(NfsTest):
    """An ordinary user at a server that serves ports below 1024 only. The rules of this namespace alone are
    changed."""

    SERVER_SETTINGS = {"pseudo": "/", "privileged": True}
    RUNS_AS = USER_ID

    def setUp(self):
        self.cover_accounts()
        super().setUp()
        os.chown(self.server.data, USER_ID, USER_ID)

    def cover_accounts(self):
        folder = tempfile.mkdtemp(prefix="harbrix-accounts-")
        self.addCleanup(shutil.rmtree, folder)
        lines = {"passwd": f"{USER}:x:{USER_ID}:{USER_ID}::/nonexistent:/bin/sh\n",
                 "group": f"{USER}:x:{USER_ID}:\n", "shadow": f"{USER}:*:19000:0:99999:7:::\n"}
        for name, line in lines.items():
            copy = shutil.copy2(os.path.join("/etc", name), folder)
            with open(copy, "a") as file:
                file.write(line)
            self.cover(copy, os.path.join("/etc", name), "--bind")
        self.cover("tmpfs", "/etc/sudoers.d", "-t", "tmpfs", "-o", "mode=755")

    def cover(self, source, target, *options):
        subprocess.run(["mount", *options, source, target], check=True)
        self.addCleanup(subprocess.run, ["umount", target], check=True)

    def add_rule(self):
        path = "/etc/sudoers.d/harbrix-test"
        with open(path, "w") as file:
            file.write(RULE)
        os.chmod(path, 0o440)

    def test_with_a_rule(self):
        self.add_rule()
        self.add("Films")
        self.mount("Films")
        program = "import os,sys; os.chdir(sys.argv[1]); open('mine','w').write('x'); print(os.stat('mine').st_uid)"
        worked = subprocess.run([sys.executable, "-c", program, self.path("Films")], user=USER_ID, group=USER_ID,
                                extra_groups=[], capture_output=True, text=True, check=False)
        self.assertEqual(worked.stdout, f"{USER_ID}\n", worked.stderr)
        self.assertEqual(self.harbrix.status("Films")["volume"], "present")
        # What sudo has mounted for the user is the user's to end.
        unmounted = self.harbrix.ctl("unmount", "Films")
        self.assertEqual(unmounted.returncode, 0, unmounted.stderr)
        self.assertEqual(mounts_below(self.harbrix.folder), [])

    def test_without_a_rule(self):
        self.add("Films")
        begun = time.monotonic()
        mounted = self.harbrix.ctl("mount", "Films")
        self.assertLess(time.monotonic() - begun, 10, "sudo has waited for a password")
        self.assertEqual(mounted.returncode, 1)
        self.assertIn(SUDO_REQUIRED, mounted.stderr)
        self.assertEqual(mounts_below(self.harbrix.folder), [])

    def test_no_sudo_where_rights_are_not_the_cause(self):
        self.add_rule()
        self.server.kill()
        self.add("Films")
        mounted = self.harbrix.ctl("mount", "Films")
        self.assertEqual(mounted.returncode, 1)
        self.assertTrue(re.search("mount_nfs exited with code 1: .*Connection refused", mounted.stderr),
                        mounted.stderr)


if __name__ == "__main__":
    reason = why_skipped()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    if INSIDE not in os.environ:
        os.execvpe("unshare", ["unshare", "--mount", "--propagation", "private", sys.executable, *sys.argv],
                   {**os.environ, INSIDE: "1"})
    if os.path.exists(KERNEL_TOOL):  # root's mounts are to take the client that is tested here
        subprocess.run(["mount", "--bind", "/dev/null", KERNEL_TOOL], check=True)
    unittest.main(verbosity=2)
