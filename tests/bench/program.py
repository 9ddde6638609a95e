#!/usr/bin/python3
"""Prints what the running program weighs: time from start to ready, memory without a window, wakeups when
idle. usage: program.py BUILD_FOLDER. It judges nothing and never fails on a figure."""

import os
import statistics
import sys
import time

import dbus

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "support"))
from harbrix_program import Harbrix  # noqa: E402

STARTS = 15
SETTLE_SECONDS = 13  # the mount at launch comes after two, a worker thread goes after ten
IDLE_SECONDS = 20


def ready_after(harbrix, bus, **environment):
    """Seconds from starting the process to the first answer of the remote control."""
    begun = time.monotonic()
    harbrix.launch(**environment)
    while True:
        try:
            bus.call_blocking("com.harbrix.app", "/com/harbrix/RemoteControl",
                              "com.harbrix.RemoteControl1", "Status", "", ())
            return time.monotonic() - begun
        except dbus.DBusException:
            if harbrix.process.poll() is not None:
                raise RuntimeError(harbrix.log())
            time.sleep(0.001)


def pss_mib(process):
    with open(f"/proc/{process}/smaps_rollup") as rollup:
        kib = next(int(line.split()[1]) for line in rollup if line.startswith("Pss:"))
    return kib / 1024


def context_switches(process):
    """Voluntary ones of all threads: each is a wait that ended, that is, a wakeup."""
    total = 0
    for thread in os.listdir(f"/proc/{process}/task"):
        with open(f"/proc/{process}/task/{thread}/status") as status:
            total += next(int(line.split()[1]) for line in status
                          if line.startswith("voluntary_ctxt_switches"))
    return total


def measure(build, title, **environment):
    harbrix = Harbrix(build)
    try:
        harbrix.bus.start()
        bus = dbus.bus.BusConnection(harbrix.bus.address)
        starts = []
        for _ in range(STARTS):
            harbrix.kill()
            starts.append(ready_after(harbrix, bus, **environment))
        time.sleep(SETTLE_SECONDS)
        before = context_switches(harbrix.process.pid)
        time.sleep(IDLE_SECONDS)
        wakeups = context_switches(harbrix.process.pid) - before
        print(f"{title}:")
        print(f"  start to ready     {statistics.median(starts) * 1000:6.1f} ms median of {STARTS}, "
              f"{max(starts) * 1000:.1f} ms worst (goal 150)")
        print(f"  memory (PSS)       {pss_mib(harbrix.process.pid):6.1f} MiB (goal 25)")
        print(f"  wakeups when idle  {wakeups:6d} in {IDLE_SECONDS} s (goal 0)", flush=True)
    finally:
        harbrix.close()


def main():
    if len(sys.argv) != 2:
        print("usage: program.py BUILD_FOLDER", file=sys.stderr)
        return 64
    measure(sys.argv[1], "harbrix without a display")
    measure(sys.argv[1], "harbrix with a display, no window", QT_QPA_PLATFORM="offscreen")
    return 0


if __name__ == "__main__":
    sys.exit(main())
