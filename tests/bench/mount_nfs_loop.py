"""The yardstick for mount_nfs: a plain loop of pipelined READs or WRITEs over one NFSv4.1 session, no more."""

import os
import socket
import struct

BLOCK = 1 << 20
DEPTH = 8
ANONYMOUS = bytes(16)


def u32(*values):
    return struct.pack(">%dI" % len(values), *values)


def opaque(data):
    return u32(len(data)) + data + bytes(-len(data) % 4)


class Client:
    def __init__(self, port):
        self.socket = socket.create_connection(("127.0.0.1", port))
        self.socket.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.xid = 1
        answer = self.call(u32(42) + os.urandom(8) + opaque(b"bench %d" % os.getpid()) + u32(0, 0, 0), 1)
        client, sequence = struct.unpack(">QI", answer[:12])
        channel = u32(0, BLOCK + 4096, BLOCK + 4096, 8192, 16, 64, 0)
        answer = self.call(u32(43) + struct.pack(">QII", client, sequence, 0) + channel + channel
                           + u32(0x40000000, 1, 0), 1)
        self.session = answer[:16]
        self.sequences = [0] * 64
        self.call(self.sequence(0) + u32(58, 0), 2)

    def sequence(self, slot):
        self.sequences[slot] += 1
        return u32(53) + self.session + u32(self.sequences[slot], slot, 63, 0)

    def frame(self, operations, count, length):
        """The record up to the bulk data, `length` bytes of which follow."""
        self.xid += 1
        credentials = u32(0) + opaque(b"bench") + u32(0, 0, 0)
        body = u32(self.xid, 0, 2, 100003, 4, 1, 1) + opaque(credentials) + u32(0, 0) + u32(0, 1, count) + operations
        return u32(0x80000000 | len(body) + length) + body

    def exactly(self, length):
        data = bytearray(length)
        self.into(memoryview(data))
        return bytes(data)

    def into(self, view):
        while view:
            count = self.socket.recv_into(view)
            if not count:
                raise EOFError("the server closed the connection")
            view = view[count:]

    def call(self, operations, count):
        """Returns what follows the last operation's status (of the first operation, if there is one)."""
        self.socket.sendall(self.frame(operations, count, 0))
        length = struct.unpack(">I", self.exactly(4))[0] & 0x7FFFFFFF
        body = self.exactly(length)
        status = struct.unpack(">I", body[24:28])[0]
        if status:
            raise OSError("NFS status %d" % status)
        return body[24 + 12 + 8:]

    def look_up(self, *path):
        operations = self.sequence(0) + u32(24)
        for name in path:
            operations += u32(15) + opaque(name.encode())
        answer = self.call(operations + u32(10), len(path) + 3)
        # SEQUENCE's body is 36 bytes, every other result up to GETFH has its number and status only.
        start = 36 + 8 * (len(path) + 1) + 8
        length = struct.unpack(">I", answer[start:start + 4])[0]
        return answer[start + 4:start + 4 + length]

    def pipeline(self, total, request):
        """Keeps DEPTH requests on their way; `request(slot, offset)` sends one."""
        buffer = memoryview(bytearray(BLOCK + 8192))
        sent = done = 0
        free = list(range(DEPTH))
        slots = {}
        while done < total:
            while free and sent < total:
                slot = free.pop()
                request(slot, sent)
                slots[self.xid] = slot
                sent += BLOCK
            length = struct.unpack(">I", self.exactly(4))[0] & 0x7FFFFFFF
            self.into(buffer[:length])
            if struct.unpack(">I", buffer[24:28])[0]:
                raise OSError("NFS status %d" % struct.unpack(">I", buffer[24:28])[0])
            free.append(slots.pop(struct.unpack(">I", buffer[:4])[0]))
            done += BLOCK

    def read(self, handle, total):
        def request(slot, offset):
            self.socket.sendall(self.frame(self.sequence(slot) + u32(22) + opaque(handle) + u32(25) + ANONYMOUS
                                           + struct.pack(">QI", offset, BLOCK), 3, 0))
        self.pipeline(total, request)

    def write(self, handle, total):
        data = os.urandom(BLOCK)

        def request(slot, offset):
            head = self.frame(self.sequence(slot) + u32(22) + opaque(handle) + u32(38) + ANONYMOUS
                              + struct.pack(">QII", offset, 0, BLOCK), 3, BLOCK)
            self.socket.sendall(head)
            self.socket.sendall(data)
        self.pipeline(total, request)
        self.call(self.sequence(0) + u32(22) + opaque(handle) + u32(5) + struct.pack(">QI", 0, 0), 3)
