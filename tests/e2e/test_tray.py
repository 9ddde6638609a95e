#!/usr/bin/python3
"""The status item of the running program, as a desktop sees it: a place for it that comes late, that restarts
and that never comes, and the menu over com.canonical.dbusmenu. Needs Xvfb."""

import glob
import json
import os
import shutil
import subprocess
import sys
import time
import unittest

import dbus

SUPPORT = os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "support")
sys.path.insert(0, SUPPORT)
from desktop import Display, wait_for  # noqa: E402
from harbrix_program import Harbrix  # noqa: E402
from smb_server import SmbServer  # noqa: E402

BUILD = os.environ.get("HARBRIX_BUILD", "build/release")
WATCHER = "org.kde.StatusNotifierWatcher"
SKIPPED = 77


def why_unavailable():
    if not shutil.which("Xvfb"):
        return "Xvfb is missing"
    if not os.access(Harbrix(BUILD).program, os.X_OK):
        return f"no program in {BUILD}"
    return None


class TrayTest(unittest.TestCase):
    """A bus and a display of its own, and what a host of the tray sees of the program."""

    def setUp(self):
        self.display = Display()
        self.addCleanup(self.display.close)
        self.harbrix = Harbrix(BUILD)
        self.addCleanup(self.harbrix.close)
        self.harbrix.bus.start()
        self.bus = dbus.bus.BusConnection(self.harbrix.bus.address)
        self.addCleanup(self.bus.close)

    def start_program(self):
        self.harbrix.start(DISPLAY=self.display.name, QT_QPA_PLATFORM="xcb")

    def start_watcher(self, *arguments):
        process = subprocess.Popen(
            ["/usr/bin/python3", os.path.join(SUPPORT, "status_notifier_watcher.py"), *arguments],
            env=self.harbrix.environment, stdin=subprocess.DEVNULL, start_new_session=True)
        self.addCleanup(self.end, process)
        wait_for(lambda: self.bus.name_has_owner(WATCHER), what="the watcher")
        return process

    @staticmethod
    def end(process):
        process.kill()
        process.wait()

    def items(self):
        watcher = self.bus.get_object(WATCHER, "/StatusNotifierWatcher", introspect=False)
        return watcher.Get(WATCHER, "RegisteredStatusNotifierItems",
                           dbus_interface="org.freedesktop.DBus.Properties")

    def wait_for_item(self):
        return wait_for(self.items, what="the status item")[-1]

    def menu(self, item):
        properties = self.bus.get_object(item, "/StatusNotifierItem", introspect=False)
        path = properties.Get("org.kde.StatusNotifierItem", "Menu",
                              dbus_interface="org.freedesktop.DBus.Properties")
        menu = self.bus.get_object(item, path, introspect=False)
        return dbus.Interface(menu, "com.canonical.dbusmenu")

    def labels(self, menu):
        """Label to id, top to bottom."""
        _, (_, _, children) = menu.GetLayout(0, -1, dbus.Array([], signature="s"))
        return {str(child[1].get("label", "-")): child[0] for child in children}

    def click(self, menu, label):
        menu.Event(self.labels(menu)[label], "clicked", dbus.Int32(0, variant_level=1), dbus.UInt32(0))


class WatcherTest(TrayTest):
    """A tray that is played, with the host in it coming and going as the test wants."""

    def test_menu_follows_the_records_and_its_commands_work(self):
        self.start_watcher("host")
        self.start_program()
        menu = self.menu(self.wait_for_item())
        self.assertIn("暂无 NAS 配置", self.labels(menu))
        added = self.harbrix.ctl("add", "--name", "my_nas & co", "--address", "192.0.2.1",
                                 "--share", "/x", "--auth", "guest", "--disabled")
        self.assertEqual(added.returncode, 0, added.stderr)
        # An underscore counts twice, and the first one of the label is the access key's.
        wait_for(lambda: any("my__nas & co" in label for label in self.labels(menu)))
        self.click(menu, "退出 Harbrix")
        self.assertEqual(self.harbrix.process.wait(15), 0)

    @unittest.skipUnless(SmbServer.PROGRAM and os.access("/dev/fuse", os.W_OK), "needs smbd and /dev/fuse")
    def test_a_mounted_share_is_browsed_from_the_menu(self):
        share = os.path.join(self.harbrix.folder, "share")
        os.mkdir(share)
        with open(os.path.join(share, "film.txt"), "w") as file:
            file.write("a film")
        server = SmbServer({"films": share}, {"ann": "secret"})
        self.addCleanup(server.close)
        server.start()
        self.start_watcher("host")
        self.start_program()
        menu = self.menu(self.wait_for_item())
        added = self.harbrix.ctl("add", "--name", "Films", "--address", server.address, "--share", "films",
                                 "--user", "ann", "--password-stdin", "--disabled", password="secret")
        self.assertEqual(added.returncode, 0, added.stderr)
        self.addCleanup(self.harbrix.ctl, "unmount", "Films")
        mounted = self.harbrix.ctl("mount", "Films")
        self.assertEqual(mounted.returncode, 0, mounted.stderr)
        label = "  浏览文件..."
        wait_for(lambda: label in self.labels(menu))
        self.click(menu, label)
        # The window lists the share, and what it lists is copied into the cache.
        cache = os.path.join(self.harbrix.environment["XDG_CACHE_HOME"], "Harbrix", "FileCache")
        wait_for(lambda: glob.glob(os.path.join(cache, "*", "film.txt")))
        wait_for(lambda: "film.txt" in self.read_index(cache))

    @staticmethod
    def read_index(cache):
        try:
            with open(os.path.join(cache, "cache-index.json")) as file:
                return [entry["relativePath"] for entry in json.load(file)]
        except FileNotFoundError:
            return []

    def test_a_place_that_comes_late_gets_the_item(self):
        self.start_program()
        self.start_watcher()
        time.sleep(0.3)  # nothing is to happen: no event tells of that
        self.assertEqual(list(self.items()), [])
        watcher = self.bus.get_object(WATCHER, "/StatusNotifierWatcher", introspect=False)
        watcher.RegisterStatusNotifierHost("host", dbus_interface=WATCHER)
        self.assertIn("关于 Harbrix", self.labels(self.menu(self.wait_for_item())))

    def test_a_place_that_restarts_gets_the_item_again(self):
        watcher = self.start_watcher("host")
        self.start_program()
        self.wait_for_item()
        self.end(watcher)
        wait_for(lambda: not self.bus.name_has_owner(WATCHER))
        self.start_watcher("host")
        menu = self.menu(self.wait_for_item())
        self.click(menu, "关于 Harbrix")
        self.assertEqual(self.harbrix.ctl("list").returncode, 0)


PANEL = "/usr/bin/xfce4-panel"
PANEL_SETTINGS = "/usr/lib/x86_64-linux-gnu/xfce4/xfconf/xfconfd"
PANEL_CONFIG = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=10;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="32"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
"""
LEFT, RIGHT = 1, 3  # buttons of the mouse
ENTRY_HEIGHT = 32  # roughly, with the margin of the menu
ICON = 16, 768 - 16  # the first place of that panel
TRAY = "wrapper-2.0"  # the window of a plugin, at the panel's place at the bottom of the screen


@unittest.skipUnless(os.access(PANEL, os.X_OK) and os.access(PANEL_SETTINGS, os.X_OK) and
                     shutil.which("xdotool"), "xfce4-panel or xdotool is not installed")
class PanelTest(TrayTest):
    """The panel of Xfce: the tray of a real desktop."""

    def setUp(self):
        super().setUp()
        folder = os.path.join(self.harbrix.environment["XDG_CONFIG_HOME"], "xfce4", "xfconf",
                              "xfce-perchannel-xml")
        os.makedirs(folder)
        with open(os.path.join(folder, "xfce4-panel.xml"), "w") as file:
            file.write(PANEL_CONFIG)
        self.run_beside(PANEL_SETTINGS)
        wait_for(lambda: self.bus.name_has_owner("org.xfce.Xfconf"), what="the settings of the panel")

    def run_beside(self, *command):
        process = subprocess.Popen(
            command, env={**self.harbrix.environment, "DISPLAY": self.display.name},
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            start_new_session=True)
        self.addCleanup(self.end, process)
        return process

    def start_panel(self):
        panel = self.run_beside(PANEL, "--disable-wm-check")
        wait_for(lambda: self.bus.name_has_owner(WATCHER), 30, "the tray of the panel")
        return panel

    def picture(self, name):
        if "SCREENSHOTS" in os.environ:
            time.sleep(1)
            self.display.screenshot(os.path.join(os.environ["SCREENSHOTS"], name + ".png"))

    def quit_by_the_menu(self, button, picture):
        """It is the last entry."""
        wait_for(self.has_icon, what="the icon in the panel")
        x, y, width, height = wait_for(lambda: self.open_menu(button), what="the menu on the screen")
        self.picture(picture)
        self.display.click((x + width // 2, y + height - ENTRY_HEIGHT // 2))
        self.assertEqual(self.harbrix.process.wait(15), 0)

    def has_icon(self):
        """Without one the tray in the panel is a line, and a click there is for the panel."""
        places = filter(None, map(self.display.geometry, self.display.search("--name", TRAY)))
        return any(x >= 0 and y > ENTRY_HEIGHT and width > 1 for x, y, width, _ in places)

    def open_menu(self, button):
        """A click on the icon, which goes nowhere while the panel is busy with it."""
        before = self.windows()
        self.display.click(ICON, button)
        try:
            return wait_for(lambda: self.menu_among(self.windows() - before), 2)
        except AssertionError:
            return None

    def menu_among(self, windows):
        """The place of the one of a menu's size, once it is where it belongs: toolkits have others as well."""
        for window in windows:
            place = self.display.geometry(window)
            if place and place[0] >= 0 and place[1] >= 0 and place[3] > 3 * ENTRY_HEIGHT:
                return place
        return None

    def windows(self):
        """The windows that can be seen."""
        return set(self.display.search("--onlyvisible", "--name", ".*"))

    def test_its_icon_and_its_menu_work_in_a_panel_that_is_there(self):
        self.start_panel()
        self.start_program()
        self.wait_for_item()
        added = self.harbrix.ctl("add", "--name", "my_nas & co", "--address", "192.0.2.1",
                                 "--share", "/x", "--auth", "guest", "--disabled")
        self.assertEqual(added.returncode, 0, added.stderr)
        self.quit_by_the_menu(RIGHT, "panel-menu-of-host")

    def test_a_panel_that_comes_late_and_restarts_has_the_icon(self):
        self.start_program()
        panel = self.start_panel()
        self.wait_for_item()
        self.end(panel)
        wait_for(lambda: not self.bus.name_has_owner(WATCHER), what="the end of the tray")
        self.start_panel()
        self.wait_for_item()
        self.quit_by_the_menu(LEFT, "panel-menu-of-program")


if __name__ == "__main__":
    reason = why_unavailable()
    if reason:
        print("skipped:", reason)
        sys.exit(SKIPPED)
    unittest.main()
