"""A private smbd on loopback, for tests and for trying things out.

Everything it needs lies in a temporary folder of its own, so that it neither sees nor disturbs a Samba
that the machine may run. It works as root (with users of its own) and as an ordinary user.
"""

import os
import pwd
import shutil
import signal
import socket
import subprocess
import tempfile
import time


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class SmbServer:
    """shares: name -> path of the folder. users: name -> password.

    As root every file operation runs as `account` (the caller's choice of an existing user); as an ordinary
    user as oneself. The users of Samba are then only names that map to that account.
    """

    PROGRAM = shutil.which("smbd", path=os.defpath + ":/usr/sbin:/sbin")

    def __init__(self, shares, users=(), port=None, account=None, options=None, folder=None):
        self.shares = dict(shares)
        self.users = dict(users)
        self.port = port or free_port()
        self.account = account or pwd.getpwuid(os.getuid()).pw_name
        self.options = dict(options or {})
        self.folder = tempfile.mkdtemp(prefix="harbrix-smbd-", dir=folder)
        self.process = None

    @property
    def address(self):
        return f"127.0.0.1:{self.port}"

    def __enter__(self):
        self.start()
        return self

    def __exit__(self, *_):
        self.close()

    def start(self):
        """Returns once the server answers."""
        if not os.path.exists(self._path("smb.conf")):
            self._configure()
        with open(self._path("smbd.log"), "ab") as log:
            self.process = subprocess.Popen(
                [self.PROGRAM, "-s", self._path("smb.conf"), "-F", "--no-process-group",
                 "--debug-stdout"],
                stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True)
        deadline = time.monotonic() + 15
        while not self._answers():
            if self.process.poll() is not None or time.monotonic() > deadline:
                raise RuntimeError("smbd did not come up:\n" + self.log())
            time.sleep(0.02)

    def stop(self):
        """An orderly end of all its processes."""
        self._end(signal.SIGTERM)

    def kill(self):
        """The end of a server whose power failed, but for the TCP resets."""
        self._end(signal.SIGKILL)

    def restart(self):
        self.stop()
        self.start()

    def pause(self):
        """Stops every process where it stands: connections stay, nothing is answered any more."""
        self._signal(signal.SIGSTOP)

    def resume(self):
        self._signal(signal.SIGCONT)

    def close(self):
        """Ends the server and removes its folder (never the shared ones)."""
        self.resume()
        self.kill()
        shutil.rmtree(self.folder, ignore_errors=True)

    def log(self):
        with open(self._path("smbd.log"), errors="replace") as log:
            return log.read()[-4000:]

    def processes(self):
        """The ids of all its processes; smbd forks one a connection, all in one session."""
        found = []
        for name in os.listdir("/proc"):
            try:
                if name.isdigit() and os.getsid(int(name)) == self.process.pid:
                    found.append(int(name))
            except ProcessLookupError:
                pass
        return found

    def _path(self, name):
        return os.path.join(self.folder, name)

    def _signal(self, number):
        if not self.process:
            return
        for process in self.processes():
            try:
                os.kill(process, number)
            except ProcessLookupError:
                pass

    def _end(self, number):
        if not self.process:
            return
        self._signal(number)
        try:
            self.process.wait(5)
        except subprocess.TimeoutExpired:
            pass
        # The processes of open connections may outlive the first one.
        deadline = time.monotonic() + 5
        while self.processes() and time.monotonic() < deadline:
            self._signal(signal.SIGKILL)
            time.sleep(0.01)
        self.process.wait()
        self.process = None

    def _answers(self):
        try:
            socket.create_connection(("127.0.0.1", self.port), 1).close()
            return True
        except OSError:
            return False

    def _configure(self):
        os.chmod(self.folder, 0o755)
        settings = {
            "workgroup": "HARBRIX",
            "server role": "standalone server",
            "smb ports": self.port,
            "interfaces": "127.0.0.1/8",
            "bind interfaces only": "yes",
            "disable netbios": "yes",
            "load printers": "no",
            "disable spoolss": "yes",
            "map to guest": "Bad User",
            "guest account": self.account,
            "passdb backend": "tdbsam:" + self._path("passdb.tdb"),
            "log level": 0,
            "username map": self._path("users.map"),
            **self.options,
        }
        for name in ("private dir", "lock directory", "state directory", "cache directory",
                     "pid directory", "ncalrpc dir"):
            path = self._path(name.split()[0])
            os.makedirs(path, mode=0o755, exist_ok=True)
            settings[name] = path
        with open(self._path("smb.conf"), "w") as file:
            file.write("[global]\n")
            file.writelines(f"  {key} = {value}\n" for key, value in settings.items())
            for name, path in self.shares.items():
                file.write(f"[{name}]\n  path = {path}\n  read only = no\n  guest ok = yes\n"
                           f"  force user = {self.account}\n")
        # Samba asks for a system account behind each of its users; one serves for all of them.
        with open(self._path("users.map"), "w") as file:
            file.writelines(f'{self.account} = "{name}"\n' for name in self.users)
        passwords = set(self.users.values())
        if len(passwords) > 1:
            raise ValueError("all users share one account and hence one password")
        for password in passwords:
            # Unlike smbpasswd(8) it lets an ordinary user write a database of its own.
            subprocess.run(["pdbedit", "-s", self._path("smb.conf"), "-a", "-t", "-u", self.account],
                           input=f"{password}\n{password}\n", text=True, check=True,
                           stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
