"""What mount_nfs costs: figures and ratios against a plain loop and nfs-ls in the same run. Never fails on time.

usage: /usr/bin/python3 tests/bench/mount_nfs.py BUILD_FOLDER [--size MiB] [--rounds N] [--no-delay]
Needs root, as the server does.
"""

import argparse
import collections
import os
import shutil
import socket
import statistics
import subprocess
import sys
import tempfile
import threading
import time

HERE = os.path.dirname(os.path.abspath(__file__))
if len(sys.argv) > 1 and not sys.argv[1].startswith("-"):
    os.environ["HARBRIX_TOOLS"] = os.path.join(os.path.abspath(sys.argv[1]), "host")  # read on import
sys.path[:0] = [HERE, os.path.join(HERE, "..", "support"), os.path.join(HERE, "..", "e2e")]
import mount_nfs_loop  # noqa: E402
import nfs_server  # noqa: E402
import test_mount_nfs  # noqa: E402


class DelayProxy:
    """A link of a given round trip and rate between clients and the server, both ways alike."""

    def __init__(self, target, round_trip, bytes_per_second):
        self.target, self.delay, self.rate = target, round_trip / 2, bytes_per_second
        self.listener = socket.create_server(("127.0.0.1", nfs_server.free_port()))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            try:
                client = self.listener.accept()[0]
            except OSError:
                return
            server = socket.create_connection(("127.0.0.1", self.target))
            for end in (client, server):
                end.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            for source, sink in ((client, server), (server, client)):
                self._way(source, sink)

    def _way(self, source, sink):
        queue, filled = collections.deque(), threading.Condition()

        def take():
            free_at = 0.0
            try:
                while True:
                    data = source.recv(1 << 16)
                    now = time.monotonic()
                    # The line is busy with one piece after the other; the delay comes on top.
                    free_at = max(free_at, now) + len(data) / self.rate
                    if free_at - now > 0.02:
                        time.sleep(free_at - now - 0.01)
                    with filled:
                        queue.append((free_at + self.delay, data))
                        filled.notify()
                    if not data:
                        return
            except OSError:
                with filled:
                    queue.append((0, b""))
                    filled.notify()

        def give():
            while True:
                with filled:
                    while not queue:
                        filled.wait()
                    due, data = queue.popleft()
                left = due - time.monotonic()
                if left > 0:
                    time.sleep(left)
                if not data:
                    for end in (source, sink):
                        try:
                            end.shutdown(socket.SHUT_RDWR)
                        except OSError:
                            pass
                    return
                try:
                    sink.sendall(data)
                except OSError:
                    return
        for work in (take, give):
            threading.Thread(target=work, daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.listener.close()


def seconds(action, *arguments):
    start = time.perf_counter()
    action(*arguments)
    return time.perf_counter() - start


def drop_caches():
    with open("/proc/sys/vm/drop_caches", "w") as file:
        file.write("1\n")


def copy_in(path, size):
    block = os.urandom(1 << 20)
    with open(path, "wb", buffering=0) as file:
        for _ in range(size >> 20):
            file.write(block)


def copy_out(path):
    buffer = bytearray(1 << 20)
    with open(path, "rb", buffering=0) as file:
        while file.readinto(buffer):
            pass


class Bench:
    def __init__(self, options):
        self.size = options.size << 20
        self.rounds = options.rounds

    def median(self, action, before=lambda: None):
        results = []
        for _ in range(self.rounds):
            before()
            results.append(seconds(action))
        return statistics.median(results)

    def row(self, what, mine, other, unit, name, better="more"):
        ratio = mine / other if other else float("nan")
        print("%-34s %9.1f %-6s %9.1f %-22s %5.2f  (%s is better)" % (what, mine, unit, other, name, ratio, better))
        sys.stdout.flush()

    def sequential(self, server, port, what, line=None):
        """Reads and writes through the mount and through the plain loop, over the same connection port."""
        mib = self.size / (1 << 20)
        with test_mount_nfs.Mount(server, port=port) as mount:
            path = os.path.join(mount.path, "large")
            write = mib / self.median(lambda: copy_in(path, self.size),
                                      lambda: os.path.exists(path) and os.unlink(path))
            read = mib / self.median(lambda: copy_out(path), drop_caches)
            with open("/proc/%d/status" % test_mount_nfs.Faults.daemons(mount.path)[0]) as file:
                peak = next(int(text.split()[1]) / 1024 for text in file if text.startswith("VmHWM"))
        loop = mount_nfs_loop.Client(port)
        handle = loop.look_up("export", "data", "large")
        plain_read = mib / self.median(lambda: loop.read(handle, self.size))
        large = os.path.join(server.data, "large")
        # From nothing, as the mount has written it: giving a file its pages is half of the server's work.
        plain_write = mib / self.median(lambda: loop.write(handle, self.size), lambda: os.truncate(large, 0))
        loop.socket.close()
        os.unlink(large)
        self.row(what + " read", read, plain_read, "MiB/s", "plain loop")
        self.row(what + " write", write, plain_write, "MiB/s", "plain loop")
        print("%-34s %9.1f MiB" % (what + " most memory", peak))
        if line:
            for kind, rate in (("read", read), ("write", write)):
                self.row(what + " " + kind, rate, line, "MiB/s", "the line")

    def listing(self, server):
        for number in range(10000):
            open(os.path.join(server.data, "entry-%05d" % number), "w").close()

        def run(*command):
            def action():
                subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
            # Names and attributes are good for a second.
            return self.median(action, lambda: time.sleep(1.2)) * 1000
        url = "nfs://127.0.0.1/export/data?version=4&nfsport=%d" % server.port
        other = run("nfs-ls", url) if shutil.which("nfs-ls") else 0
        with test_mount_nfs.Mount(server) as mount:
            for what, command in (("names of 10,000 entries", ("ls", "-f")), ("ls -l of 10,000 entries", ("ls", "-l"))):
                self.row(what, run(*command, mount.path), other, "ms", "nfs-ls", "less")
            # What ls itself costs, without any server.
            self.row("ls -l of 10,000 entries", run("ls", "-l", mount.path), run("ls", "-l", server.data), "ms",
                     "the same natively", "less")
        for entry in os.listdir(server.data):
            os.unlink(os.path.join(server.data, entry))

    def small_files(self, server):
        count, content = 2000, os.urandom(16384)
        with test_mount_nfs.Mount(server) as mount:
            def each(action):
                def run():
                    for number in range(count):
                        action(os.path.join(mount.path, "small-%04d" % number))
                return seconds(run) / count * 1e6

            def create(path):
                with open(path, "wb", buffering=0) as file:
                    file.write(content)

            def fetch(path):
                with open(path, "rb", buffering=0) as file:
                    file.read()
            figures = [("write a 16 KiB file", each(create))]
            drop_caches()
            figures.append(("read a 16 KiB file", each(fetch)))
            time.sleep(1.2)
            figures.append(("stat", each(os.stat)))
            figures.append(("unlink", each(os.unlink)))
            with open(os.path.join(mount.path, "random"), "wb") as file:
                file.write(os.urandom(64 << 20))
            drop_caches()
            with open(os.path.join(mount.path, "random"), "rb", buffering=0) as file:
                offsets = [(number * 7919 % 16384) * 4096 for number in range(2000)]
                figures.append(("random 4 KiB", seconds(lambda: [os.pread(file.fileno(), 4096, at)
                                                                 for at in offsets]) / 2000 * 1e6))
        for what, microseconds in figures:
            print("%-34s %9.1f us" % (what, microseconds))
        sys.stdout.flush()

    def idle(self, server):
        with test_mount_nfs.Mount(server) as mount:
            daemon = test_mount_nfs.Faults.daemons(mount.path)[0]

            def switches():
                with open("/proc/%d/status" % daemon) as file:
                    return sum(int(line.split()[1]) for line in file if "ctxt_switches" in line)
            time.sleep(2)
            before = switches()
            time.sleep(20)
            print("idle for 20 s: %d wakeups (lease 60 s)" % (switches() - before))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build", metavar="BUILD_FOLDER")
    parser.add_argument("--size", type=int, default=1024, help="MiB of the sequential file")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--no-delay", action="store_true")
    options = parser.parse_args()
    reason = test_mount_nfs.skip_reason()
    if reason:
        print("skipped: " + reason)
        return 77
    bench = Bench(options)
    print("load %.1f on %d processors" % (os.getloadavg()[0], os.cpu_count()))
    with nfs_server.NfsServer() as server:
        bench.sequential(server, server.port, "%d MiB, loopback:" % options.size)
    with nfs_server.NfsServer() as server:
        bench.listing(server)
        bench.small_files(server)
        bench.idle(server)
    if not options.no_delay:
        for milliseconds in (1, 5, 20):
            with nfs_server.NfsServer() as server, \
                    DelayProxy(server.port, milliseconds / 1000, 112 << 20) as link:
                bench.sequential(server, link.port, "%d ms, 112 MiB/s:" % milliseconds, 112)
    return 0


if __name__ == "__main__":
    sys.exit(main())
