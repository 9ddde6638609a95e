"""A desktop for tests: a display that nobody sees, its mouse and keyboard, and what a screen reader is told.

The accessible objects are read over the bus of AT-SPI as they are at the moment, without the cache of a client
library in between. See https://gitlab.gnome.org/GNOME/at-spi2-core, xml/."""

import os
import shutil
import subprocess
import time

import dbus

BUS_LAUNCHER = "/usr/libexec/at-spi-bus-launcher"
STATE_SHOWING = 25  # org.a11y.atspi, ATSPI_STATE_SHOWING
STATE_FOCUSED = 12
PASSWORD_TEXT = 40  # ATSPI_ROLE_PASSWORD_TEXT
LABELLED_BY = 2  # ATSPI_RELATION_LABELLED_BY
SCREEN = dbus.UInt32(0)  # coordinates relative to the screen


def wait_for(condition, seconds=15, what="something"):
    """The first true answer of the condition."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise AssertionError("waited in vain for " + what)
        time.sleep(0.02)


class Display:
    """An Xvfb; the server picks a free number."""

    def __init__(self, size="1024x768"):
        reader, writer = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", size + "x24", "-nolisten", "tcp"],
            pass_fds=[writer], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL, start_new_session=True)
        os.close(writer)
        with os.fdopen(reader) as answer:
            self.name = ":" + answer.readline().strip()

    def close(self):
        self.process.terminate()
        self.process.wait()

    def _xdotool(self, *arguments, check=True):
        return subprocess.run(["xdotool", *map(str, arguments)], check=check, timeout=30, text=True,
                              env={**os.environ, "DISPLAY": self.name}, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL)

    def search(self, *arguments):
        """The ids of the windows that xdotool's search finds."""
        return self._xdotool("search", *arguments, check=False).stdout.split()

    def geometry(self, window):
        """x, y, width, height; none of a window that is gone."""
        answer = self._xdotool("getwindowgeometry", "--shell", window, check=False)
        shown = dict(line.split("=") for line in answer.stdout.split())
        return tuple(int(shown[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")) if shown else None

    def click(self, place, button=1):
        # Without --sync, which waits for 15 s when the pointer is there already. The requests of one client keep
        # their order.
        self._xdotool("mousemove", *place, "click", button)

    def key(self, *names):
        self._xdotool("key", "--delay", 20, *names)

    def type(self, text):
        # Not on the argument list, where a password would stand for all to see.
        subprocess.run(["xdotool", "type", "--delay", "15", "--file", "-"], input=text, text=True,
                       check=True, timeout=60, env={**os.environ, "DISPLAY": self.name})

    def screenshot(self, path):
        """Where ImageMagick is installed."""
        if shutil.which("import"):
            subprocess.run(["import", "-display", self.name, "-window", "root", path], check=True)


class Accessible:
    """One accessible object."""

    def __init__(self, bus, owner, path):
        self.bus, self.owner, self.path = bus, owner, path

    def _call(self, interface, method, signature="", *arguments):
        return self.bus.call_blocking(self.owner, self.path, "org.a11y.atspi." + interface, method,
                                      signature, arguments, timeout=5)

    @property
    def name(self):
        return str(self.bus.call_blocking(self.owner, self.path, "org.freedesktop.DBus.Properties", "Get",
                                          "ss", ("org.a11y.atspi.Accessible", "Name"), timeout=5))

    @property
    def role(self):
        # Qt's own name for it is that of any text field; screen readers go by the number.
        if self._call("Accessible", "GetRole") == PASSWORD_TEXT:
            return "password text"
        return str(self._call("Accessible", "GetRoleName"))

    @property
    def label(self):
        """The name of what labels it: the name of a picker is what is picked."""
        for kind, targets in self._call("Accessible", "GetRelationSet"):
            if kind == LABELLED_BY:
                return Accessible(self.bus, str(targets[0][0]), str(targets[0][1])).name
        return ""

    @property
    def showing(self):
        return self._has(STATE_SHOWING)

    @property
    def focused(self):
        return self._has(STATE_FOCUSED)

    def _has(self, state):
        return bool(int(self._call("Accessible", "GetState")[state // 32]) >> (state % 32) & 1)

    @property
    def center(self):
        return self.point(0.5)

    def point(self, down):
        """On its middle axis; `down` is the part of its height."""
        x, y, width, height = self._call("Component", "GetExtents", "u", SCREEN)
        return int(x + width // 2), int(y + height * down)

    @property
    def text(self):
        """The content of a text field, as it is told to a screen reader."""
        return str(self._call("Text", "GetText", "ii", dbus.Int32(0), dbus.Int32(-1)))

    def children(self):
        return [Accessible(self.bus, str(owner), str(path))
                for owner, path in self._call("Accessible", "GetChildren")]

    def tree(self):
        """Itself and all below it; what vanishes meanwhile is left out."""
        yield self
        try:
            for child in self.children():
                yield from child.tree()
        except dbus.DBusException:
            pass


class Accessibility:
    """The bus of AT-SPI on a display, and the applications on it."""

    def __init__(self, environment, display):
        session = dbus.bus.BusConnection(environment["DBUS_SESSION_BUS_ADDRESS"])
        self.process = subprocess.Popen(
            [BUS_LAUNCHER, "--launch-immediately", "--a11y=1"], env={**environment, "DISPLAY": display.name},
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            start_new_session=True)
        wait_for(lambda: session.name_has_owner("org.a11y.Bus"), what="the bus of AT-SPI")
        address = session.call_blocking("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", "", ())
        session.close()
        self.bus = dbus.bus.BusConnection(str(address))
        self.bus.start_service_by_name("org.a11y.atspi.Registry")

    def close(self):
        self.bus.close()
        self.process.terminate()
        self.process.wait()

    def objects(self):
        desktop = Accessible(self.bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
        return desktop.tree()

    def find(self, role, name):
        """The one that is to be seen, or none; a name ending in "*" is only the beginning."""
        for found in self.objects():
            try:
                if found.role == role and (found.name == name or name.endswith("*") and
                                           found.name.startswith(name[:-1])) and found.showing:
                    return found
            except dbus.DBusException:
                pass  # gone meanwhile
        return None

    def wait_for(self, role, name, seconds=15):
        return wait_for(lambda: self.find(role, name), seconds, f'the {role} "{name}"')
