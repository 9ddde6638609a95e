#!/usr/bin/python3
"""Prints how long the running program takes for many shares: one mount beside twenty at once, and from the
link's return to the last share mounted. Needs root for its network namespaces. usage: shares.py BUILD_FOLDER.
It judges nothing and never fails on a figure."""

import contextlib
import os
import shutil
import statistics
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "support"))
from harbrix_program import Harbrix, mounts_below, unmount_below  # noqa: E402
from network_lab import SERVER, NetworkLab, inside  # noqa: E402
from smb_server import SmbServer  # noqa: E402

SHARES = [f"share{number:02}" for number in range(20)]
PORT = 4466
ROUNDS = 5
TOLD_DELAY = 7.0  # two seconds of quiet, then five until the network counts as settled
STARTED = 8.0  # what the start itself sets off is over by then


def wait_for_mounts(harbrix, count, since):
    """Seconds from `since` until so many shares are mounted."""
    while len(mounts_below(harbrix.folder)) != count:
        if time.monotonic() - since > 60:
            raise RuntimeError(f"{len(mounts_below(harbrix.folder))} instead of {count} shares\n" + harbrix.log())
        time.sleep(0.002)
    return time.monotonic() - since


def command(harbrix, *words):
    """Runs harbrixctl and returns the seconds that it took until all that it asked for was done."""
    begun = time.monotonic()
    answer = harbrix.ctl(*words)
    if answer.returncode != 0:
        raise RuntimeError(answer.stderr + harbrix.log())
    return time.monotonic() - begun


@contextlib.contextmanager
def desktop(build):
    """A server with twenty shares on one host and the program, which knows them all, on another."""
    with contextlib.ExitStack() as ends:
        lab = NetworkLab()
        ends.callback(lab.remove)
        lab.build()
        folder = tempfile.mkdtemp(prefix="harbrix-bench-")
        ends.callback(shutil.rmtree, folder)
        server = SmbServer(dict.fromkeys(SHARES, folder), port=PORT, options={"bind interfaces only": "no"})
        ends.callback(server.close)
        with inside(lab.server):
            server.start()
        harbrix = Harbrix(build)
        ends.callback(harbrix.close)
        with inside(lab.client):
            harbrix.start()
        begun = time.monotonic()
        for share in SHARES:
            command(harbrix, "add", "--name", share, "--address", f"{SERVER}:{PORT}", "--share", share, "--auth",
                    "guest")
        time.sleep(max(0, begun + STARTED - time.monotonic()))
        yield lab, harbrix


def main():
    if len(sys.argv) != 2:
        print("usage: shares.py BUILD_FOLDER", file=sys.stderr)
        return 64
    if os.getuid() != 0:
        print("skipped: network namespaces need root")
        return 0
    with desktop(sys.argv[1]) as (lab, harbrix):
        command(harbrix, "unmount-all")
        one, all_of_them, links = [], [], []
        for _ in range(ROUNDS):
            one.append(command(harbrix, "mount", SHARES[0]))
            command(harbrix, "unmount", SHARES[0])
            all_of_them.append(command(harbrix, "mount-all"))
            command(harbrix, "unmount-all")
        for _ in range(ROUNDS):
            lab.unplug()
            unmount_below(harbrix.folder)
            time.sleep(STARTED)  # until the loss of the network has been dealt with
            begun = time.monotonic()
            lab.plug_in()
            links.append(wait_for_mounts(harbrix, len(SHARES), begun))
        single, together = statistics.median(one), statistics.median(all_of_them)
        print(f"one mount               {single * 1000:8.0f} ms")
        print(f"{len(SHARES)} mounts at once       {together * 1000:8.0f} ms  {together / single:.2f} times one (goal 2)")
        print(f"link up to all mounted  {statistics.median(links):8.2f} s   "
              f"{statistics.median(links) - TOLD_DELAY:+.2f} s beside the told {TOLD_DELAY} (goal +0.50), "
              f"worst {max(links):.2f} s")
    return 0


if __name__ == "__main__":
    sys.exit(main())
