#!/usr/bin/python3
"""The windows of the running program as a user meets them: the real program on a display, a real smbd behind
it, the mouse and the keyboard in front, and the names that a screen reader is told. Needs Xvfb, xdotool and
at-spi2-core. SCREENSHOTS names a folder for pictures of the steps."""

import os
import shutil
import sys
import tempfile
import time
import unittest

import dbus

SUPPORT = os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "support")
sys.path.insert(0, SUPPORT)
from desktop import BUS_LAUNCHER, Accessibility, Display, wait_for  # noqa: E402
from harbrix_program import Harbrix, processes_naming  # noqa: E402
from smb_server import SmbServer  # noqa: E402

BUILD = os.environ.get("HARBRIX_BUILD", "build/release")
USER, PASSWORD = "ann", "p@ss-7f3a91"
SKIPPED = 77
LAUNCH_MOUNT_SECONDS = 2
RIGHT = 3  # button of the mouse
# The desktop's opener: notes what it is told to open.
OPENER = '#!/bin/sh\nprintf "%s\\n" "$1" >> "$HARBRIX_TEST_OPENED"\n'


def why_skipped():
    if not os.access(os.path.join(BUILD, "src", "app", "harbrix"), os.X_OK):
        return f"no program in {BUILD}"
    for tool in ("/usr/sbin/mount_smbfs", "/usr/sbin/diskutil", "/usr/bin/expect", BUS_LAUNCHER):
        if not os.access(tool, os.X_OK):
            return tool + " is not installed"
    for tool in ("Xvfb", "xdotool", "smbd", "smbpasswd", "fusermount3", "dbus-daemon"):
        if not shutil.which(tool, path=os.defpath + ":/usr/sbin:/sbin"):
            return tool + " is not installed"
    if not os.access("/dev/fuse", os.R_OK | os.W_OK):
        return "/dev/fuse is not usable"
    return None


class WindowTest(unittest.TestCase):
    def setUp(self):
        self.addCleanup(self.ends_clean)
        self.display = Display()
        self.addCleanup(self.display.close)
        self.harbrix = Harbrix(BUILD)
        self.addCleanup(self.harbrix.close)
        self.harbrix.bus.start()
        self.accessibility = Accessibility(self.harbrix.environment, self.display)
        self.addCleanup(self.accessibility.close)

    def ends_clean(self):
        self.assertEqual(processes_naming(self.harbrix.folder), [], "a process was left behind")

    def start(self):
        tools = os.path.join(self.harbrix.folder, "tools")
        self.opened_path = os.path.join(self.harbrix.folder, "opened")
        os.mkdir(tools)
        opener = os.path.join(tools, "xdg-open")
        with open(opener, "w") as script:
            script.write(OPENER)
        os.chmod(opener, 0o755)
        self.harbrix.start(DISPLAY=self.display.name, QT_QPA_PLATFORM="xcb",
                           PATH=tools + ":" + os.environ["PATH"], HARBRIX_TEST_OPENED=self.opened_path)
        self.see("push button", "添加 NAS")

    def pass_launch_mount(self):
        """The mount at launch would take an empty record, with its button disabled meanwhile, fail, and come back
        to it later. Nothing tells that it is over when there is nothing to mount."""
        time.sleep(LAUNCH_MOUNT_SECONDS + 1)

    def see(self, role, name, seconds=15):
        return self.accessibility.wait_for(role, name, seconds)

    def click(self, name, role="push button"):
        self.display.click(self.see(role, name).center)

    def opened(self):
        if not os.path.exists(self.opened_path):
            return []
        with open(self.opened_path) as notes:
            return notes.read().split()

    def picture(self, name):
        if "SCREENSHOTS" in os.environ:
            self.display.screenshot(os.path.join(os.environ["SCREENSHOTS"], name + ".png"))


class Share(WindowTest):
    def setUp(self):
        super().setUp()
        self.samples = tempfile.mkdtemp(prefix="harbrix-window-")
        self.addCleanup(shutil.rmtree, self.samples)
        with open(os.path.join(self.samples, "Übung.txt"), "w") as file:
            file.write("hello")
        self.server = SmbServer({"data": self.samples}, {USER: PASSWORD})
        self.addCleanup(self.server.close)
        self.server.start()
        self.host, self.port = self.server.address.split(":")

    def state(self):
        return self.harbrix.status("Films")["state"]

    def fill_in(self):
        """With the keyboard alone, from field to field."""
        wait_for(lambda: self.see("text", "名称").focused, what="the focus in the first field")
        self.display.type("Films")
        self.display.key("Tab", "Tab")
        self.display.type(self.host)
        self.display.key("Tab")
        self.display.type("data")
        self.display.key("Tab", "Tab")
        self.display.type(USER)
        self.display.key("Tab")
        self.display.type(PASSWORD)
        for name, typed in (("名称", "Films"), ("地址", self.host), ("共享路径", "data"),
                            ("用户名", USER)):
            wait_for(lambda: self.see("text", name).text == typed, what=f"{typed} in {name}")
        self.assertNotIn(PASSWORD, self.see("password text", "密码").text, "a screen reader speaks it")

    def test_from_the_empty_list_to_an_open_folder(self):
        self.start()
        self.see("label", "暂无 NAS 配置")
        self.picture("1-empty")
        self.pass_launch_mount()
        self.click("添加 NAS")
        self.fill_in()
        self.picture("2-filled-in")
        self.click("测试连接")
        self.see("label", "连接成功*")
        self.picture("3-tested")

        # The port of this server is not the usual one; what tests a connection asks the host alone.
        self.click("地址", "text")
        self.display.key("End")
        self.display.type(":" + self.port)
        self.display.key("ctrl+s")
        self.see("push button", "卸载", 30)
        self.assertEqual(self.state(), "mounted", self.harbrix.log())
        self.picture("4-mounted")
        volume = self.harbrix.volume("Films")
        self.click("文件管理器")
        wait_for(self.opened, what="the opened folder")
        self.assertEqual(self.opened(), ["file://" + volume + "/"])
        self.assertEqual(os.listdir(volume), ["Übung.txt"])

        self.click("关闭")
        self.see("label", "已挂载的文件夹")
        self.picture("5-folders")
        self.click("在文件管理器中打开")
        wait_for(lambda: len(self.opened()) == 2, what="the folder opened from its card")

        # The middle of the row is the mount point, which opens instead.
        self.display.click(self.see("list item", "Films*").point(0.2))
        self.click("卸载")
        self.see("push button", "挂载", 30)
        self.assertFalse(os.path.exists(volume), "the mount point stays")
        self.display.click(self.see("list item", "Films*").point(0.2), RIGHT)
        # Qt tells a screen reader of a menu as it is walked through, not in the tree of objects.
        self.picture("6-context-menu")
        self.display.key("Down", "Return")
        self.see("label", "暂无 NAS 配置")
        self.assertEqual(self.harbrix.status()["shares"], [])
        self.assertIn("Deleted NAS config: Films", self.harbrix.log())
        self.assertNotIn(PASSWORD, self.harbrix.log())


class ScreenReader(WindowTest):
    # What the form of a new share tells, by the roles of the controls.
    FORM = {
        "push button": ["关于 Harbrix", "打开设置", "添加 NAS", "当前网络", "全部网络", "当前IP", "测试连接", "挂载",
                        "关闭", "保存"],
        "text": ["名称", "地址", "共享路径", "用户名", "自定义挂载点", "IP 范围（CIDR）"],
        "password text": ["密码"],
        "check box": ["只读挂载", "启用自动挂载"],
        "combo box": ["协议", "认证方式", "SMB 版本", "绑定策略"],
        "list": ["NAS 列表"],
        "panel": ["基本信息", "认证", "挂载选项", "网络绑定"],
    }
    ABOUT = {"push button": ["官网", "反馈", "文档"], "label": ["Harbrix", "Version *"]}

    def told(self, roles, label):
        """The names of all that can be seen, by role; of a picker the one of its label."""
        told = {role: [] for role in roles}
        for found in self.accessibility.objects():
            if found.role in told and found.showing:
                told[found.role].append(found.label if found.role == label else found.name)
        return told

    def test_every_control_of_the_form_has_its_name_and_role(self):
        self.start()
        self.pass_launch_mount()
        self.click("添加 NAS")
        self.see("text", "名称")
        told = self.told(self.FORM, "combo box")
        for role, names in self.FORM.items():
            # The lists of the pickers are closed, and what they hold is not asked for here.
            self.assertEqual([name for name in told[role] if name], names, role)

    def test_the_about_window_opens_with_its_names_and_its_links_lead_to_the_browser(self):
        self.start()
        self.click("关于 Harbrix")
        self.see("dialog", "关于 Harbrix")
        for role, names in self.ABOUT.items():
            for name in names:
                self.see(role, name)
        self.click("官网")
        wait_for(self.opened, what="the home page")
        self.assertTrue(self.opened()[0].startswith("https://"), self.opened())


class Keyboard(WindowTest):
    def focus(self, elsewhere=None):
        """The name of what has the focus, once that is another."""
        def focused():
            for found in self.accessibility.objects():
                try:
                    if found.focused and found.role not in ("frame", "list item"):
                        name = found.label if found.role == "combo box" else found.name
                        return name if name != elsewhere else None
                except dbus.DBusException:
                    pass  # gone meanwhile
            return None
        return wait_for(focused, what="the focus elsewhere than " + str(elsewhere))

    def test_accelerators_and_focus_reach_everything(self):
        self.start()
        self.pass_launch_mount()
        self.display.key("ctrl+n")
        first = self.see("text", "名称")
        wait_for(lambda: first.focused, what="the focus in the first field")
        # Round the window: no control is left out, none comes twice.
        seen = []
        name = self.focus()
        while name not in seen:
            seen.append(name)
            self.display.key("Tab")
            name = self.focus(elsewhere=name)
        self.assertEqual(seen, [
            "名称", "协议", "地址", "共享路径", "认证方式", "用户名", "密码", "SMB 版本", "只读挂载",
            "启用自动挂载", "自定义挂载点", "绑定策略", "IP 范围（CIDR）", "当前网络", "全部网络", "当前IP",
            "测试连接", "挂载", "关闭", "保存", "关于 Harbrix", "打开设置", "添加 NAS",
            "NAS 列表"])
        self.display.key("ctrl+w")
        wait_for(lambda: not self.accessibility.find("frame", "Harbrix"), what="the closing of the window")
        self.assertEqual(self.harbrix.ctl("list").returncode, 0)
        # Where there is no tray, starting it again is the way back in, and this is the way out.
        self.harbrix.launch(DISPLAY=self.display.name, QT_QPA_PLATFORM="xcb")
        self.see("frame", "Harbrix")
        self.display.key("ctrl+q")
        self.assertEqual(self.harbrix.processes[0].wait(15), 0)


if __name__ == "__main__":
    reason = why_skipped()
    if reason:
        print("skipped:", reason)
        sys.exit(SKIPPED)
    unittest.main()
