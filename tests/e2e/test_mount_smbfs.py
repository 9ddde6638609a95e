#!/usr/bin/python3
"""mount_smbfs and diskutil against a real smbd on loopback.

Run as root it does everything as an ordinary user. HARBRIX_TOOLS names the folder of the built tools.
Exits with 77 where a FUSE mount is impossible.
"""

import contextlib
import errno
import mmap
import os
import random
import re
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "support"))
from smb_server import SmbServer, free_port  # noqa: E402

SKIP = 77
ORDINARY_USER = 65534
PASSWORD = 'se"c\\ret 1'
ODD_SHARE = "Film Käse"


def tool(name):
    folder = os.environ.get("HARBRIX_TOOLS", "/usr/sbin")
    for path in (os.path.join(folder, name, name), os.path.join(folder, name)):
        if os.path.isfile(path):
            return path
    raise FileNotFoundError(f"{name} below {folder}")


@contextlib.contextmanager
def within(test, seconds):
    begin = time.monotonic()
    yield
    test.assertLess(time.monotonic() - begin, seconds)


def outcome(function, *arguments):
    """What a call returns, or the name of its error."""
    try:
        return function(*arguments)
    except OSError as error:
        return errno.errorcode[error.errno]


def eventually(function, seconds):
    """The first true value of the function; it is asked again and again until then."""
    deadline = time.monotonic() + seconds
    while True:
        value = outcome(function)
        if value and not isinstance(value, str):
            return value
        if time.monotonic() > deadline:
            raise AssertionError(f"still {value!r} after {seconds} s")
        time.sleep(0.05)


def write(path, data, flags=os.O_WRONLY | os.O_CREAT | os.O_TRUNC):
    handle = os.open(path, flags, 0o666)
    try:
        while data:
            data = data[os.write(handle, data):]
    finally:
        os.close(handle)


def read(path):
    with open(path, "rb") as file:
        return file.read()


def daemon_of(mount_point):
    """The process id of the daemon that serves a mount point."""
    for name in os.listdir("/proc"):
        if name.isdigit():
            try:
                with open(f"/proc/{name}/cmdline", "rb") as file:
                    arguments = file.read().split(b"\0")
            except OSError:
                continue
            if mount_point.encode() in arguments and b"mount_smbfs" in arguments[0]:
                return int(name)
    return None


def has_ended(process):
    """Whether a process is gone, be it that init has not collected it yet."""
    try:
        with open(f"/proc/{process}/stat") as file:
            return file.read().rsplit(")", 1)[1].split()[0] == "Z"
    except FileNotFoundError:
        return True


def is_mounted(path):
    with open("/proc/self/mountinfo") as table:
        return any(line.split()[4] == path for line in table)


class MountTest(unittest.TestCase):
    """One server for all tests of a class; each begins with an empty share and no mount."""

    @classmethod
    def setUpClass(cls):
        cls.base = tempfile.mkdtemp(prefix="harbrix-e2e-")
        cls.addClassCleanup(shutil.rmtree, cls.base, ignore_errors=True)
        cls.data = os.path.join(cls.base, "data")
        cls.odd = os.path.join(cls.base, "odd")
        cls.point = os.path.join(cls.base, "mnt")
        for folder in (cls.data, cls.odd, cls.point):
            os.mkdir(folder)
        cls.server = SmbServer({"data": cls.data, ODD_SHARE: cls.odd}, {"ann": PASSWORD},
                               folder=cls.base)
        cls.addClassCleanup(cls.server.close)
        cls.server.start()

    def setUp(self):
        self.addCleanup(self.empty_share)
        self.addCleanup(self.clear)

    def empty_share(self):
        self.server.resume()
        if not self.server.process:
            self.server.start()
        for folder in (self.data, self.odd):
            for name in os.listdir(folder):
                path = os.path.join(folder, name)
                shutil.rmtree(path) if os.path.isdir(path) else os.unlink(path)

    def clear(self):
        while is_mounted(self.point):
            daemon = daemon_of(self.point)
            subprocess.run(["fusermount3", "-uz", self.point], check=True)
            if daemon:
                with contextlib.suppress(ProcessLookupError):
                    os.kill(daemon, signal.SIGKILL)

    def url(self, user="ann", share="data"):
        return f"//{user}@{self.server.address}/{share}"

    def run_tool(self, name, *arguments, password=PASSWORD, timeout=30):
        return subprocess.run([tool(name), *arguments], input=password + "\n", capture_output=True,
                              text=True, timeout=timeout)

    def mount(self, *options, url=None):
        result = self.run_tool("mount_smbfs", *options, url or self.url(), self.point)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue(is_mounted(self.point))

    def diskutil(self, *arguments):
        return self.run_tool("diskutil", *arguments, timeout=10)

    def path(self, *names):
        return os.path.join(self.point, *names)


class Operations(MountTest):
    def operations(self):
        """Name and function of a folder; each gives something comparable."""

        def listing(folder):
            return sorted(os.listdir(folder))

        def open_unlinked(folder):
            with open(folder + "/gone", "w+b") as file:
                file.write(b"abc")
                os.unlink(folder + "/gone")
                exists = os.path.exists(folder + "/gone")
                file.seek(0)
                return exists, file.read(), [n for n in os.listdir(folder) if n == "gone"]

        def rename_open(folder):
            with open(folder + "/before", "w+b") as file:
                file.write(b"abc")
                file.flush()
                os.rename(folder + "/before", folder + "/after")
                file.write(b"def")
            return read(folder + "/after")

        def rename_over_open(folder):
            write(folder + "/old", b"old")
            write(folder + "/new", b"new")
            with open(folder + "/old", "rb") as file:
                os.rename(folder + "/new", folder + "/old")
                return file.read(), read(folder + "/old")

        def rename_folder_with_open_file(folder):
            os.mkdir(folder + "/f1")
            with open(folder + "/f1/file", "wb") as file:
                file.write(b"1")
                file.flush()
                os.rename(folder + "/f1", folder + "/f2")
                file.write(b"2")
            return read(folder + "/f2/file")

        def read_only_file(folder):
            write(folder + "/ro", b"x")
            os.chmod(folder + "/ro", 0o400)
            refused = outcome(os.open, folder + "/ro", os.O_WRONLY)
            writable = bool(os.stat(folder + "/ro").st_mode & stat.S_IWUSR)
            write(folder + "/other", b"y")
            os.rename(folder + "/other", folder + "/ro")
            os.chmod(folder + "/ro", 0o400)
            os.unlink(folder + "/ro")
            return refused, writable

        def appended(folder):
            for part in (b"one", b"two"):
                write(folder + "/log", part, os.O_WRONLY | os.O_CREAT | os.O_APPEND)
            return read(folder + "/log")

        def sparse(folder):
            with open(folder + "/sparse", "wb") as file:
                file.seek(5 << 30)
                file.write(b"end")
            with open(folder + "/sparse", "rb") as file:
                file.seek((5 << 30) - 2)
                return os.path.getsize(folder + "/sparse"), file.read()

        def times(folder):
            write(folder + "/t", b"x")
            os.utime(folder + "/t", ns=(10**18, 10**18 + 7000))
            return os.stat(folder + "/t").st_mtime_ns

        def truncations(folder):
            write(folder + "/tr", b"0123456789")
            os.truncate(folder + "/tr", 4)
            with open(folder + "/tr", "r+b") as file:
                file.seek(2)
                file.write(b"XY")
                file.truncate(3)
                inside = os.fstat(file.fileno()).st_size
            os.truncate(folder + "/tr", 6)
            write(folder + "/empty", b"abc")
            write(folder + "/empty", b"")
            return inside, read(folder + "/tr"), os.path.getsize(folder + "/empty")

        def owner(folder):
            write(folder + "/own", b"")
            os.chown(folder + "/own", os.getuid(), os.getgid())
            info = os.stat(folder + "/own")
            return info.st_uid == os.getuid(), info.st_nlink, os.access(folder + "/own", os.W_OK)

        return {
            "write and read": lambda d: (write(d + "/a", b"hello"), read(d + "/a"))[1],
            "size": lambda d: (write(d + "/a", b"x" * 70000), os.path.getsize(d + "/a"))[1],
            "missing": lambda d: outcome(os.stat, d + "/none"),
            "missing below missing": lambda d: outcome(os.stat, d + "/none/x"),
            "below a file": lambda d: (write(d + "/a", b""), outcome(os.stat, d + "/a/b"))[1],
            "exclusive": lambda d: (write(d + "/a", b""), outcome(
                os.open, d + "/a", os.O_CREAT | os.O_EXCL | os.O_WRONLY))[1],
            "mkdir twice": lambda d: (os.mkdir(d + "/d"), outcome(os.mkdir, d + "/d"))[1],
            "rmdir": lambda d: (os.mkdir(d + "/d"), os.rmdir(d + "/d"), listing(d))[2],
            "rmdir full": lambda d: (os.makedirs(d + "/d/e"), outcome(os.rmdir, d + "/d"))[1],
            "rmdir file": lambda d: (write(d + "/a", b""), outcome(os.rmdir, d + "/a"))[1],
            "unlink": lambda d: (write(d + "/a", b""), os.unlink(d + "/a"), listing(d))[2],
            "unlink folder": lambda d: (os.mkdir(d + "/d"), outcome(os.unlink, d + "/d"))[1],
            "rename": lambda d: (write(d + "/a", b"1"), os.rename(d + "/a", d + "/b"), listing(d),
                                 read(d + "/b"))[2:],
            "rename over": lambda d: (write(d + "/a", b"1"), write(d + "/b", b"2"),
                                      os.rename(d + "/a", d + "/b"), listing(d),
                                      read(d + "/b"))[3:],
            "rename folder": lambda d: (os.makedirs(d + "/d/e"), os.rename(d + "/d", d + "/f"),
                                        listing(d + "/f"))[2],
            "rename missing": lambda d: outcome(os.rename, d + "/x", d + "/y"),
            "open folder to write": lambda d: outcome(os.open, d, os.O_WRONLY),
            "long name": lambda d: (write(d + "/" + "n" * 255, b""), listing(d))[1],
            "too long a name": lambda d: outcome(os.mkdir, d + "/" + "n" * 256),
            "dots": lambda d: (os.mkdir(d + "/d"), os.path.samefile(d + "/d/..", d))[1],
            "open and unlinked": open_unlinked, "rename while open": rename_open,
            "rename over open": rename_over_open,
            "rename a folder with an open file": rename_folder_with_open_file,
            "read-only file": read_only_file, "append": appended, "over 4 GiB": sparse,
            "times": times, "truncate": truncations, "owner": owner,
        }

    def test_a_share_behaves_like_a_folder(self):
        self.natives = tempfile.mkdtemp(dir=self.base)
        self.mount()
        for number, (name, operation) in enumerate(self.operations().items()):
            with self.subTest(name):
                native = os.path.join(self.natives, str(number))
                shared = self.path(f"shared{number}")
                os.mkdir(native)
                os.mkdir(shared)
                self.assertEqual(outcome(operation, shared), outcome(operation, native))
        # Nothing hidden stays behind once all is closed.
        self.assertEqual([name for _, _, names in os.walk(self.data) for name in names
                          if name.startswith(".fuse_hidden")], [])

    def test_what_smb_has_no_word_for_is_refused(self):
        self.mount()
        write(self.path("a"), b"")
        self.assertEqual(outcome(os.symlink, "a", self.path("l")), "EPERM")
        self.assertEqual(outcome(os.link, self.path("a"), self.path("l")), "EPERM")
        self.assertEqual(outcome(os.mkfifo, self.path("f")), "EPERM")
        self.assertIn(outcome(os.setxattr, self.path("a"), "user.x", b"1"), ("ENOTSUP", "EOPNOTSUPP"))
        self.assertEqual(outcome(os.mkdir, self.point.encode() + b"/\xff\xfe"), "EILSEQ")

    def test_odd_names_come_back(self):
        names = ["50%", "a%20b", "what?", "#1", "a b", "ä ö ü", "日本", "c:d", 'say "x"', "back\\slash",
                 "<a|b>", "star*", "dot.", "blank ", "-n", "~", "&=+;@", "tab\there", "🎬"]
        self.mount(url=self.url(share="Film%20K%C3%A4se"))
        for name in names:
            write(self.path(name), name.encode())
        self.assertEqual(sorted(os.listdir(self.point)), sorted(names))
        for name in names:
            self.assertEqual(read(self.path(name)), name.encode())
            os.rename(self.path(name), self.path(name + "2"))
            os.unlink(self.path(name + "2"))
        self.assertEqual(os.listdir(self.odd), [])

    def test_a_folder_below_the_share(self):
        os.makedirs(self.data + "/sub/deep er")
        write(self.data + "/sub/deep er/file", b"here")
        self.mount(url=self.url(share="data/sub/deep%20er"))
        self.assertEqual(read(self.path("file")), b"here")

    def test_changes_on_the_server_are_seen(self):
        self.mount()
        write(self.data + "/f", b"first")
        self.assertEqual(read(self.path("f")), b"first")
        write(self.data + "/f", b"second!")
        eventually(lambda: read(self.path("f")) == b"second!", 3)
        os.unlink(self.data + "/f")
        eventually(lambda: outcome(os.stat, self.path("f")) == "ENOENT", 3)

    def test_a_fresh_listing_hides_nothing(self):
        """Right after a listing its answers are at hand; what they cannot tell is still asked."""
        for name in ("Report.txt", "small", "kept"):
            write(f"{self.data}/{name}", name.encode())
        os.mkdir(self.data + "/.hidden")
        self.mount()

        def after_a_listing(function, *names):
            os.listdir(self.point)
            return outcome(function, *map(self.path, names))

        self.assertEqual(after_a_listing(read, "rePORT.txt"), b"Report.txt")
        self.assertEqual(after_a_listing(os.unlink, "REPORT.TXT"), None)
        # To the kernel these are two names, so it may trust its second for the other one.
        eventually(lambda: outcome(os.stat, self.path("Report.txt")) == "ENOENT", 2)
        self.assertTrue(after_a_listing(os.path.isdir, ".hidden"))
        self.assertEqual(after_a_listing(os.rename, "small", "moved"), None)
        self.assertEqual(outcome(os.stat, self.path("small")), "ENOENT")
        self.assertEqual(read(self.path("moved")), b"small")
        self.assertEqual(after_a_listing(os.stat, "none"), "ENOENT")
        write(self.path("none"), b"made here")
        self.assertEqual(os.path.getsize(self.path("none")), 9)

    def test_a_file_replaced_within_the_second_is_read_whole(self):
        """The kernel opens it without a look-up; no handle may be refused for what was there before."""
        write(self.data + "/f", b"old")
        self.mount()
        self.assertEqual(read(self.path("f")), b"old")
        for content in (b"new", b"n" * (3 << 20)):
            write(self.data + "/f.new", content)
            os.stat(self.path("f"))
            os.rename(self.data + "/f.new", self.data + "/f")
            with open(self.path("f"), "rb") as file:
                self.assertIn(file.read(1), (b"o", b"n"))
            eventually(lambda: read(self.path("f")) == content, 3)

    def test_many_entries(self):
        names = sorted(f"entry {number:05}" for number in range(3000))
        os.mkdir(self.data + "/many")
        for name in names:
            write(f"{self.data}/many/{name}", b"x" * (len(name) % 7))
        self.mount()
        self.assertEqual(sorted(os.listdir(self.path("many"))), names)
        with os.scandir(self.path("many")) as entries:
            self.assertTrue(all(entry.stat().st_size == len(entry.name) % 7 for entry in entries))
        shutil.rmtree(self.path("many"))
        self.assertEqual(os.listdir(self.data), [])

    def test_read_only(self):
        write(self.data + "/f", b"data")
        self.mount("-o", "ro")
        self.assertEqual(read(self.path("f")), b"data")
        for function in (lambda: write(self.path("f"), b"x"), lambda: write(self.path("g"), b"x"),
                         lambda: os.mkdir(self.path("d")), lambda: os.unlink(self.path("f")),
                         lambda: os.truncate(self.path("f"), 0), lambda: os.chmod(self.path("f"), 0)):
            self.assertEqual(outcome(function), "EROFS")

    def test_random_io_matches_a_model(self):
        self.mount()
        for seed in (1, 2, 3):
            with self.subTest(seed=seed):
                self.random_io(random.Random(seed), self.path(f"random{seed}"),
                               f"{self.data}/random{seed}")

    def random_io(self, source, path, on_server):
        limit = 6 << 20
        model = bytearray()
        handles = [os.open(path, os.O_RDWR | os.O_CREAT), os.open(path, os.O_RDWR)]
        for _ in range(250):
            handle = source.choice(handles)
            action = source.random()
            offset = source.randrange(limit)
            size = source.choice((1, 511, 4096, 70_000, 700_000, 1 << 20))
            if action < 0.5:
                data = source.randbytes(size)
                self.assertEqual(os.pwrite(handle, data, offset), size)
                model.extend(bytes(max(0, offset + size - len(model))))
                model[offset:offset + size] = data
            elif action < 0.85:
                self.assertEqual(os.pread(handle, size, offset), bytes(model[offset:offset + size]))
            elif action < 0.92:
                os.ftruncate(handle, offset)
                model.extend(bytes(max(0, offset - len(model))))
                del model[offset:]
            elif action < 0.96:
                self.assertEqual(os.stat(path).st_size, len(model))
            else:
                os.fsync(handle)
                self.assertEqual(read(on_server), bytes(model))
        for handle in handles:
            os.close(handle)
        self.assertEqual(read(on_server), bytes(model))
        self.assertEqual(read(path), bytes(model))

    def test_large_sequential_file(self):
        block = random.Random(7).randbytes(1 << 20)
        size = 40
        self.mount()
        with open(self.path("large"), "wb") as file:
            for number in range(size):
                file.write(number.to_bytes(4, "big") + block[4:])
        with open(self.path("large"), "rb") as file:
            for number in range(size):
                self.assertEqual(file.read(1 << 20), number.to_bytes(4, "big") + block[4:])
            self.assertEqual(file.read(1), b"")
        with open(self.path("large"), "rb") as file:
            with mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as view:
                self.assertEqual(view[39 << 20:(39 << 20) + 4], (39).to_bytes(4, "big"))


class CommandLine(MountTest):
    def test_failures_are_told(self):
        write(self.base + "/file", b"")
        self.addCleanup(os.unlink, self.base + "/file")
        url, point = self.url(), self.point
        closed = f"//ann@127.0.0.1:{free_port()}/data"
        cases = [
            ("mount_smbfs", [], 64, "expected"),
            ("mount_smbfs", [url], 64, "expected"),
            ("mount_smbfs", [url, point, "x"], 64, "expected"),
            ("mount_smbfs", ["-q", url, point], 64, "unknown option '-q'"),
            ("mount_smbfs", ["-o", "soft", url, point], 64, "unknown option 'soft'"),
            ("mount_smbfs", ["-o"], 64, "-o"),
            ("mount_smbfs", ["host:/share", point], 64, "//"),
            ("mount_smbfs", ["//ann@127.0.0.1/", point], 64, "no share"),
            ("mount_smbfs", ["//ann:x1y2@127.0.0.1/data", point], 64, "password"),
            ("mount_smbfs", [url, self.base + "/none"], 1, "No such file"),
            ("mount_smbfs", [url, self.base + "/file"], 1, "Not a directory"),
            ("mount_smbfs", [self.url(share="none"), point], 1, "no share 'none'"),
            ("mount_smbfs", [self.url(share="data/none"), point], 1, "no folder 'none'"),
            ("mount_smbfs", [closed, point], 1, "refuses"),
            ("mount_smbfs", ["//ann@no.such.host.invalid/data", point], 1, "unknown"),
            ("diskutil", [], 64, "command"),
            ("diskutil", ["eject", point], 64, "unknown command 'eject'"),
            ("diskutil", ["unmount"], 64, "directory"),
            ("diskutil", ["unmount", "now", point], 64, "directory"),
            ("diskutil", ["unmount", point], 1, "not a mount point"),
            ("diskutil", ["unmount", "force", self.base + "/none"], 1, "No such file"),
        ]
        for name, arguments, code, text in cases:
            with self.subTest([name, *arguments]):
                result = self.run_tool(name, *arguments)
                self.assertEqual(result.returncode, code, result.stderr)
                line = re.sub("^Password for [^:]*(:[0-9]+)?: ", "", result.stderr)
                self.assertEqual(line.count("\n"), 1, line)
                self.assertIn(text, line)
                self.assertNotIn("x1y2", line)
                self.assertFalse(is_mounted(point))

    def test_help_and_version(self):
        for name in ("mount_smbfs", "diskutil"):
            for option, text in (("--help", "Usage: " + name), ("--version", name + " (Harbrix) ")):
                result = self.run_tool(name, option)
                self.assertEqual((result.returncode, result.stderr), (0, ""))
                self.assertIn(text, result.stdout)

    def test_wrong_password(self):
        result = self.run_tool("mount_smbfs", self.url(), self.point, password="wrong")
        self.assertEqual(result.returncode, 1)
        self.assertIn("Authentication error", result.stderr)
        self.assertFalse(is_mounted(self.point))

    def test_guest_is_not_asked(self):
        for arguments in ([self.url("guest")], ["-N", self.url("nobody-known")],
                          [f"//{self.server.address}/data"]):
            with self.subTest(arguments):
                result = subprocess.run([tool("mount_smbfs"), *arguments, self.point],
                                        stdin=subprocess.DEVNULL, capture_output=True, timeout=30)
                self.assertEqual((result.returncode, result.stdout, result.stderr), (0, b"", b""))
                write(self.path("by guest"), b"1")
                self.assertEqual(self.diskutil("unmount", self.point).returncode, 0)
                self.assertEqual(os.listdir(self.data), ["by guest"])

    @unittest.skipUnless(shutil.which("expect"), "expect is not installed")
    def test_expect_answers_the_prompt(self):
        def quoted(text):
            return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'

        script = "\n".join([
            f"set password {quoted(PASSWORD)}",
            "set args [list " + " ".join(map(quoted, [self.url(), self.point])) + "]",
            f"spawn {tool('mount_smbfs')} {{*}}$args", "expect {", '    "Password for *:" {',
            '        send "$password\\r"', "        expect eof", "    }", "    eof", "}", ""])
        result = subprocess.run(["expect", "-"], input=script, capture_output=True, text=True,
                                timeout=20)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue(is_mounted(self.point), result.stdout)
        self.assertNotIn(PASSWORD, result.stdout)

    def test_second_mount_is_refused(self):
        self.mount()
        result = self.run_tool("mount_smbfs", self.url(), self.point)
        self.assertEqual(result.returncode, 1)
        self.assertIn("already mounted", result.stderr)

    def test_what_the_mount_table_and_others_see(self):
        self.mount()
        with open("/proc/self/mountinfo") as table:
            line = next(line for line in table if line.split()[4] == self.point)
        self.assertIn(" fuse.smbfs " + self.url() + " ", line)
        self.assertIn(self.url() + " on " + self.point, self.diskutil("list").stdout)
        daemon = daemon_of(self.point)
        self.assertEqual(os.getsid(daemon), daemon)
        self.assertEqual(os.stat(f"/proc/{daemon}/environ").st_uid, 0, "it can be dumped")
        info = os.statvfs(self.point)
        self.assertEqual(info.f_namemax, 255)
        self.assertGreater(info.f_blocks * info.f_frsize, info.f_bavail * info.f_frsize)


class Faults(MountTest):
    def test_an_idle_mount_wakes_nobody(self):
        self.mount()
        write(self.path("f"), b"x")
        daemon = daemon_of(self.point)

        def switches():
            total = 0
            for thread in os.listdir(f"/proc/{daemon}/task"):
                with open(f"/proc/{daemon}/task/{thread}/status") as status:
                    total += sum(int(line.split()[1]) for line in status if "ctxt" in line)
            return total

        time.sleep(6)  # the buffers are given back five seconds after the last use
        before = switches()
        time.sleep(2)
        self.assertEqual(switches(), before)

    def test_a_killed_daemon_is_cleared(self):
        self.mount()
        os.kill(daemon_of(self.point), signal.SIGKILL)
        eventually(lambda: outcome(os.stat, self.point) == "ENOTCONN", 5)
        self.mount()
        self.assertEqual(os.listdir(self.point), [])
        os.kill(daemon_of(self.point), signal.SIGKILL)
        eventually(lambda: outcome(os.stat, self.point) == "ENOTCONN", 5)
        self.assertEqual(self.diskutil("unmount", self.point).returncode, 0)
        self.assertFalse(is_mounted(self.point))

    def test_server_killed_and_restarted(self):
        self.mount()
        write(self.path("f"), b"before")
        with open(self.path("f"), "r+b", buffering=0) as file:
            self.server.kill()
            with within(self, 3):
                self.assertIsInstance(outcome(os.stat, self.path("other")), str)
            self.server.start()
            with within(self, 3):
                self.assertEqual(os.listdir(self.point), ["f"])
            self.assertEqual(file.read(), b"before")
            file.write(b" and after")
            os.fsync(file.fileno())
        self.assertEqual(read(self.data + "/f"), b"before and after")

    def test_a_replaced_file_is_not_taken_for_the_old_one(self):
        self.mount()
        write(self.path("f"), b"old" * 1000)
        handle = os.open(self.path("f"), os.O_RDWR)
        self.server.kill()
        write(self.data + "/new", b"new" * 1000)
        os.rename(self.data + "/new", self.data + "/f")
        self.server.start()
        for function in (lambda: os.pread(handle, 10, 0),
                         lambda: (os.pwrite(handle, b"x", 0), os.fsync(handle)),
                         lambda: os.close(handle)):
            self.assertEqual(outcome(function), "ESTALE")
        self.assertEqual(read(self.data + "/f"), b"new" * 1000)

    def test_unsent_data_is_an_error_not_silence(self):
        self.mount()
        handle = os.open(self.path("f"), os.O_RDWR | os.O_CREAT)
        os.write(handle, b"kept")
        os.fsync(handle)
        os.write(handle, b"lost")
        self.server.kill()
        self.assertIsInstance(outcome(os.fsync, handle), str)
        self.assertIsInstance(outcome(os.close, handle), str)
        self.assertEqual(read(self.data + "/f"), b"kept")

    def test_a_silent_server(self):
        write(self.data + "/f", b"data")
        self.mount()
        self.assertEqual(read(self.path("f")), b"data")
        handle = os.open(self.path("w"), os.O_RDWR | os.O_CREAT)
        time.sleep(1.1)  # what the kernel knows by itself lasts for a second
        self.server.pause()
        with within(self, 3):
            self.assertIn(outcome(os.stat, self.path("f")), ("ETIMEDOUT", "EHOSTDOWN"))
        with within(self, 0.3):
            self.assertEqual(outcome(os.stat, self.path("f")), "EHOSTDOWN")
            self.assertEqual(outcome(os.listdir, self.point), "EHOSTDOWN")
            os.stat(self.point)
            os.statvfs(self.point)
        with within(self, 3):
            os.write(handle, b"unsent")
            self.assertEqual(outcome(os.fsync, handle), "EHOSTDOWN")
        self.server.resume()
        eventually(lambda: read(self.path("f")) == b"data", 10)
        self.assertIsInstance(outcome(os.close, handle), str)
        write(self.path("g"), b"again")
        self.assertEqual(read(self.data + "/g"), b"again")

    def test_an_interrupted_reader_is_let_go(self):
        write(self.data + "/f", b"x" * 100)
        self.mount()
        os.stat(self.path("f"))
        handle = os.open(self.path("f"), os.O_RDONLY)
        self.server.pause()
        reader = subprocess.Popen(["cat"], stdin=handle, stdout=subprocess.DEVNULL)
        time.sleep(1.3)
        with within(self, 2):
            reader.terminate()
            self.assertEqual(reader.wait(10), -signal.SIGTERM)
        os.close(handle)

    def test_root_is_answered_while_others_wait(self):
        self.mount()
        self.server.pause()
        waiting = [subprocess.Popen(["stat", self.path(f"f{n}")], stderr=subprocess.DEVNULL)
                   for n in range(12)]
        time.sleep(0.3)
        with within(self, 0.5):
            os.stat(self.point)
            os.statvfs(self.point)
        for process in waiting:
            self.assertEqual(process.wait(5), 1)

    def test_diskutil_in_every_state(self):
        def healthy():
            pass

        def busy():
            self.handle = os.open(self.path("f"), os.O_RDONLY)

        def server_paused():
            self.server.pause()

        def busy_and_server_paused():
            busy()
            self.server.pause()

        def server_killed():
            self.server.kill()

        def daemon_stopped():
            os.kill(daemon_of(self.point), signal.SIGSTOP)

        def daemon_killed():
            os.kill(daemon_of(self.point), signal.SIGKILL)

        states = {healthy: (0, 0), busy: (1, 0), server_paused: (0, 0),
                  busy_and_server_paused: (1, 0), server_killed: (0, 0), daemon_stopped: (0, 0),
                  daemon_killed: (0, 0)}
        write(self.data + "/f", b"data")
        for state, codes in states.items():
            for force, code in zip(([], ["force"]), codes):
                with self.subTest(state.__name__, force=bool(force)):
                    self.handle = None
                    self.mount()
                    daemon = daemon_of(self.point)
                    state()
                    with within(self, 2.3):
                        result = self.diskutil("unmount", *force, self.point)
                    self.assertEqual(result.returncode, code, result.stderr)
                    self.assertEqual(is_mounted(self.point), code != 0)
                    if code == 0:
                        self.assertTrue(has_ended(daemon))
                    else:
                        self.assertIn("busy", result.stderr)
                    if self.handle is not None:
                        os.close(self.handle)
                    self.clear()
                    self.server.resume()
                    if not self.server.process:
                        self.server.start()


def skip(reason):
    print("skipped:", reason)
    sys.exit(SKIP)


def check_machine():
    if not SmbServer.PROGRAM:
        skip("smbd is not installed")
    if not shutil.which("fusermount3"):
        skip("fusermount3 is not installed")
    if not os.path.exists("/dev/fuse"):
        skip("there is no /dev/fuse")


def run_as_ordinary_user():
    """Root need not ask fusermount3; the tools are for those who must."""
    home = tempfile.mkdtemp(prefix="harbrix-e2e-home-")
    os.chown(home, ORDINARY_USER, ORDINARY_USER)
    try:
        environment = {**os.environ, "HOME": home, "TMPDIR": home, "XDG_RUNTIME_DIR": home,
                       "PYTHONDONTWRITEBYTECODE": "1"}
        become = ["setpriv", f"--reuid={ORDINARY_USER}", f"--regid={ORDINARY_USER}", "--clear-groups"]
        script = os.path.abspath(__file__)
        if subprocess.run([*become, "test", "-r", script]).returncode != 0:
            skip("an ordinary user may not read " + os.path.dirname(script))
        return subprocess.run([*become, sys.executable, script, *sys.argv[1:]], env=environment,
                              cwd=home).returncode
    finally:
        shutil.rmtree(home, ignore_errors=True)


if __name__ == "__main__":
    check_machine()
    if os.getuid() == 0:
        sys.exit(run_as_ordinary_user())
    unittest.main(verbosity=2)
