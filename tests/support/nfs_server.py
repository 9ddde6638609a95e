"""A private nfs-ganesha on loopback for tests: a free port, its own folders, nothing shared with others."""

import os
import shutil
import signal
import socket
import subprocess
import tempfile
import time

GANESHA = shutil.which("ganesha.nfsd", path=os.environ.get("PATH", "") + ":/usr/sbin:/usr/bin")

CONFIGURATION = """
NFS_CORE_PARAM {{
    Protocols = 4; Enable_UDP = false; Enable_NLM = false; Enable_RQUOTA = false;
    NFS_Port = {port}; Bind_addr = {address};
}}
NFSv4 {{
    Graceless = {graceless}; Lease_Lifetime = {lease}; Grace_Period = {grace};
    RecoveryRoot = {base}/recovery; Only_Numeric_Owners = true; Minor_Versions = {minors};
}}
NFS_KRB5 {{ Active_krb5 = false; }}
EXPORT {{
    Export_Id = 1; Path = {data}; Pseudo = {pseudo}; Access_Type = RW;
    Squash = No_Root_Squash; SecType = sys; PrivilegedPort = {privileged};
    Attr_Expiration_Time = {attributes}; FSAL {{ Name = VFS; }}
}}
"""


def why_unavailable():
    """The reason why no server can run here, or None."""
    if os.geteuid() != 0:
        return "nfs-ganesha's VFS back end needs root"
    if not GANESHA:
        return "nfs-ganesha is not installed"
    if not os.path.exists("/etc/mtab"):
        return "nfs-ganesha needs /etc/mtab"
    return None


def free_port():
    for port in range(20490, 21490):
        with socket.socket() as probe:
            probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            try:
                probe.bind(("127.0.0.1", port))
                return port
            except OSError:
                continue
    raise RuntimeError("no free port")


class NfsServer:
    """Use as a context manager. `data` is the exported folder on this machine."""

    def __init__(self, minors="0, 1, 2", graceless=True, lease=60, grace=20, privileged=False, attributes=60, parent=None,
                 address="127.0.0.1", port=None, pseudo="/export/data"):
        # attributes: for how many seconds ganesha trusts what it knows, unaware of changes behind its back.
        # In memory: an fsync on a busy disk takes seconds, and a killed server stays until it is through.
        if parent is None and os.path.isdir("/dev/shm"):
            parent = "/dev/shm"
        self.base = tempfile.mkdtemp(prefix="harbrix-nfs-", dir=parent)
        os.chmod(self.base, 0o755)
        self.data = os.path.join(self.base, "data")
        os.mkdir(self.data)
        os.mkdir(os.path.join(self.base, "recovery"))
        self.address, self.pseudo = address, pseudo
        self.port = port or free_port()
        self.process_id = None
        self._configuration = os.path.join(self.base, "ganesha.conf")
        with open(self._configuration, "w") as file:
            file.write(CONFIGURATION.format(
                port=self.port, base=self.base, data=self.data, minors=minors, lease=lease, grace=grace,
                attributes=attributes, address=address, pseudo=pseudo,
                graceless=str(graceless).lower(), privileged=str(privileged).lower()))

    @property
    def source(self):
        host = "[%s]" % self.address if ":" in self.address else self.address
        return "%s:%s" % (host, self.pseudo)

    def start(self):
        pid_file = os.path.join(self.base, "ganesha.pid")
        if os.path.exists(pid_file):
            os.unlink(pid_file)
        for _ in range(10):  # the port may be in TIME_WAIT right after a kill
            # -F: in the foreground, so that the process is a child and its end is noticed.
            self._process = subprocess.Popen(
                [GANESHA, "-F", "-f", self._configuration, "-L", os.path.join(self.base, "ganesha.log"),
                 "-p", pid_file, "-N", "NIV_EVENT"],
                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            self.process_id = self._process.pid
            deadline = time.monotonic() + 10
            while time.monotonic() < deadline and self._process.poll() is None:
                try:
                    socket.create_connection((self.address, self.port), 0.2).close()
                    return self
                except OSError:
                    time.sleep(0.02)
            self.kill()
            time.sleep(0.3)
        raise RuntimeError("ganesha did not start: see " + self.base)

    def kill(self):
        """Ends the server as a power failure would, but for what its kernel holds."""
        self._end(signal.SIGKILL)

    def stop(self):
        self._end(signal.SIGTERM)

    def _end(self, number):
        if self.process_id is None:
            return
        try:
            os.kill(self.process_id, signal.SIGCONT)
            os.kill(self.process_id, number)
            self._process.wait(10)
        except (ProcessLookupError, subprocess.TimeoutExpired):
            self._process.kill()
            self._process.wait()
        self.process_id = None

    def freeze(self):
        """A black hole: connections stand, nothing is answered."""
        os.kill(self.process_id, signal.SIGSTOP)
        while any(state != "T" for state in self._thread_states()):  # until then it may still answer
            time.sleep(0.001)

    def _thread_states(self):
        tasks = "/proc/%d/task" % self.process_id
        for thread in os.listdir(tasks):
            with open(os.path.join(tasks, thread, "stat")) as file:
                yield file.read().rpartition(")")[2].split()[0]

    def thaw(self):
        os.kill(self.process_id, signal.SIGCONT)

    def __enter__(self):
        return self.start()

    def __exit__(self, *_):
        self.kill()
        shutil.rmtree(self.base, ignore_errors=True)
