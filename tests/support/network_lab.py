"""Two hosts on one machine: a server and a client, each in a network namespace of its own, joined by a cable.

The server answers on SERVER, which both of the client's subnets lead to. Needs root. File systems, processes
and Unix sockets are shared with the machine; only the network is apart.
"""

import contextlib
import ctypes
import os
import subprocess

CLONE_NEWNET = 0x40000000
SERVER = "10.99.9.1"
HOME, AWAY = "10.99.1.2", "10.99.2.2"
_libc = ctypes.CDLL(None, use_errno=True)


def run(*command):
    subprocess.run(command, check=True, stdin=subprocess.DEVNULL, capture_output=True)


@contextlib.contextmanager
def inside(network):
    """What the caller's thread starts or connects meanwhile belongs to that host."""
    with open("/proc/thread-self/ns/net") as home, open("/run/netns/" + network) as other:
        if _libc.setns(other.fileno(), CLONE_NEWNET) != 0:
            raise OSError(ctypes.get_errno(), "setns")
        try:
            yield
        finally:
            _libc.setns(home.fileno(), CLONE_NEWNET)


class NetworkLab:
    def __init__(self):
        self.server = f"harbrix-s{os.getpid()}"
        self.client = f"harbrix-c{os.getpid()}"

    def build(self):
        for network in (self.server, self.client):
            run("ip", "netns", "add", network)
            self.ip(network, "link", "set", "lo", "up")
        run("ip", "link", "add", "cable", "netns", self.client, "type", "veth", "peer", "name", "cable",
            "netns", self.server)
        self.ip(self.server, "addr", "add", SERVER + "/32", "dev", "lo")
        for address in (HOME, AWAY):
            self.ip(self.server, "addr", "add", self._router(address) + "/24", "dev", "cable")
        self.ip(self.server, "link", "set", "cable", "up")
        self.ip(self.client, "link", "set", "cable", "up")
        self.move_to(HOME)

    def remove(self):
        for network in (self.client, self.server):
            subprocess.run(["ip", "netns", "del", network], capture_output=True, check=False)

    def ip(self, network, *arguments):
        run("ip", "-n", network, *arguments)

    @staticmethod
    def _router(address):
        return address.rsplit(".", 1)[0] + ".1"

    def move_to(self, address):
        """The client leaves its subnet for the one of that address."""
        self.address = address
        self.ip(self.client, "addr", "flush", "dev", "cable")
        self.ip(self.client, "addr", "add", address + "/24", "dev", "cable")
        self.ip(self.client, "route", "add", "default", "via", self._router(address))

    def unplug(self):
        self.ip(self.client, "link", "set", "cable", "down")

    def plug_in(self):
        """The address survived, the routes did not."""
        self.ip(self.client, "link", "set", "cable", "up")
        self.ip(self.client, "route", "add", "default", "via", self._router(self.address))

    def swallow(self):
        """From now on the server's answers get lost: nothing is refused, nothing arrives."""
        for address in (HOME, AWAY):
            self.ip(self.server, "route", "add", "blackhole", address + "/32")

    def deliver(self):
        for address in (HOME, AWAY):
            self.ip(self.server, "route", "del", "blackhole", address + "/32")
