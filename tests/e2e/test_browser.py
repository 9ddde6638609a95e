#!/usr/bin/python3
"""The browser window over a share of a real smbd: browse, preview, drop, download, share gone.

The first argument is the program that drives the window. HARBRIX_TOOLS names the folder of the built mount
tools. Exits with 77 where a FUSE mount is impossible.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "support"))
from desktop import Display  # noqa: E402
from smb_server import SmbServer  # noqa: E402

SKIP = 77
PASSWORD = "secret 1"
# The smallest picture there is, and the smallest document.
PICTURE = bytes.fromhex(
    "89504e470d0a1a0a0000000d4948445200000001000000010802000000907753de0000000c49444154789c63f8cfc0"
    "000003010100c9fe92ef0000000049454e44ae426082")
DOCUMENT = b"""%PDF-1.4
1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj
2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj
3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 200 200]>>endobj
trailer<</Root 1 0 R>>
"""


def tool(name):
    folder = os.environ.get("HARBRIX_TOOLS", "/usr/sbin")
    for path in (os.path.join(folder, name, name), os.path.join(folder, name)):
        if os.path.isfile(path):
            return path
    raise FileNotFoundError(f"{name} below {folder}")


def write(*path, data):
    os.makedirs(os.path.join(*path[:-1]), exist_ok=True)
    with open(os.path.join(*path), "wb") as file:
        file.write(data)


def read(*path):
    with open(os.path.join(*path), "rb") as file:
        return file.read()


class Window:
    """The program that drives the window, one command at a time."""

    def __init__(self, program, mount_point, home, display):
        environment = {"HOME": home, "PATH": os.defpath, "LC_ALL": "C.UTF-8", "XDG_RUNTIME_DIR": home,
                       "DISPLAY": display, "QT_QPA_PLATFORM": "xcb",
                       "DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}
        for name in ("ASAN_OPTIONS", "LSAN_OPTIONS"):
            if name in os.environ:
                environment[name] = os.environ[name]
        self.process = subprocess.Popen([program, mount_point], env=environment, text=True,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL)

    def __call__(self, *words):
        self.process.stdin.write(" ".join(words) + "\n")
        self.process.stdin.flush()
        verdict, _, told = self.process.stdout.readline().rstrip("\n").partition(" ")
        if verdict != "ok":
            raise AssertionError(f"{words}: {verdict or 'the program has ended'} {told}")
        return told

    def close(self):
        self.process.stdin.close()
        try:
            self.process.wait(20)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.process.stdout.close()


class Browser(unittest.TestCase):
    def setUp(self):
        self.base = tempfile.mkdtemp(prefix="harbrix-browser-")
        self.addCleanup(shutil.rmtree, self.base, ignore_errors=True)
        self.data, self.point, self.local = (os.path.join(self.base, name)
                                             for name in ("data", "mnt", "local"))
        for folder in (self.data, self.point, self.local):
            os.mkdir(folder)
        write(self.data, "Films", "clip.mp4", data=b"film" * 1000)
        write(self.data, "a picture.png", data=PICTURE)
        write(self.data, "document.pdf", data=DOCUMENT)
        write(self.data, "note 9.txt", data="Grüße".encode())
        write(self.data, "note 10.txt", data=b"old ten")
        self.server = SmbServer({"data": self.data}, {"ann": PASSWORD}, folder=self.base)
        self.addCleanup(self.server.close)
        self.server.start()
        self.mount()
        self.addCleanup(self.unmount)
        display = Display()
        self.addCleanup(display.close)
        self.window = Window(PROGRAM, self.point, self.base, display.name)
        self.addCleanup(self.window.close)

    def mount(self):
        result = subprocess.run([tool("mount_smbfs"), f"//ann@{self.server.address}/data", self.point],
                                input=PASSWORD + "\n", capture_output=True, text=True, timeout=30)
        self.assertEqual(result.returncode, 0, result.stderr)

    def unmount(self):
        if os.path.ismount(self.point):
            subprocess.run(["fusermount3", "-uz", self.point], check=True)

    def test_a_day_with_a_share(self):
        window = self.window
        top = "Films|a picture.png|document.pdf|note 9.txt|note 10.txt"
        window("list", top)
        window("open", "Films")
        window("list", "clip.mp4")
        window("cached", "5")
        window("open", "clip.mp4")
        window("preview", "previewCard")
        self.back_to(top)

        for name, page in (("a picture.png", "previewPicture"), ("note 9.txt", "previewText"),
                           ("document.pdf", "previewDocument")):
            window("open", name)
            window("preview", page)

        self.drop_three_of_which_two_clash(top)

        target = os.path.join(self.local, "Downloads")
        window("list", "Films|a picture.png|document.pdf|fresh.txt|note 9.txt|note 10 (1).txt|note 10.txt")
        window("download", "document.pdf", target)
        self.assertTrue(window("transfers", "3").endswith("document.pdf completed"))
        self.assertEqual(read(target, "document.pdf"), DOCUMENT)

        window("cached", "7")
        self.unmount()
        os.rmdir(self.point)
        window("offline")
        window("list", "a picture.png|document.pdf|fresh.txt|note 9.txt|note 10 (1).txt|note 10.txt")
        window("open", "note 9.txt")
        window("preview", "previewText")

    def back_to(self, names):
        """The window is at the top again after its folder has gone one up."""
        self.window("up")
        self.window("list", names)

    def drop_three_of_which_two_clash(self, names):
        for name in ("note 9.txt", "note 10.txt", "fresh.txt"):
            write(self.local, name, data=b"new " + name.encode())
        self.window("drop", "|".join(os.path.join(self.local, name)
                                     for name in ("note 9.txt", "note 10.txt", "fresh.txt")))
        self.assertEqual(self.window("conflict"), '"note 10.txt" already exists in this location.')
        self.assertEqual(self.window("transfers", "1"), "fresh.txt completed")
        self.window("resolve", "rename")
        self.assertEqual(self.window("transfers", "2"), "fresh.txt completed|note 10.txt completed")
        self.assertEqual(read(self.data, "fresh.txt"), b"new fresh.txt")
        self.assertEqual(read(self.data, "note 10.txt"), b"new note 10.txt")
        self.assertEqual(read(self.data, "note 10 (1).txt"), b"old ten")
        self.assertEqual(read(self.data, "note 9.txt"), "Grüße".encode())

    def test_a_server_that_answers_no_more_does_not_block_the_window(self):
        self.window("list", "Films|a picture.png|document.pdf|note 9.txt|note 10.txt")
        self.server.pause()
        self.addCleanup(self.server.resume)
        # Two rounds of the timer later the window still draws itself and takes clicks at once.
        self.assertLess(float(self.window("stall", "7")), 1)


if __name__ == "__main__":
    if not os.access("/dev/fuse", os.R_OK | os.W_OK) or not SmbServer.PROGRAM or not shutil.which("Xvfb"):
        print("skipped: needs /dev/fuse, smbd and Xvfb")
        sys.exit(SKIP)
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main(verbosity=2)
