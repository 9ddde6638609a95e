#!/usr/bin/python3
"""Prints how fast folders are listed, shown, prefetched and copied beside ls and cp, from the local disk and from a
share of a private smbd.

usage: files.py BUILD_FOLDER

The shared folder and the copies lie on /dev/shm, so that no disk decides. It judges nothing.
"""

import contextlib
import os
import shutil
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "support"))
from smb_server import SmbServer  # noqa: E402

USER, PASSWORD = "ann", "secret"
SMALL_FILES = ("10000", str(16 << 10))
LARGE_FILE = str(1 << 30)


@contextlib.contextmanager
def mounted_share(build, base):
    """The mount point and the folder behind it."""
    data, point = os.path.join(base, "data"), os.path.join(base, "mounted")
    for folder in (data, point):
        os.mkdir(folder)
    with SmbServer({"data": data}, {USER: PASSWORD}, folder=base) as server:
        subprocess.run([os.path.join(build, "host/mount_smbfs/mount_smbfs"),
                        f"//{USER}@{server.address}/data", point],
                       input=PASSWORD.encode() + b"\n", check=True, stdout=subprocess.DEVNULL)
        try:
            yield point, data
        finally:
            unmount(point)


def unmount(point):
    for _ in range(50):  # a copy that was just abandoned may hold a file for a moment
        if subprocess.run(["fusermount3", "-u", point]).returncode == 0:
            return
        time.sleep(0.1)


def main():
    if len(sys.argv) != 2 or sys.argv[1].startswith("-"):
        print(__doc__.strip())
        return 64
    build = os.path.abspath(sys.argv[1])
    base = tempfile.mkdtemp(prefix="harbrix-bench-", dir="/dev/shm")

    def files(title, *arguments):
        print(title, flush=True)
        local = os.path.join(base, "local")
        os.makedirs(local, exist_ok=True)
        subprocess.run([os.path.join(build, "tests/bench/files_bench"), *arguments], check=True,
                       env={**os.environ, "TMPDIR": local})

    try:
        files("local, listing", "listing", "10000", "100000")
        files("local, into the cache", "prefetch", *SMALL_FILES)
        files("local, copying", "transfer", LARGE_FILE)
        with mounted_share(build, base) as (point, data):
            copies = os.path.join(base, "copies")
            os.mkdir(copies)
            share = ["--share", point, "--behind", data, "--folder", copies, "--runs", "2"]
            files("share, listing", *share, "listing", "10000")
            folder = os.path.join(data, "shown")
            os.mkdir(folder)
            for number in range(10000):
                open(f"{folder}/IMG_{number} of the holidays.jpg", "wb").close()
            # It has no cache on purpose, and the log tells of each file.
            subprocess.run([os.path.join(build, "tests/bench/browser_bench"), "--of",
                            os.path.join(point, "shown")], check=True, stderr=subprocess.DEVNULL,
                           env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})
            files("share, into the cache", *share, "prefetch", *SMALL_FILES)
            files("share, downloading", *share, "transfer", LARGE_FILE)
            files("share, uploading", "--share", copies, "--folder", point, "--runs", "2",
                  "transfer", LARGE_FILE)
    finally:
        shutil.rmtree(base, ignore_errors=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
