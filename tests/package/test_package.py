"""The Debian packages as ./package makes them: what is in them, what they ask for, and that each piece is of use to
the tool that reads it. HARBRIX_PACKAGES names the folder of the .deb files, HARBRIX_BUILD the build they are of."""

import glob
import gzip
import os
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile
import unittest

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "tests", "support"))
from harbrix_program import Harbrix  # noqa: E402

PACKAGES = os.environ.get("HARBRIX_PACKAGES", os.path.join(ROOT, "build", "package"))
BUILD = os.environ.get("HARBRIX_BUILD", os.path.join(ROOT, "build", "release"))

PROGRAMS = {"usr/bin/harbrix": "src/app/harbrix", "usr/bin/harbrixctl": "src/app/harbrixctl",
            "usr/sbin/diskutil": "host/diskutil/diskutil", "usr/sbin/mount_nfs": "host/mount_nfs/mount_nfs",
            "usr/sbin/mount_smbfs": "host/mount_smbfs/mount_smbfs"}
DESKTOP = "usr/share/applications/com.harbrix.app.desktop"
METAINFO = "usr/share/metainfo/com.harbrix.app.metainfo.xml"
UNIT = "usr/lib/systemd/user/harbrix.service"
BASH = "usr/share/bash-completion/completions/harbrixctl"
ZSH = "usr/share/zsh/vendor-completions/_harbrixctl"
PAGES = {"usr/share/man/man1/harbrix.1.gz", "usr/share/man/man1/harbrixctl.1.gz",
         "usr/share/man/man8/diskutil.8.gz", "usr/share/man/man8/mount_nfs.8.gz",
         "usr/share/man/man8/mount_smbfs.8.gz"}
FILES = {*PROGRAMS, *PAGES, DESKTOP, METAINFO, UNIT, BASH, ZSH,
         "usr/share/icons/hicolor/scalable/apps/com.harbrix.app.svg",
         "usr/share/doc/harbrix/changelog.gz", "usr/share/doc/harbrix/copyright"}
LANGUAGES = ("de", "es", "fr", "it", "ja", "ko", "pt", "zh_CN")  # beside English

# What is called where it is there, and done without where not.
OPTIONAL_PROGRAMS = {"/usr/bin/sudo", "/sbin/modprobe", "/sbin/mount.nfs4"}


def package(name):
    found = glob.glob(os.path.join(PACKAGES, f"{name}_*.deb"))
    return found[0] if len(found) == 1 else None


def why_skipped():
    if not package("harbrix") or not package("harbrix-dbgsym"):
        return f"there are no packages in {PACKAGES}: ./package makes them"
    for tool in ("desktop-file-validate", "appstreamcli", "mandoc", "readelf"):
        if not shutil.which(tool):
            return tool + " is not installed"
    return None


def run(*command, **options):
    """The output of a command that has to succeed, errors included."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL,
                          text=True, check=False, timeout=60, **options)
    if done.returncode != 0:
        raise AssertionError(f"{' '.join(command)}: {done.returncode}\n{done.stdout}")
    return done.stdout


def field(name, of="harbrix"):
    return run("dpkg-deb", "--field", package(of), name).strip()


def members(of):
    with subprocess.Popen(["dpkg-deb", "--fsys-tarfile", package(of)], stdout=subprocess.PIPE) as unpacking:
        with tarfile.open(fileobj=unpacking.stdout, mode="r|") as archive:
            return {entry.name.removeprefix("./"): entry for entry in archive}


def build_id(path):
    return re.search(r"Build ID: (\w+)", run("readelf", "--notes", path))[1]


def source_text(*parts):
    with open(os.path.join(ROOT, *parts), encoding="utf-8") as file:
        return file.read()


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.mkdtemp(prefix="harbrix-package-")
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.root, cls.symbols = os.path.join(cls.folder, "root"), os.path.join(cls.folder, "symbols")
        run("dpkg-deb", "--extract", package("harbrix"), cls.root)
        run("dpkg-deb", "--extract", package("harbrix-dbgsym"), cls.symbols)

    def path(self, name):
        return os.path.join(self.root, name)


class Contents(PackageTest):
    def test_is_exactly_what_belongs(self):
        files = {name for name, entry in members("harbrix").items() if not entry.isdir()}
        self.assertEqual(sorted(files), sorted(FILES))

    def test_is_roots_and_for_everybody_to_read(self):
        for name, entry in members("harbrix").items():
            with self.subTest(name):
                self.assertEqual((entry.uid, entry.gid), (0, 0))
                executable = entry.isdir() or name in PROGRAMS
                self.assertEqual(oct(entry.mode & 0o7777), oct(0o755 if executable else 0o644))

    def test_tells_nothing_of_the_machine_that_built_it(self):
        for folder in (self.root, self.symbols):
            for place, _, names in os.walk(folder):
                for name in names:
                    if os.path.islink(os.path.join(place, name)):
                        continue
                    with open(os.path.join(place, name), "rb") as file:
                        content = file.read()
                    if name.endswith(".gz"):
                        content = gzip.decompress(content)
                    self.assertNotIn(ROOT.encode(), content, name)

    def test_has_one_version(self):
        version = field("Version")
        told = {
            "CMakeLists.txt": re.search(r"VERSION (\S+) LANGUAGES", source_text("CMakeLists.txt"))[1],
            "CHANGELOG.md": re.search(r"^## \[(.+?)\]", source_text("CHANGELOG.md"), re.M)[1],
            "metainfo": re.search(r'<release version="(.+?)"', source_text("packaging", os.path.basename(METAINFO)))[1],
            "harbrix": run(self.path("usr/bin/harbrix"), "--version").split()[-1],
            "harbrixctl": run(self.path("usr/bin/harbrixctl"), "--version").split()[-1],
            "symbols": field("Version", "harbrix-dbgsym"),
        }
        self.assertEqual(told, dict.fromkeys(told, version))


class Programs(PackageTest):
    def test_are_of_this_build(self):
        for name, built in PROGRAMS.items():
            self.assertEqual(build_id(self.path(name)), build_id(os.path.join(BUILD, built)),
                             f"{name} is of another build: run ./package")

    def test_load_everywhere_and_are_hardened(self):
        for name in PROGRAMS:
            with self.subTest(name):
                dynamic = run("readelf", "--dynamic", "--wide", self.path(name))
                self.assertNotRegex(dynamic, r"\((RPATH|RUNPATH)\)")
                self.assertRegex(dynamic, r"FLAGS_1\).*NOW.*PIE")
                self.assertIn("GNU_RELRO", run("readelf", "--program-headers", "--wide", self.path(name)))
                self.assertNotIn("not found", run("ldd", self.path(name)))

    def test_have_their_debug_symbols_apart(self):
        for name in PROGRAMS:
            with self.subTest(name):
                self.assertNotIn(".debug_", run("readelf", "--sections", "--wide", self.path(name)))
                number = build_id(self.path(name))
                symbols = os.path.join(self.symbols, "usr/lib/debug/.build-id", number[:2], number[2:] + ".debug")
                sections = run("readelf", "--sections", "--wide", symbols)
                for section in (".debug_info", ".debug_line", ".symtab"):
                    self.assertIn(section, sections)


class Dependencies(PackageTest):
    def names(self, *fields):
        return {alternative.split()[0] for name in fields for relation in field(name).split(",")
                for alternative in relation.split("|")}

    def test_cover_every_program_that_is_called(self):
        called = set()
        for folder in ("src", "host"):
            for place, _, names in os.walk(os.path.join(ROOT, folder)):
                for name in names:
                    if name.endswith((".cpp", ".h")):
                        called.update(re.findall(r'"(/(?:usr/)?s?bin/[\w.-]+)"', source_text(place, name)))
        own = {"/usr/sbin/" + os.path.basename(name) for name in PROGRAMS}
        called = {path for path in called if "/usr" * (not path.startswith("/usr")) + path not in own}
        self.assertIn("/usr/bin/expect", called)
        # By PATH, and what Qt loads for the symbols.
        needed = called - OPTIONAL_PROGRAMS | {shutil.which("fusermount3") or "/usr/bin/fusermount3"}
        needed.update(glob.glob("/usr/lib/*/qt6/plugins/iconengines/libqsvgicon.so"))
        depends = self.names("Depends")
        # A package may name its file with or without /usr in front.
        owners = run("dpkg-query", "--search", *("*" + path.removeprefix("/usr") for path in sorted(needed)))
        for path in needed:
            with self.subTest(path):
                owner = re.search(rf"(?m)^([\w.+-]+)(?::\w+)?: (?:/usr)?{re.escape(path.removeprefix('/usr'))}$", owners)
                self.assertIn(owner[1], depends)

    def test_for_building_are_those_that_scripts_install(self):
        asked = re.search(r"^Build-Depends:\n((?: .*\n)+)", source_text("packaging", "debian", "control"), re.M)[1]
        asked = {line.split()[0].rstrip(",") for line in asked.splitlines()} - {"debhelper-compat"}
        installed = set(re.findall(r"^build +(\S+)", source_text("scripts", "packages.txt"), re.M))
        self.assertEqual(asked, installed)

    def test_can_be_had_on_a_machine_with_nothing(self):
        status = os.path.join(self.folder, "status")
        with open(status, "w", encoding="utf-8"):
            pass
        apt = ("apt-get", "--simulate", "-o", "Dir::State::status=" + status, "--no-install-recommends")
        try:
            run(*apt, "satisfy", "libc6")
        except AssertionError:
            self.skipTest("apt has no lists of packages")
        self.assertIn("Inst harbrix ", run(*apt, "install", package("harbrix")))
        run(*apt, "satisfy", field("Recommends"), field("Suggests"))


class Desktop(PackageTest):
    def test_entry_is_valid_and_leads_to_the_program(self):
        self.assertEqual(run("desktop-file-validate", self.path(DESKTOP)), "")
        with open(self.path(DESKTOP), encoding="utf-8") as file:
            entry = dict(line.rstrip("\n").split("=", 1) for line in file if "=" in line)
        self.assertTrue(os.access(self.path("usr/bin/" + entry["Exec"]), os.X_OK))
        login_item = re.search(r"Icon=([\w.]+)", source_text("src", "platform", "linux", "LoginItem.cpp"))[1]
        for icon in (entry["Icon"], login_item):
            self.assertTrue(os.path.exists(self.path(f"usr/share/icons/hicolor/scalable/apps/{icon}.svg")), icon)
        for key in ("GenericName", "Comment", "Keywords"):
            self.assertEqual([name for name in LANGUAGES if f"{key}[{name}]" not in entry], [], key)

    def test_catalogue_data_is_valid(self):
        run("appstreamcli", "validate", "--no-net", "--pedantic", self.path(METAINFO))
        with open(self.path(METAINFO), encoding="utf-8") as file:
            text = file.read()
        self.assertIn(f'<launchable type="desktop-id">{os.path.basename(DESKTOP)}</launchable>', text)
        for language in LANGUAGES:
            self.assertIn(f"<lang>{language}</lang>", text)
            self.assertEqual(len(re.findall(f'<(?:summary|p) xml:lang="{language}">', text)), 3, language)

    def test_unit_is_valid_and_not_enabled(self):
        self.assertEqual(glob.glob(self.path("usr/lib/systemd/user/*.wants/*")), [])
        if not shutil.which("systemd-analyze"):
            self.skipTest("systemd-analyze is not installed")
        with open(self.path(UNIT), encoding="utf-8") as file:
            text = file.read()
        self.assertIn("\nExecStart=/usr/bin/harbrix\n", text)
        # It looks for the program, which lies elsewhere here.
        unit = os.path.join(self.folder, "harbrix.service")
        with open(unit, "w", encoding="utf-8") as file:
            file.write(text.replace("/usr/bin/harbrix", self.path("usr/bin/harbrix")))
        told = run("systemd-analyze", "--user", "--man=no", "verify", unit,
                   env={**os.environ, "XDG_RUNTIME_DIR": self.folder, "HOME": self.folder})
        # Of other units of this machine it may have a word to say, too.
        self.assertEqual([line for line in told.splitlines() if "harbrix" in line], [])


class ManualPages(PackageTest):
    def test_are_found_and_without_faults(self):
        for name in sorted(PAGES):
            with self.subTest(name):
                title, section = os.path.basename(name).split(".")[:2]
                page = os.path.join(self.folder, f"{title}.{section}")
                with gzip.open(self.path(name)) as packed, open(page, "wb") as file:
                    shutil.copyfileobj(packed, file)
                run("mandoc", "-Tlint", "-Wwarning", page)


class Completion(PackageTest):
    """Completion as the shell asks for it, against the program of the package with shares of its own."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.harbrix = Harbrix(BUILD)
        cls.addClassCleanup(cls.harbrix.close)
        cls.harbrix.start()
        for name in ("Films", "Bilder aus Köln", 'odd "$name'):
            added = cls.harbrix.ctl("add", "--name", name, "--protocol", "nfs", "--address", "127.0.0.1",
                                    "--share", "/none", "--disabled")
            if added.returncode != 0:
                raise RuntimeError(added.stderr)
        cls.environment = {**cls.harbrix.environment, "LC_ALL": "C.UTF-8",
                           "PATH": os.path.join(cls.root, "usr/bin") + ":" + os.environ["PATH"]}
        lines = cls.harbrix.ctl("--help").stdout.split("Commands:\n")[1].split("\n\n")[0].splitlines()
        column = re.match("  list +", lines[0]).end()
        cls.commands = [tuple(line[:column].split()) for line in lines]

    def bash(self, *words):
        """What is offered for the last word."""
        script = ('source "$1"; shift; COMP_WORDS=(harbrixctl "$@"); COMP_CWORD=$#\n'
                  '_harbrixctl harbrixctl "${@: -1}" "${@: -2:1}"; printf "%s\\n" "${COMPREPLY[@]}"')
        answer = run("bash", "-c", script, "bash", self.path(BASH), *words, env=self.environment, cwd=self.folder)
        return set(answer.split("\n")) - {""}

    def settings(self):
        listed = self.harbrix.ctl("settings", "list").stdout.splitlines()
        return {line.split()[0] for line in listed[1:]}

    def test_bash_offers_what_the_program_takes(self):
        self.assertEqual(self.bash(""), {"--help", "--version", *(command[0] for command in self.commands)})
        self.assertEqual(self.bash("un"), {"unmount", "unmount-all"})
        for command in self.commands:
            with self.subTest(command):
                told = self.harbrix.ctl(*command, "--help").stdout
                options = set(re.findall(r"^  (?:-h, )?(--[a-z-]+)", told, re.M))
                self.assertIn("--help", options)
                self.assertEqual(self.bash(*command, "--"), options)
                if len(command) == 2:
                    self.assertIn(command[1], self.bash(command[0], ""))
                if " KEY" in told.splitlines()[0]:
                    self.assertEqual(self.bash(*command, ""), self.settings())
                if " KEY VALUE" in told.splitlines()[0]:
                    self.assertEqual(self.bash(*command, "launchAtLogin", ""), {"true", "false"})

    def test_bash_offers_values_shares_and_files(self):
        os.makedirs(os.path.join(self.folder, "there", "mnt"), exist_ok=True)
        shares = {"Films", r"Bilder\ aus\ Köln", r"odd\ \"\$name"}
        for words, offered in (
            (("mount", ""), shares),
            (("status", "Fi"), {"Films"}),
            (("mount", r"Bilder\ au"), {r"Bilder\ aus\ Köln"}),
            (("mount", '"Bilder au'), {"Bilder aus Köln"}),
            (("edit", "Films", "--protocol", ""), {"smb", "nfs"}),
            (("add", "--protocol", "=", "n"), {"nfs"}),
            (("add", "--protocol", "="), {"smb", "nfs"}),
            (("edit", "--read-only", ""), shares),
            (("edit", "--name", "x", ""), shares),
            (("edit", "Films", ""), set()),
            (("list", ""), set()),
            (("add", "--mount-point", "there/"), {"there/mnt"}),
            (("nonsense", ""), set()),
        ):
            with self.subTest(words):
                self.assertEqual(self.bash(*words), offered)

    def zsh(self, line):
        """The lines that zsh shows for a typed line: it completes in a terminal only."""
        script = os.path.join(ROOT, "tests", "package", "complete.zsh")
        shown = run("zsh", "-f", script, os.path.dirname(self.path(ZSH)), line, env=self.environment, cwd=self.folder)
        return re.sub(r"\x1b\[[0-9;?]*[A-Za-z]", " ", shown)

    @unittest.skipUnless(shutil.which("zsh"), "zsh is not installed")
    def test_zsh_offers_the_same(self):
        offered = self.zsh("harbrixctl ")
        for command in self.commands:
            self.assertRegex(offered, rf"(?m)^ *{command[0]} ")
            if len(command) == 2:
                self.assertRegex(self.zsh(f"harbrixctl {command[0]} "), rf"(?m)\b{command[1]}\b")
        self.assertIn("--smb-version", self.zsh("harbrixctl add --"))
        self.assertIn("Films", self.zsh("harbrixctl mount "))
        self.assertRegex(self.zsh("harbrixctl edit Films --protocol "), r"nfs\s+smb")


if __name__ == "__main__":
    reason = why_skipped()
    if reason:
        print("skipped: " + reason)
        sys.exit(77)
    unittest.main(verbosity=2)
