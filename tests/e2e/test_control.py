"""The commands of harbrixctl that are about the running program: its settings, its log, the list of its shares as a
whole. HARBRIX_BUILD names the folder with the programs."""

import json
import os
import pty
import stat
import subprocess
import sys
import unittest
from select import select

sys.path.insert(0, os.path.join(os.path.dirname(os.path.realpath(__file__)), "..", "support"))
from harbrix_program import Harbrix, processes_naming  # noqa: E402
from machine import why_missing, why_no_program  # noqa: E402

BUILD = os.environ.get("HARBRIX_BUILD", "")
PASSWORD = 'pa"ss\\wörd-2c91e7'
NOT_RUNNING = "harbrixctl: Harbrix is not running; start it with `harbrix`\n"


def why_skipped():
    return why_no_program(BUILD) or why_missing("dbus-daemon")


def content(path):
    with open(path, encoding="utf-8") as file:
        return file.read()


class ControlTest(unittest.TestCase):
    def setUp(self):
        self.addCleanup(self.ends_clean)
        self.harbrix = Harbrix(BUILD)
        self.addCleanup(self.harbrix.close)
        self.harbrix.start()

    def ends_clean(self):
        self.assertEqual(processes_naming(self.harbrix.folder), [], "a process was left behind")

    def succeed(self, *arguments, **others):
        run = self.harbrix.ctl(*arguments, **others)
        self.assertEqual(run.returncode, 0, run.stderr)
        return run.stdout

    def refused(self, code, *arguments):
        run = self.harbrix.ctl(*arguments)
        self.assertEqual(run.returncode, code, run.stdout + run.stderr)
        self.assertRegex(run.stderr, r"\A(harbrixctl: )?[^\n]+\n\Z")
        return run.stderr

    def path(self, name):
        return os.path.join(self.harbrix.folder, name)

    def add(self, name):
        self.succeed("add", "--name", name, "--address", "nas.invalid", "--share", "s", "--user", "ann", "--disabled",
                     "--password-stdin", password=PASSWORD)

    def another(self):
        """A second installation, with a bus and folders of its own."""
        other = Harbrix(BUILD)
        self.addCleanup(other.close)
        other.start()
        return other

    def stored(self):
        return json.loads(content(self.harbrix.defaults_path))["values"]


class Settings(ControlTest):
    def test_what_is_set_is_stored_in_its_type_and_has_its_effect(self):
        cases = {
            "keepAliveInterval": ("240", 240.0),
            "cache.maxSize": ("1048576000", 1048576000),
            "cache.autoCleanup": ("false", False),
            "log.minimumLevel": ("1", 1),
            "HarbrixSelectedLanguage": ("de", "de"),
            "notify.unmount": ("true", True),
            "launchAtLogin": ("true", True),
            "mount.defaultSMBVersion": ("3", "3"),
        }
        for key, (typed, _) in cases.items():
            self.assertEqual(self.succeed("settings", "set", key, typed), f"{key}: {typed}\n")
            self.assertEqual(self.succeed("settings", "get", key), typed + "\n")
        listed = {each["key"]: each for each in json.loads(self.succeed("settings", "list", "--json"))}
        for key, (_, value) in cases.items():
            self.assertEqual(listed[key]["value"], value)
        entry = os.path.join(self.harbrix.environment["XDG_CONFIG_HOME"], "autostart", "com.harbrix.app.desktop")
        self.assertIn(self.harbrix.program, content(entry))
        self.assertIn("Periodic cache cleanup stopped", self.harbrix.log())
        self.assertEqual(self.stored()["AppleLanguages"], ["de"])

        self.harbrix.kill()
        self.harbrix.start()
        for key, (typed, _) in cases.items():
            self.assertEqual(self.succeed("settings", "get", key), typed + "\n", "lost by a restart")
        for key in cases:
            self.succeed("settings", "reset", key)
            self.assertEqual(json.loads(self.succeed("settings", "get", key, "--json"))["value"], listed[key]["default"])
        self.assertFalse(os.path.exists(entry))
        self.assertEqual(cases.keys() & self.stored().keys(), set())

    def test_a_value_of_another_type_reads_as_the_default(self):
        self.harbrix.kill()
        self.harbrix.write_defaults(json.dumps({"version": 1, "values": {"keepAliveInterval": "often"}}))
        self.harbrix.start()
        self.assertEqual(self.succeed("settings", "get", "keepAliveInterval"), "180\n")

    def test_what_cannot_be_set_says_why(self):
        before = self.succeed("settings", "list")
        table = [
            (("set", "keepAliveInterval", "30"), "from 60 to 600 in steps of 60"),
            (("set", "launchAtLogin", "yes"), "takes true or false"),
            (("set", "HarbrixSelectedLanguage", "xx"), "one of system, zh-Hans, en"),
            (("set", "keepAliveIntervall", "60"), "did you mean keepAliveInterval"),
            (("get", "com.harbrix.configs"), "there is no setting"),
            (("get", "a\nb\x1b[2J"), "there is no setting"),
            (("reset", "log.level"), "there is no setting"),
        ]
        for arguments, reason in table:
            with self.subTest(arguments=arguments):
                self.assertIn(reason, self.refused(64, "settings", *arguments))
        self.assertEqual(self.succeed("settings", "list"), before)


class Log(ControlTest):
    def setUp(self):
        super().setUp()
        self.succeed("settings", "set", "log.fileEnabled", "true")

    def test_show_filters_and_counts(self):
        self.succeed("settings", "set", "launchAtLogin", "true")
        whole = self.succeed("log", "show")
        self.assertIn("Launch at login set to true", whole)
        self.succeed("settings", "reset", "launchAtLogin")
        lines = self.succeed("log", "show", "--lines", "1").splitlines()
        self.assertEqual(len(lines), 1)
        self.assertIn("Launch at login set to false", lines[0])
        self.assertEqual(self.succeed("log", "show", "--level", "critical"), "")

    def test_follow_prints_what_comes_and_ends_with_the_program(self):
        with subprocess.Popen([self.harbrix.control, "log", "show", "--follow", "--lines", "0"],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=self.harbrix.environment,
                              text=True) as follow:
            try:
                seen = ""
                # Until the first is seen, it may be too early for the one that counts.
                while "Launch at login" not in seen:
                    self.succeed("settings", "set", "launchAtLogin", "true")
                    if follow.stdout in select([follow.stdout], [], [], 0.2)[0]:
                        seen = follow.stdout.readline()
                self.succeed("log", "clear")
                self.succeed("settings", "reset", "launchAtLogin")
                while "Launch at login set to false" not in seen:
                    seen = follow.stdout.readline()
                    self.assertNotEqual(seen, "", "the follower ended")
                self.harbrix.kill()
                self.assertEqual(follow.wait(10), 69)
            finally:
                follow.kill()

    def test_export_and_clear(self):
        self.succeed("settings", "set", "launchAtLogin", "true")
        file = self.path("exported.log")
        self.succeed("log", "export", file)
        self.assertIn("Launch at login set to true", content(file))
        self.assertIn("--force replaces it", self.refused(1, "log", "export", file))
        self.succeed("log", "export", "--force", file)
        self.succeed("settings", "set", "log.fileEnabled", "false")
        self.succeed("log", "clear")
        self.refused(1, "log", "export", self.path("none.log"))
        self.assertFalse(os.path.exists(self.path("none.log")))
        self.assertIn("journalctl -t harbrix", self.refused(1, "log", "show"))


class Records(ControlTest):
    def test_goes_to_another_installation_and_back(self):
        self.add("Films")
        self.add("Music")
        file = self.path("shares.json")
        self.succeed("export", file, "--with-passwords")
        self.assertEqual(stat.S_IMODE(os.stat(file).st_mode), 0o600)
        self.assertEqual([record["password"] for record in json.loads(content(file))], [PASSWORD] * 2)
        self.assertIn("--force", self.refused(1, "export", file))

        other = self.another()
        trial = other.ctl("import", "--dry-run", file)
        self.assertEqual((trial.returncode, other.status()["shares"]), (0, []), trial.stderr)
        imported = other.ctl("import", file)
        self.assertEqual(imported.stdout, "Films: added\nMusic: added\n2 added, 0 updated, 0 skipped\n", imported.stderr)
        self.assertNotIn("2c91e7", content(other.defaults_path))
        secrets = os.path.join(other.environment["XDG_DATA_HOME"], "Harbrix", "secrets.json")
        self.assertTrue(os.path.exists(secrets))

        self.assertEqual(other.ctl("edit", "Films", "--name", "Cinema").returncode, 0)
        plain = other.ctl("export")
        self.assertNotIn("2c91e7", plain.stdout)
        again = subprocess.run([self.harbrix.control, "import", "-"], input=plain.stdout, capture_output=True,
                               text=True, env=self.harbrix.environment, timeout=60)
        self.assertEqual(again.stdout, "Cinema: updated\nMusic: skipped\n0 added, 1 updated, 1 skipped\n", again.stderr)
        self.assertEqual([share["name"] for share in self.harbrix.status()["shares"]], ["Cinema", "Music"])
        passwords = [record["password"] for record in json.loads(self.succeed("export", "--with-passwords"))]
        self.assertEqual(passwords, [PASSWORD] * 2, "a password was lost on the way")
        for harbrix in (self.harbrix, other):
            self.assertNotIn("2c91e7", harbrix.log())

    def test_a_damaged_file_changes_nothing(self):
        self.add("Films")
        whole = self.succeed("export")
        before = content(self.harbrix.defaults_path)
        for number, text in enumerate(["", "{}", whole[:-20], whole.replace('"smb"', '"ftp"'), "\0" * 1000]):
            with self.subTest(number=number):
                file = self.path(f"damaged-{number}")
                with open(file, "w") as damaged:
                    damaged.write(text)
                self.assertIn("no records of shares", self.refused(65, "import", file))
        self.refused(1, "import", self.path("missing"))
        self.refused(1, "import", self.harbrix.folder)
        self.refused(1, "export", self.path("no/such/folder"))
        self.assertEqual(content(self.harbrix.defaults_path), before)

    def test_a_terminal_is_shown_no_password(self):
        self.add("Films")
        process, terminal = pty.fork()
        if process == 0:
            os.execve(self.harbrix.control, ["harbrixctl", "export", "--with-passwords"], self.harbrix.environment)
        shown = b""
        try:
            while chunk := os.read(terminal, 4096):
                shown += chunk
        except OSError:  # the way a terminal ends
            pass
        os.close(terminal)
        self.assertEqual(os.waitstatus_to_exitcode(os.waitpid(process, 0)[1]), 64)
        self.assertNotIn(b"2c91e7", shown)
        self.assertIn(b"name a file", shown)


class WithoutTheProgram(ControlTest):
    def test_every_command_says_so(self):
        self.harbrix.kill()
        file = self.path("shares.json")
        with open(file, "w") as shares:
            shares.write("[]")
        for command in ("settings list", "settings get log.debugMode", "settings set log.debugMode true",
                        "settings reset log.debugMode", "log show", "log show --follow", "log clear", "export",
                        "log export " + self.path("log"), "import " + file, "export " + self.path("new")):
            with self.subTest(command):
                run = self.harbrix.ctl(*command.split(" "))
                self.assertEqual((run.returncode, run.stderr), (69, NOT_RUNNING))
        self.assertFalse(os.path.exists(self.path("new")))


if __name__ == "__main__":
    reason = why_skipped()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
