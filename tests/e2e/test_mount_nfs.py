"""mount_nfs against a real nfs-ganesha on loopback. Run with HARBRIX_TOOLS=folder of the built tools."""

import ctypes
import errno
import fcntl
import mmap
import os
import random
import shutil
import signal
import socket
import stat
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
import nfs_server  # noqa: E402

ORDINARY_USER = 1000


def find_tool():
    folder = os.environ.get("HARBRIX_TOOLS", "")
    for path in (os.path.join(folder, "mount_nfs", "mount_nfs"), os.path.join(folder, "mount_nfs")):
        if os.path.isfile(path) and os.access(path, os.X_OK):
            return path
    return None


TOOL = find_tool()


def skip_reason():
    if not TOOL:
        return "HARBRIX_TOOLS names no folder with mount_nfs"
    if not os.path.exists("/dev/fuse") or not shutil.which("fusermount3"):
        return "FUSE is missing"
    return nfs_server.why_unavailable()


def is_mounted(path):
    with open("/proc/self/mountinfo") as table:
        return any(line.split()[4] == path for line in table)


class Mount:
    """A mount of `server` in a folder of its own, taken off and its daemon gone at the end."""

    def __init__(self, server, options="", uid=0, port=None):
        self.server = server
        self.folder = tempfile.mkdtemp(prefix="harbrix-mnt-", dir="/tmp")
        self.path = os.path.join(self.folder, "m")
        os.mkdir(self.path)
        self.uid = uid
        os.chown(self.path, uid, uid)
        os.chmod(self.folder, 0o755)
        self.options = "vers=4,tcp,noresvport,client=own,port=%d" % (port or server.port)
        if options:
            self.options += "," + options

    def command(self):
        tool = TOOL
        prefix = []
        if self.uid:
            tool = shutil.copy(TOOL, os.path.join(self.folder, "mount_nfs"))  # the build folder may be private
            os.chmod(tool, 0o755)
            prefix = ["setpriv", "--reuid=%d" % self.uid, "--regid=%d" % self.uid, "--clear-groups"]
        return prefix + [tool, "-o", self.options, self.server.source, self.path]

    def run(self):
        return subprocess.run(self.command(), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=30)

    def __enter__(self):
        result = self.run()
        if result.returncode != 0:
            self.__exit__()
            raise AssertionError("mount failed: " + result.stderr)
        return self

    def unmount(self):
        for _ in range(50):
            if not is_mounted(self.path):
                return
            subprocess.run(["umount", self.path], stderr=subprocess.DEVNULL)
            time.sleep(0.02)
        subprocess.run(["umount", "-l", self.path], stderr=subprocess.DEVNULL)

    def __exit__(self, *_):
        self.unmount()
        os.rmdir(self.path)
        shutil.rmtree(self.folder, ignore_errors=True)


def error_name(action, *arguments, **named):
    """What an operation yields: its value, or the name of its error."""
    try:
        return action(*arguments, **named)
    except OSError as error:
        return errno.errorcode.get(error.errno, error.errno)


def write_text(path, text):
    with open(path, "w") as file:
        return file.write(text)


def read_text(path):
    with open(path, errors="replace") as file:
        return file.read()


# Each takes a folder and returns something that must be the same natively and on the share.

def names_of_every_byte(folder):
    folder = os.fsencode(folder)
    found = []
    for byte in range(1, 256):
        if byte != ord("/"):
            name = b"n" + bytes([byte]) + b"x"
            open(os.path.join(folder, name), "wb").close()
            found.append(os.path.exists(os.path.join(folder, name)))
    return found, sorted(os.listdir(folder))


def long_names(folder):
    results = [error_name(os.mkdir, os.path.join(folder, "d" * length)) for length in (254, 255, 256)]
    results += [error_name(lambda n: open(os.path.join(folder, n), "w").close(), "f" * n) for n in (255, 256)]
    return results, sorted(os.listdir(folder)), error_name(os.stat, os.path.join(folder, "q" * 256))


def deep_paths(folder):
    path = os.path.join(folder, *["level%02d" % number for number in range(40)])
    os.makedirs(path)
    with open(os.path.join(path, "leaf"), "w") as file:
        file.write("deep")
    with open(os.path.join(path, "leaf")) as file:
        return file.read()


def hard_links(folder):
    first, second = os.path.join(folder, "first"), os.path.join(folder, "second")
    with open(first, "w") as file:
        file.write("one")
    os.link(first, second)
    with open(second, "a") as file:
        file.write("two")
    same = os.stat(first).st_ino == os.stat(second).st_ino
    links = os.stat(first).st_nlink
    os.unlink(first)
    with open(second) as file:
        content = file.read()
    return same, links, os.stat(second).st_nlink, content, error_name(os.link, second, second)


def symbolic_links(folder):
    link = os.path.join(folder, "link")
    os.symlink("../somewhere/else \xe9", link)
    os.symlink("t" * 1000, link + "2")
    return os.readlink(link), len(os.readlink(link + "2")), stat.S_ISLNK(os.lstat(link).st_mode), \
        error_name(os.stat, link), error_name(os.symlink, "x", link)


def rename_table(folder):
    def at(name):
        return os.path.join(folder, name)
    for name in ("a", "b"):
        with open(at(name), "w") as file:
            file.write(name)
    for name in ("empty", "full", "other"):
        os.mkdir(at(name))
    open(at("full/x"), "w").close()
    results = [error_name(os.rename, at(old), at(new)) for old, new in (
        ("a", "b"), ("missing", "c"), ("other", "empty"), ("empty", "full"), ("b", "full"), ("full", "b"),
        ("full", "full/below"), ("b", "full/b"))]
    with open(at("full/b")) as file:
        return results, sorted(os.listdir(folder)), file.read()


def rename_over_open(folder):
    old, new = os.path.join(folder, "old"), os.path.join(folder, "new")
    for path in (old, new):
        with open(path, "w") as file:
            file.write(path[-3:])
    with open(old, "r+") as held:
        os.rename(new, old)
        held.seek(0, 2)
        held.write("more")
        held.flush()
        held.seek(0)
        kept = held.read()
    with open(old) as file:
        return kept, file.read()


def open_unlinked(folder):
    path = os.path.join(folder, "gone")
    with open(path, "w+b") as file:
        file.write(b"x" * 300000)
        os.unlink(path)
        exists = os.path.exists(path)
        file.seek(0)
        size = len(file.read())
        links = os.fstat(file.fileno()).st_nlink
        file.write(b"y")
        file.flush()
        end = os.fstat(file.fileno()).st_size
    deadline = time.monotonic() + 5
    while os.listdir(folder) and time.monotonic() < deadline:
        time.sleep(0.02)
    return exists, size, links, end, os.listdir(folder)


def truncate_table(folder):
    path = os.path.join(folder, "t")
    seen = []
    with open(path, "w+b") as file:
        file.write(b"0123456789" * 1000)
        for size in (5000, 0, 20000, 7):
            file.truncate(size)
            seen.append((os.fstat(file.fileno()).st_size, os.stat(path).st_size))
            file.seek(0)
            seen.append(file.read())
    with open(path, "wb"):
        pass
    seen.append(os.stat(path).st_size)
    seen.append(error_name(os.truncate, path, 123))
    os.truncate(path, 0)
    seen.append(error_name(os.truncate, folder, 1))
    return seen


def sparse_files(folder):
    path = os.path.join(folder, "sparse")
    with open(path, "wb") as file:
        file.seek(50 << 20)
        file.write(b"end")
        file.seek(10 << 20)
        file.write(b"middle")
    with open(path, "rb") as file:
        start = file.read(4096)
        file.seek((10 << 20) - 2)
        middle = file.read(10)
        file.seek(50 << 20)
        return os.stat(path).st_size, start == bytes(4096), middle, file.read(), os.stat(path).st_blocks < 2000


def append_mode(folder):
    path = os.path.join(folder, "log")
    for part in ("one ", "two ", "three"):
        with open(path, "a") as file:
            file.write(part)
    with open(path) as file:
        return file.read()


def exclusive_create(folder):
    path = os.path.join(folder, "x")
    flags = os.O_CREAT | os.O_EXCL | os.O_WRONLY
    os.close(os.open(path, flags, 0o640))
    return error_name(os.open, path, flags), oct(os.stat(path).st_mode)


def modes_and_access(folder):
    path = os.path.join(folder, "f")
    open(path, "w").close()
    seen = []
    for mode in (0o000, 0o400, 0o640, 0o755, 0o4711, 0o1777):
        os.chmod(path, mode)
        seen.append(oct(os.stat(path).st_mode))
    os.mkdir(os.path.join(folder, "d"), 0o700)
    seen.append(oct(os.stat(os.path.join(folder, "d")).st_mode))
    return seen, os.access(path, os.R_OK), os.access(os.path.join(folder, "none"), os.F_OK)


def access_as_user(folder):
    """What an ordinary user may do, told by a child that has become one."""
    os.chmod(folder, 0o755)
    for name, mode in (("r", 0o604), ("w", 0o602), ("x", 0o701), ("none", 0o600)):
        path = os.path.join(folder, name)
        open(path, "w").close()
        os.chmod(path, mode)
    program = ("import os,sys\nos.setgroups([]); os.setgid(%d); os.setuid(%d)\n"
               "for n in ('r','w','x','none'):\n"
               "  p=os.path.join(sys.argv[1],n)\n"
               "  print(n,[os.access(p,m) for m in (os.R_OK,os.W_OK,os.X_OK)])\n"
               "  for f in (os.O_RDONLY,os.O_WRONLY,os.O_RDWR):\n"
               "    try: os.close(os.open(p,f)); print('open')\n"
               "    except OSError as e: print(e.errno)\n"
               "for a in (lambda: os.unlink(p), lambda: os.mkdir(p+'d'), lambda: os.chmod(p,0o777)):\n"
               "  try: a(); print('done')\n"
               "  except OSError as e: print(e.errno)\n") % (ORDINARY_USER, ORDINARY_USER)
    return subprocess.run([sys.executable, "-c", program, folder], stdout=subprocess.PIPE, text=True).stdout


def times(folder):
    path = os.path.join(folder, "t")
    with open(path, "w") as file:
        file.write("x" * 100000)
        file.flush()
        os.utime(file.fileno(), ns=(1_000_000_000_123_456_789, 1_500_000_000_987_654_321))
    first = os.stat(path)
    os.utime(path, (-86400, 4102444800))
    second = os.stat(path)
    os.utime(path)
    return first.st_atime_ns, first.st_mtime_ns, second.st_mtime_ns, abs(os.stat(path).st_mtime - time.time()) < 5


def extended_attributes(folder):
    path = os.path.join(folder, "f")
    open(path, "w").close()
    return error_name(os.listxattr, path) in ([], "ENOTSUP"), \
        error_name(os.getxattr, path, "user.none") in ("ENODATA", "ENOTSUP")


def special_files(folder):
    os.mkfifo(os.path.join(folder, "fifo"), 0o600)
    os.mknod(os.path.join(folder, "plain"), 0o640 | stat.S_IFREG)
    os.mknod(os.path.join(folder, "null"), 0o600 | stat.S_IFCHR, os.makedev(1, 3))
    with socket.socket(socket.AF_UNIX) as server:
        here = os.getcwd()
        os.chdir(folder)  # socket addresses are short
        server.bind("sock")
        os.chdir(here)
    seen = [(name, oct(os.lstat(os.path.join(folder, name)).st_mode)) for name in sorted(os.listdir(folder))]
    return seen, os.lstat(os.path.join(folder, "null")).st_rdev


def directories(folder):
    def at(name):
        return os.path.join(folder, name)
    os.mkdir(at("d"))
    open(at("d/f"), "w").close()
    open(at("f"), "w").close()
    return [error_name(action, at(name)) for action, name in (
        (os.mkdir, "d"), (os.rmdir, "d"), (os.rmdir, "f"), (os.unlink, "d"), (os.rmdir, "none"),
        (os.unlink, "none"), (os.mkdir, "none/x"), (os.listdir, "f"), (os.unlink, "d/f"), (os.rmdir, "d"))]


def big_directory(folder):
    names = ["entry-%05d-%s" % (number, "x" * (number % 60)) for number in range(3000)]
    for name in names:
        os.close(os.open(os.path.join(folder, name), os.O_CREAT | os.O_WRONLY))
    listed = os.listdir(folder)
    with os.scandir(folder) as entries:
        kinds = {entry.is_file() for entry in entries}
    for name in names:
        os.unlink(os.path.join(folder, name))
    return sorted(listed) == sorted(names), len(listed), kinds, os.listdir(folder)


def remove_while_listing(folder):
    for number in range(1500):
        open(os.path.join(folder, "f%d" % number), "w").close()
    shutil.rmtree(folder)
    return os.path.exists(folder)


def seek_in_directory(folder):
    for number in range(700):
        open(os.path.join(folder, "s%d" % number), "w").close()
    libc = ctypes.CDLL(None, use_errno=True)
    libc.opendir.restype = libc.readdir.restype = ctypes.c_void_p
    libc.telldir.restype = ctypes.c_long
    stream = ctypes.c_void_p(libc.opendir(os.fsencode(folder)))

    def name():
        entry = libc.readdir(stream)
        return ctypes.string_at(entry + 19) if entry else None
    for _ in range(350):
        name()
    place = libc.telldir(stream)
    rest = []
    while (entry := name()) is not None:
        rest.append(entry)
    libc.seekdir(stream, ctypes.c_long(place))
    again = []
    while (entry := name()) is not None:
        again.append(entry)
    libc.closedir(stream)
    return len(rest), rest == again


def byte_range_locks(folder):
    path = os.path.join(folder, "locked")
    with open(path, "w") as file:
        file.write("x" * 1000)

    def other(kind, start, length):
        program = ("import fcntl,sys\nf=open(sys.argv[1],'r+')\n"
                   "try: fcntl.lockf(f,int(sys.argv[2])|fcntl.LOCK_NB,int(sys.argv[4]),int(sys.argv[3])); print('ok')\n"
                   "except OSError as e: print('busy')")
        return subprocess.run([sys.executable, "-c", program, path, str(kind), str(start), str(length)],
                              stdout=subprocess.PIPE, text=True).stdout.strip()
    with open(path, "r+") as file:
        fcntl.lockf(file, fcntl.LOCK_EX, 100, 0)
        fcntl.lockf(file, fcntl.LOCK_SH, 100, 200)
        seen = [other(fcntl.LOCK_EX, 0, 10), other(fcntl.LOCK_SH, 0, 10), other(fcntl.LOCK_EX, 100, 50),
                other(fcntl.LOCK_SH, 200, 10), other(fcntl.LOCK_EX, 200, 10)]
        request = struct.pack("hhqqi4x", fcntl.F_WRLCK, 0, 50, 10, 0)
        fcntl.lockf(file, fcntl.LOCK_UN, 50, 0)
        seen += [other(fcntl.LOCK_EX, 0, 50), other(fcntl.LOCK_EX, 60, 10)]
        seen.append(struct.unpack("hhqqi4x", fcntl.fcntl(file, fcntl.F_GETLK, request))[0] == fcntl.F_UNLCK)
    seen.append(other(fcntl.LOCK_EX, 0, 0))
    return seen


def shared_mapping(folder):
    path = os.path.join(folder, "map")
    with open(path, "w+b") as file:
        file.truncate(100000)
        with mmap.mmap(file.fileno(), 100000) as view:
            view[50000:50005] = b"hello"
            view.flush()
            file.seek(50000)
            return file.read(5), view[:5]


TABLE = [names_of_every_byte, long_names, deep_paths, hard_links, symbolic_links, rename_table, rename_over_open,
         open_unlinked, truncate_table, sparse_files, append_mode, exclusive_create, modes_and_access,
         access_as_user, times, extended_attributes, special_files, directories, big_directory,
         remove_while_listing, seek_in_directory, byte_range_locks, shared_mapping]


class Operations(unittest.TestCase):
    def compare(self, options, left_out=()):
        native = tempfile.mkdtemp(prefix="harbrix-native-")
        os.chmod(native, 0o755)
        try:
            with nfs_server.NfsServer() as server, Mount(server, options) as mount:
                for operation in TABLE:
                    if operation in left_out:
                        continue
                    folders = [os.path.join(root, operation.__name__) for root in (native, mount.path)]
                    results = []
                    for folder in folders:
                        os.mkdir(folder)
                        results.append(error_name(operation, folder))
                    with self.subTest(operation.__name__):
                        self.assertEqual(results[0], results[1])
        finally:
            shutil.rmtree(native, ignore_errors=True)

    def test_version_4_1(self):
        self.compare("vers=4.1")

    def test_version_4_0(self):
        self.compare("vers=4.0", left_out=(byte_range_locks,))

    def test_read_only(self):
        with nfs_server.NfsServer() as server:
            with open(os.path.join(server.data, "f"), "w") as file:
                file.write("x")
            with Mount(server, "ro") as mount:
                path = os.path.join(mount.path, "f")
                self.assertEqual(error_name(os.open, path, os.O_WRONLY), "EROFS")
                self.assertEqual(error_name(os.mkdir, path + "d"), "EROFS")
                with open(path) as file:
                    self.assertEqual(file.read(), "x")

    def test_changes_on_the_server_are_seen(self):
        with nfs_server.NfsServer(attributes=0) as server, Mount(server) as mount:
            here, there = os.path.join(mount.path, "f"), os.path.join(server.data, "f")
            for content in ("first", "second, longer", "3"):
                with open(there, "w") as file:
                    file.write(content)
                time.sleep(1.1)  # names and attributes are good for a second
                with open(here) as file:
                    self.assertEqual(file.read(), content)

    def test_old_server(self):
        with nfs_server.NfsServer(minors="0") as server, Mount(server) as mount:
            path = os.path.join(mount.path, "f")
            with open(path, "w") as file:
                file.write("4.0 all the same")
            with open(os.path.join(server.data, "f")) as file:
                self.assertEqual(file.read(), "4.0 all the same")


class Model:
    """A file on the share beside a copy in memory, changed in the same way."""

    SIZE = 6 << 20

    def __init__(self, test, path, seed):
        self.test, self.path = test, path
        self.random = random.Random(seed)
        self.bytes = bytearray()
        self.file = open(path, "w+b", buffering=0)
        self.other = open(path, "r+b", buffering=0)
        # Opened for writing only, a file is written past the page cache that the others read from.
        self.writer = open(os.open(path, os.O_WRONLY), "wb", buffering=0)

    def length(self):
        return self.random.choice((1, 100, 4096, 5000, 65536, 200000, 1 << 20))

    def write(self):
        offset = self.random.randrange(self.SIZE)
        data = self.random.randbytes(self.random.randint(1, self.length()))
        file = self.random.choice((self.file, self.other, self.writer))
        file.seek(offset)
        self.test.assertEqual(file.write(data), len(data))
        if offset > len(self.bytes):
            self.bytes.extend(bytes(offset - len(self.bytes)))
        self.bytes[offset:offset + len(data)] = data

    def rewrite(self):
        """Overlapping writes one after the other: the last one must win."""
        offset = self.random.randrange(self.SIZE)
        for _ in range(6):
            data = self.random.randbytes(20000)
            start = offset + self.random.randrange(10000)
            self.file.seek(start)
            self.file.write(data)
            if start > len(self.bytes):
                self.bytes.extend(bytes(start - len(self.bytes)))
            self.bytes[start:start + len(data)] = data

    def stream(self):
        data = self.random.randbytes(3 << 20)
        file = self.random.choice((self.file, self.writer))
        file.seek(0)
        for start in range(0, len(data), 100000):
            file.write(data[start:start + 100000])
        self.bytes[0:len(data)] = data

    def read(self):
        offset = self.random.randrange(self.SIZE)
        length = self.length()
        file = self.random.choice((self.file, self.other))
        file.seek(offset)
        self.test.assertEqual(file.read(length), bytes(self.bytes[offset:offset + length]))

    def read_all(self):
        self.other.seek(0)
        self.test.assertEqual(self.other.readall(), bytes(self.bytes))

    def truncate(self):
        size = self.random.randrange(self.SIZE)
        self.random.choice((self.file, self.other)).truncate(size)
        self.bytes = self.bytes[:size] + bytes(max(0, size - len(self.bytes)))

    def map(self):
        if len(self.bytes) < 10000:
            return
        with mmap.mmap(self.file.fileno(), len(self.bytes)) as view:
            offset = self.random.randrange(len(self.bytes) - 5000)
            self.test.assertEqual(view[offset:offset + 5000], bytes(self.bytes[offset:offset + 5000]))
            data = self.random.randbytes(3000)
            view[offset:offset + 3000] = data
            self.bytes[offset:offset + 3000] = data
            view.flush()

    def size(self):
        self.test.assertEqual(os.stat(self.path).st_size, len(self.bytes))

    def sync(self):
        os.fsync(self.file.fileno())

    def step(self):
        self.random.choices(
            (self.write, self.rewrite, self.read, self.truncate, self.map, self.size, self.sync, self.stream,
             self.read_all), (40, 8, 30, 4, 6, 6, 3, 1, 2))[0]()

    def close(self):
        for file in (self.file, self.other, self.writer):
            file.close()


class Integrity(unittest.TestCase):
    def exercise(self, options, seeds, steps=150):
        with nfs_server.NfsServer() as server, Mount(server, options) as mount:
            for seed in seeds:
                with self.subTest(options=options, seed=seed):
                    name = "model-%d" % seed
                    model = Model(self, os.path.join(mount.path, name), seed)
                    for _ in range(steps):
                        model.step()
                    model.close()
                    with open(os.path.join(server.data, name), "rb") as file:
                        self.assertEqual(file.read(), bytes(model.bytes))

    def test_behind_4_1(self):
        self.exercise("vers=4.1", range(10))

    def test_behind_small_blocks(self):
        self.exercise("vers=4.1,rsize=32768,wsize=16384,memory=8", range(10, 13), steps=100)

    def test_through_4_1(self):
        self.exercise("vers=4.1,sync", range(20, 23), steps=100)

    def test_behind_4_0(self):
        self.exercise("vers=4.0", range(30, 36))

    def test_through_4_0(self):
        self.exercise("vers=4.0,sync", range(40, 42), steps=100)


WRITER = """
import os, struct, sys
with open(sys.argv[1], "wb", buffering=0) as file:
    for number in range(int(sys.argv[2])):
        file.write(struct.pack(">Q", number) * 8192)
        if number % 20 == 19:
            os.fsync(file.fileno())
            print(number + 1, flush=True)
"""

HOLDER = """
import fcntl, os, sys
with open(sys.argv[1], "w+b", buffering=0) as file:
    file.write(b"x")
    fcntl.lockf(file, fcntl.LOCK_EX)
    print("locked", flush=True)
    sys.stdin.readline()
    print(os.pread(file.fileno(), 10, 0).decode(), flush=True)
    sys.stdin.readline()
"""


class Faults(unittest.TestCase):
    def wait_until(self, condition, seconds, what):
        """An error of the system is a "not yet": while the server is away every call fails."""
        deadline = time.monotonic() + seconds
        while error_name(condition) is not True:
            self.assertLess(time.monotonic(), deadline, what)
            time.sleep(0.02)

    def write_through_restart(self, graceless, version="4.1"):
        server = nfs_server.NfsServer(graceless=graceless, grace=4, lease=10)
        with server, Mount(server, "vers=" + version) as mount:
            blocks, block = 400, 64 * 1024
            # A process of its own: one that starts the server must have no file of the mount open, or its
            # child would wait in close(2) for the very server that it is to become.
            writer = subprocess.Popen([sys.executable, "-c", WRITER, os.path.join(mount.path, "f"), str(blocks)],
                                      stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
            self.addCleanup(writer.kill)
            promised = [int(writer.stdout.readline()) for _ in range(3)][-1]
            server.kill()
            there = os.path.join(server.data, "f")

            def content(count):
                return b"".join(struct.pack(">Q", number) * (block // 8) for number in range(count))
            with open(there, "rb") as file:
                self.assertEqual(file.read(promised * block), content(promised))
            server.start()
            rest, _ = writer.communicate(timeout=60)
            self.assertEqual(writer.returncode, 0, rest)
            with open(there, "rb") as file:
                self.assertEqual(file.read(), content(blocks))

    def test_killed_and_restarted_mid_write(self):
        self.write_through_restart(graceless=True)

    def test_killed_and_restarted_mid_write_4_0(self):
        self.write_through_restart(graceless=True, version="4.0")

    def test_restart_with_grace(self):
        self.write_through_restart(graceless=False)

    def test_locks_survive_a_restart(self):
        with nfs_server.NfsServer(graceless=False, grace=4, lease=10) as server, Mount(server) as mount, \
                Mount(server) as second:
            holder = subprocess.Popen([sys.executable, "-c", HOLDER, os.path.join(mount.path, "f")],
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
            self.addCleanup(holder.kill)
            self.assertEqual(holder.stdout.readline(), "locked\n")
            server.kill()
            server.start()
            holder.stdin.write("read\n")
            holder.stdin.flush()
            self.assertEqual(holder.stdout.readline(), "x\n")
            with open(os.path.join(second.path, "f"), "r+") as other:
                self.assertIn(error_name(fcntl.lockf, other, fcntl.LOCK_EX | fcntl.LOCK_NB), ("EAGAIN", "EACCES"))
                holder.communicate("end\n", timeout=10)
                self.assertIsNone(error_name(fcntl.lockf, other, fcntl.LOCK_EX | fcntl.LOCK_NB))

    def test_black_hole(self):
        with nfs_server.NfsServer() as server, Mount(server) as mount:
            path = os.path.join(mount.path, "f")
            with open(path, "w") as file:
                file.write("content")
            server.freeze()

            def timed(action, *arguments):
                start = time.monotonic()
                result = error_name(action, *arguments)
                return time.monotonic() - start, result
            try:
                self.assertLess(timed(os.stat, mount.path)[0], 1)
                seconds, result = timed(os.stat, os.path.join(mount.path, "another"))
                self.assertEqual(result, "ETIMEDOUT")
                self.assertLess(seconds, 4)
                for action in (os.stat, os.unlink, os.mkdir):
                    seconds, result = timed(action, os.path.join(mount.path, "third"))
                    self.assertEqual(result, "ETIMEDOUT")
                    self.assertLess(seconds, 1)
                self.assertLess(timed(os.stat, mount.path)[0], 1)
                self.assertLess(timed(os.statvfs, mount.path)[0], 1)
            finally:
                server.thaw()
            self.wait_until(lambda: os.path.exists(path), 10, "the mount has not come back")
            with open(path) as file:
                self.assertEqual(file.read(), "content")

    def test_slow_line_is_no_dead_server(self):
        """One WRITE takes longer here than a server may be silent."""
        with nfs_server.NfsServer() as server, Relay(server.port, rate=300 << 10) as relay, \
                Mount(server, port=relay.port) as mount:
            data = os.urandom(2 << 20)
            program = "import os,sys; f=open(sys.argv[1],'wb'); f.write(sys.stdin.buffer.read()); f.flush(); os.fsync(f)"
            with subprocess.Popen([sys.executable, "-c", program, os.path.join(mount.path, "f")],
                                  stdin=subprocess.PIPE) as writer:
                writer.stdin.write(data)
                writer.stdin.close()
                while writer.poll() is None:
                    self.assertEqual(error_name(os.stat, os.path.join(mount.path, "none")), "ENOENT")
                    time.sleep(0.2)
            self.assertEqual(writer.returncode, 0)
            with open(os.path.join(server.data, "f"), "rb") as file:
                self.assertEqual(file.read(), data)

    def test_interrupted_reader(self):
        with nfs_server.NfsServer() as server, Mount(server) as mount:
            path = os.path.join(mount.path, "f")
            with open(os.path.join(server.data, "f"), "wb") as file:
                file.write(bytes(64 << 20))
            with open(path, "rb") as file:
                file.read(10)
                server.freeze()
                try:
                    reader = subprocess.Popen(["dd", "if=" + path, "of=/dev/null", "bs=1M", "skip=60"],
                                              stderr=subprocess.DEVNULL)
                    time.sleep(0.3)
                    reader.terminate()
                    start = time.monotonic()
                    reader.wait(5)
                    self.assertLess(time.monotonic() - start, 2)
                finally:
                    server.thaw()

    def test_server_closes_idle_connections(self):
        with nfs_server.NfsServer() as server, Relay(server.port) as relay, \
                Mount(server, port=relay.port) as mount:
            path = os.path.join(mount.path, "f")
            with open(path, "w+") as file:
                for number in range(5):
                    relay.cut()
                    file.write(str(number))
                    file.flush()
                    os.fsync(file.fileno())
                    self.assertEqual(os.path.exists(path + "x"), False)
                file.seek(0)
                self.assertEqual(file.read(), "01234")

    def test_daemon_ends_though_the_server_is_silent(self):
        with nfs_server.NfsServer() as server:
            with Mount(server) as mount:
                with open("/proc/self/mountinfo") as table:
                    self.assertTrue(any(mount.path in line and "fuse.nfs" in line for line in table))
                server.freeze()
                start = time.monotonic()
                mount.unmount()
                self.assertFalse(is_mounted(mount.path))
                self.assertLess(time.monotonic() - start, 2)
                self.wait_until(lambda: not self.daemons(mount.path), 8, "a daemon has stayed behind")
            server.thaw()

    @staticmethod
    def daemons(path):
        found = []
        for entry in os.listdir("/proc"):
            if entry.isdigit():
                try:
                    with open("/proc/%s/cmdline" % entry, "rb") as file:
                        arguments = file.read().split(b"\0")
                except OSError:
                    continue
                if os.fsencode(path) in arguments and arguments[0].endswith(b"mount_nfs"):
                    found.append(int(entry))
        return found


class Relay:
    """Passes bytes between a client and the server; can cut connections, spoil what the server says, and be slow
    (`rate` in bytes a second)."""

    def __init__(self, target, spoil=None, rate=None):
        self.target, self.spoil, self.rate = target, spoil, rate
        self.listener = socket.socket()
        if rate:  # a slow line has not taken in what it has not sent on
            self.listener.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 16384)
        self.listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self.listener.bind(("127.0.0.1", nfs_server.free_port()))
        self.listener.listen()
        self.port = self.listener.getsockname()[1]
        self.connections = []
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            try:
                client = self.listener.accept()[0]
            except OSError:
                return
            try:
                server = socket.create_connection(("127.0.0.1", self.target))
            except OSError:
                client.close()
                continue
            self.connections += [client, server]
            threading.Thread(target=self._pump, args=(client, server, None), daemon=True).start()
            threading.Thread(target=self._pump, args=(server, client, self.spoil), daemon=True).start()

    def _pump(self, source, sink, change):
        try:
            while data := source.recv(1 << 14 if self.rate else 1 << 16):
                sink.sendall(change(data) if change else data)
                if self.rate:
                    time.sleep(len(data) / self.rate)
        except OSError:
            pass
        for end in (source, sink):
            try:
                end.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass

    def cut(self):
        for connection in self.connections:
            try:
                connection.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass
            connection.close()
        self.connections = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.listener.close()
        self.cut()


class BadServers(unittest.TestCase):
    def answer(self, reply):
        """Runs the tool against a server that sends `reply` to whatever it gets."""
        listener = socket.socket()
        listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        listener.bind(("127.0.0.1", nfs_server.free_port()))
        listener.listen()

        def serve():
            while True:
                try:
                    connection = listener.accept()[0]
                    request = connection.recv(65536)
                    connection.sendall(reply(request[4:8]))
                    connection.close()
                except OSError:
                    return
        threading.Thread(target=serve, daemon=True).start()
        server = type("Server", (), {"source": "127.0.0.1:/x", "port": listener.getsockname()[1]})
        mount = Mount(server)
        try:
            return mount.run()
        finally:
            listener.close()
            mount.__exit__()

    def test_garbage_instead_of_an_answer(self):
        accepted = b"\0\0\0\1" + bytes(16)
        cases = {
            "noise": lambda xid: bytes(range(256)) * 4,
            "nothing": lambda xid: b"",
            "a record of 2 GiB": lambda xid: b"\xff\xff\xff\xff" + xid + accepted,
            "a cut record": lambda xid: b"\x80\0\1\0" + xid + accepted,
            "empty fragments": lambda xid: b"\0\0\0\0" * 1000,
            "a compound of 4 billion results": lambda xid: b"\x80\0\0\x24" + xid + accepted + b"\0\0\0\0\0\0\0\0\xff\xff\xff\xff",
            "an error for everything": lambda xid: b"\x80\0\0\x24" + xid + accepted + b"\0\0\x27\x16\0\0\0\0\0\0\0\0",
            "a port that is too high": lambda xid: b"\x80\0\0\x24" + xid + accepted + b"\0\0\0\1\0\0\0\0\0\0\0\0",
            "another program": lambda xid: b"\x80\0\0\x20" + xid + b"\0\0\0\1" + bytes(12) + b"\0\0\0\2" + bytes(4),
            "rejected credentials": lambda xid: b"\x80\0\0\x14" + xid + b"\0\0\0\1\0\0\0\1\0\0\0\1\0\0\0\5",
        }
        for what, reply in cases.items():
            with self.subTest(what):
                result = self.answer(reply)
                self.assertEqual(result.returncode, 1)
                refused = what in ("rejected credentials", "a port that is too high")
                self.assertEqual("permission" in result.stderr.lower(), refused, result.stderr)
                self.assertEqual("insecure" in result.stderr, refused, result.stderr)

    def test_spoiled_answers(self):
        """Bits flip in what a real server says: every call comes back, and the daemon lives."""
        source = random.Random(7)
        rate = [0.0]

        def spoil(data):
            if source.random() >= rate[0]:
                return data
            data = bytearray(data)
            for _ in range(source.randint(1, 4)):
                data[source.randrange(len(data))] = source.choice((0, 1, 0x7F, 0xFF, source.randrange(256)))
            return bytes(data)

        with nfs_server.NfsServer() as server, Relay(server.port, spoil) as relay, \
                Mount(server, port=relay.port) as mount:
            folder = os.path.join(mount.path, "d")
            os.mkdir(folder)
            for number in range(50):
                open(os.path.join(folder, str(number)), "w").close()
            rate[0] = 0.15
            deadline = time.monotonic() + 6
            while time.monotonic() < deadline:
                for action in (os.listdir, os.stat):
                    error_name(action, folder)
                error_name(write_text, os.path.join(folder, "1"), "text" * 1000)
                error_name(read_text, os.path.join(folder, "1"))
            rate[0] = 0.0
            relay.cut()
            Faults.wait_until(self, lambda: sorted(os.listdir(folder)) == sorted(os.listdir(
                os.path.join(server.data, "d"))), 30, "the mount has not come back")


class CommandLine(unittest.TestCase):
    def run_tool(self, *arguments):
        return subprocess.run([TOOL, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=40)

    def test_usage(self):
        for arguments in ((), ("host:/path",), ("-o", "vers=3", "h:/p", "/tmp"), ("-o", "udp", "h:/p", "/tmp"),
                          ("-x", "h:/p", "/tmp"), ("nocolon", "/tmp"), (":/p", "/tmp"), ("h:/../p", "/tmp"),
                          ("h:/p", "/tmp", "more"), ("-o",)):
            with self.subTest(arguments):
                result = self.run_tool(*arguments)
                self.assertEqual(result.returncode, 64)
                self.assertIn("mount_nfs: ", result.stderr)
        self.assertEqual(self.run_tool("--help").returncode, 0)
        self.assertIn("mount_nfs", self.run_tool("--version").stdout)

    def test_failures_that_have_nothing_to_do_with_rights(self):
        folder = tempfile.mkdtemp(prefix="harbrix-mnt-")
        try:
            with nfs_server.NfsServer() as server:
                closed = nfs_server.free_port()
                for source, port, point in (("127.0.0.1:/export/data", closed, folder),
                                            ("127.0.0.1:/nothing/here", server.port, folder),
                                            ("no-such-host.invalid:/x", server.port, folder),
                                            (server.source, server.port, folder + "/missing")):
                    with self.subTest(source):
                        result = self.run_tool("-o", "client=own,vers=4,port=%d" % port, source, point)
                        self.assertEqual(result.returncode, 1)
                        self.assertTrue(result.stderr.startswith("mount_nfs: "), result.stderr)
                        for word in ("permission", "not permitted", "sudo"):
                            self.assertNotIn(word, result.stderr.lower())
        finally:
            os.rmdir(folder)

    def mounts_at(self, address, *sources):
        with nfs_server.NfsServer(address=address) as server:
            for source in sources:
                named = type("Server", (), {"source": source, "port": server.port})
                with self.subTest(source), Mount(named) as mount:
                    write_text(os.path.join(mount.path, "f"), source)
                    self.assertEqual(read_text(os.path.join(server.data, "f")), source)

    def test_names_and_addresses(self):
        self.mounts_at("127.0.0.1", "localhost:/export/data", "127.0.0.1:export/data", "127.0.0.1:/export//data/.")

    @unittest.skipUnless(os.path.exists("/proc/net/if_inet6"), "this machine has no IPv6")
    def test_ipv6_with_brackets_and_without(self):
        self.mounts_at("::1", "[::1]:/export/data", "::1:/export/data")


@unittest.skipUnless(os.path.exists("/dev/fuse") and os.stat("/dev/fuse").st_mode & 0o006 == 0o006,
                     "/dev/fuse is closed to ordinary users on this machine")
class OrdinaryUser(unittest.TestCase):
    def test_mounts_and_works(self):
        with nfs_server.NfsServer() as server:
            os.chown(server.data, ORDINARY_USER, ORDINARY_USER)
            os.chmod(server.base, 0o755)
            with Mount(server, uid=ORDINARY_USER) as mount:
                program = ("import os,sys\nos.setgroups([]); os.setgid(%d); os.setuid(%d); os.chdir(sys.argv[1])\n"
                           "open('mine','w').write('x'*100000); os.mkdir('d'); os.rename('mine','d/mine')\n"
                           "print(os.stat('d/mine').st_uid, len(open('d/mine').read()))\n"
                           "try: open('roots')\n"
                           "except PermissionError: print('refused')\n") % (ORDINARY_USER, ORDINARY_USER)
                with open(os.path.join(server.data, "roots"), "w"):
                    os.chmod(os.path.join(server.data, "roots"), 0o600)
                result = subprocess.run([sys.executable, "-c", program, mount.path], stdout=subprocess.PIPE,
                                        stderr=subprocess.PIPE, text=True)
                self.assertEqual(result.stdout.split(), [str(ORDINARY_USER), "100000", "refused"], result.stderr)
                # FUSE keeps even root out of a user's own mount, so it is taken off as that user.
                subprocess.run(["setpriv", "--reuid=%d" % ORDINARY_USER, "--regid=%d" % ORDINARY_USER,
                                "--clear-groups", "fusermount3", "-u", mount.path], check=True)

    def test_server_that_wants_a_privileged_port(self):
        # ganesha refuses its root to other ports, and hides what is below.
        for pseudo, text in (("/", "permission denied"), ("/export/data", "no such export")):
            with self.subTest(pseudo), nfs_server.NfsServer(privileged=True, pseudo=pseudo) as server:
                mount = Mount(server, uid=ORDINARY_USER)
                try:
                    result = mount.run()
                finally:
                    mount.__exit__()
                self.assertEqual(result.returncode, 1)
                self.assertIn(text, result.stderr)
                self.assertIn("\"insecure\"", result.stderr)
                with Mount(server) as rooted:  # root has such a port to offer
                    self.assertEqual(os.listdir(rooted.path), [])


if __name__ == "__main__":
    reason = skip_reason()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
