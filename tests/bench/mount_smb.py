#!/usr/bin/python3
"""Prints how fast mount_smbfs is beside rclone mount, smbnetfs and smbclient, all on the same private smbd.

usage: mount_smb.py BUILD_FOLDER [--size MIB] [--rounds N] [--only NAME,...]

The shared folder lies on /dev/shm, so that the figures are those of the clients. Every row begins with a fresh
mount. It judges nothing and never fails on a figure.
"""

import argparse
import contextlib
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "support"))
from smb_server import SmbServer  # noqa: E402

ENTRIES = 10_000
FILES = 2_000
FILE_SIZE = 16 << 10
SLOW_WRITER_MIB = 64  # smbnetfs writes below 10 MiB/s: less is enough for a figure
USER, PASSWORD = "ann", "secret"


def quiet(*command, **options):
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                   **options)


class Mounted:
    """A client that shows the share as a folder."""

    def __init__(self, bench):
        self.bench = bench

    @contextlib.contextmanager
    def folder(self):
        point = tempfile.mkdtemp(dir=self.bench.base)
        share = self.start(point)
        try:
            deadline = time.monotonic() + 10
            while not os.path.exists(os.path.join(share, "many")):
                if time.monotonic() > deadline:
                    raise RuntimeError(f"{self.name} shows nothing")
                time.sleep(0.02)
            yield share
        finally:
            quiet("fusermount3", "-u", point)
            os.rmdir(point)

    def write(self, size):
        size = min(size, self.write_limit or size)
        with self.folder() as share:
            begin = time.monotonic()
            quiet("dd", "if=/dev/zero", f"of={share}/written", "bs=1M", f"count={size}")
            elapsed = time.monotonic() - begin
        os.unlink(self.bench.data + "/written")
        return size / elapsed

    def read(self, size):
        with self.folder() as share:
            begin = time.monotonic()
            quiet("dd", f"if={share}/large", "of=/dev/null", "bs=1M")
            return size / (time.monotonic() - begin)

    def list(self, _):
        with self.folder() as share:
            begin = time.monotonic()
            quiet("ls", "-l", share + "/many")
            return time.monotonic() - begin

    def create_stat_delete(self, _):
        with self.folder() as share:
            names = [f"{share}/new/{number}" for number in range(FILES)]
            begin = time.monotonic()
            for name in names:
                with open(name, "wb", buffering=0) as file:
                    file.write(b"x" * 100)
            for name in names:
                os.stat(name)
            for name in names:
                os.unlink(name)
            return (time.monotonic() - begin) / FILES * 1000

    def read_small(self, _):
        with self.folder() as share:
            begin = time.monotonic()
            for number in range(FILES):
                with open(f"{share}/small/{number}", "rb", buffering=0) as file:
                    assert len(file.read(FILE_SIZE + 1)) == FILE_SIZE
            return (time.monotonic() - begin) / FILES * 1000

    write_limit = None


class MountSmbfs(Mounted):
    name = "mount_smbfs"

    def start(self, point):
        quiet(os.path.join(self.bench.build, "host/mount_smbfs/mount_smbfs"),
              f"//{USER}@{self.bench.server.address}/data", point, input=PASSWORD.encode() + b"\n")
        return point


class Rclone(Mounted):
    name = "rclone"

    def start(self, point):
        secret = subprocess.run(["rclone", "obscure", PASSWORD], check=True, capture_output=True,
                                text=True).stdout.strip()
        quiet("rclone", "mount", ":smb:data", point, "--smb-host", "127.0.0.1", "--smb-port",
              str(self.bench.server.port), "--smb-user", USER, "--smb-pass", secret, "--daemon",
              "--config", os.devnull)
        return point


class Smbnetfs(Mounted):
    name = "smbnetfs"
    write_limit = SLOW_WRITER_MIB

    def start(self, point):
        home = os.path.join(self.bench.base, "home")
        if not os.path.exists(home):
            os.makedirs(home + "/.smb")
            with open(home + "/.smb/smb.conf", "w") as file:
                file.write("[global]\nclient min protocol = SMB2\nname resolve order = host\n")
            with open(home + "/.smb/smbnetfs.conf", "w") as file:
                file.write(f'auth "{USER}" "{PASSWORD}"\n')
            os.chmod(home + "/.smb/smbnetfs.conf", 0o600)
        quiet("smbnetfs", point, "-o", f"config={home}/.smb/smbnetfs.conf",
              env={**os.environ, "HOME": home})
        return f"{point}/{self.bench.server.address}/data"


class Smbclient:
    """No mount: what it can do with files and listings of its own accord, in one session."""

    name = "smbclient"

    def __init__(self, bench):
        self.bench = bench

    def run(self, commands):
        begin = time.monotonic()
        quiet("smbclient", "-p", str(self.bench.server.port), "//127.0.0.1/data", "-U",
              f"{USER}%{PASSWORD}", cwd=self.bench.base, input="\n".join(commands).encode() + b"\n")
        return time.monotonic() - begin

    def write(self, size):
        elapsed = self.run([f"put {self.bench.source} written"])
        os.unlink(self.bench.data + "/written")
        return size / elapsed

    def read(self, size):
        return size / self.run(["get large /dev/null"])

    def list(self, _):
        return self.run(["ls many/*"])

    def create_stat_delete(self, _):
        return None

    def read_small(self, _):
        return self.run([f"get small/{n} /dev/null" for n in range(FILES)]) / FILES * 1000


ROWS = [
    # title, function, better, goal against the better of the other mounts
    ("sequential write, MiB/s", "write", max, 5),
    ("sequential read, MiB/s", "read", max, 5),
    (f"ls -l of {ENTRIES}, s", "list", min, 5),
    ("create, stat, delete, ms a file", "create_stat_delete", min, 2),
    ("read 16 KiB, ms a file", "read_small", min, 2),
]


class Bench:
    def __init__(self, arguments):
        self.build = arguments.build
        self.size = arguments.size
        self.base = tempfile.mkdtemp(prefix="harbrix-bench-", dir="/dev/shm")
        os.chmod(self.base, 0o755)
        self.data = os.path.join(self.base, "data")
        self.source = os.path.join(self.data, "large")
        self.server = SmbServer({"data": self.data}, {USER: PASSWORD}, folder=self.base)

    def prepare(self):
        for name in ("many", "small", "new"):
            os.makedirs(f"{self.data}/{name}")
        for number in range(ENTRIES):
            with open(f"{self.data}/many/entry {number:05}.txt", "wb") as file:
                file.write(b"x")
        for number in range(FILES):
            with open(f"{self.data}/small/{number}", "wb") as file:
                file.write(os.urandom(FILE_SIZE))
        quiet("dd", "if=/dev/urandom", f"of={self.source}", "bs=1M", f"count={self.size}")
        quiet("chmod", "-R", "a+rwX", self.data)
        self.server.start()

    def close(self):
        self.server.close()
        shutil.rmtree(self.base, ignore_errors=True)


def measure(bench, clients, rounds):
    names = [client.name for client in clients]
    print(f"{'':34}" + "".join(f"{name:>14}" for name in names) + "   against the mounts, smbclient")
    for title, function, better, goal in ROWS:
        figures = {}
        for client in clients:
            values = [getattr(client, function)(bench.size) for _ in range(rounds)]
            figures[client.name] = None if None in values else statistics.median(values)
        print(f"{title:34}" + "".join(
            f"{'-':>14}" if figures[name] is None else f"{figures[name]:14.2f}" for name in names)
            + "   " + ratios(figures, better, goal), flush=True)


def ratios(figures, better, goal):
    own = figures.get(MountSmbfs.name)
    others = [figures[name] for name in (Rclone.name, Smbnetfs.name) if figures.get(name)]
    if own is None or not others:
        return ""

    def times(other):
        return own / other if better is max else other / own

    text = f"{times(better(others)):.1f} times (goal {goal})"
    if figures.get(Smbclient.name):
        text += f", {times(figures[Smbclient.name]):.2f} times"
    return text


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", metavar="BUILD_FOLDER", type=os.path.abspath)
    parser.add_argument("--size", metavar="MIB", type=int, default=1024)
    parser.add_argument("--rounds", metavar="N", type=int, default=1)
    parser.add_argument("--only", metavar="NAME,...", help="these clients only")
    arguments = parser.parse_args()
    bench = Bench(arguments)
    wanted = arguments.only.split(",") if arguments.only else None
    clients = [kind(bench) for kind in (MountSmbfs, Rclone, Smbnetfs, Smbclient)
               if (wanted is None or kind.name in wanted)
               and (kind is MountSmbfs or shutil.which(kind.name))]
    try:
        bench.prepare()
        measure(bench, clients, arguments.rounds)
    finally:
        bench.close()
    return 0


if __name__ == "__main__":
    sys.exit(main())
