"""What an end-to-end test needs of the machine that it runs on. Each function gives the reason why the test cannot
run here, or None; a test takes the first one: `why_no_program(build) or why_no_fuse()`."""

import os
import shutil
import subprocess

from network_lab import NetworkLab


def why_no_program(build):
    if not os.path.exists(os.path.join(build, "src", "app", "harbrix")):
        return "HARBRIX_BUILD names no folder with src/app/harbrix"
    return None


def why_missing(*tools):
    """Tools with an absolute path, because the program calls them by it, or without."""
    for tool in tools:
        if not shutil.which(tool, path=os.defpath + ":/usr/sbin:/sbin"):
            return tool + " is not installed"
    return None


def why_no_fuse():
    return None if os.access("/dev/fuse", os.R_OK | os.W_OK) else "/dev/fuse is not usable"


def why_no_network_namespaces():
    if os.getuid() != 0:
        return "network namespaces need root"
    try:
        lab = NetworkLab()
        lab.build()
        lab.remove()
    except (OSError, subprocess.CalledProcessError) as fault:
        return f"no network namespaces here: {getattr(fault, 'stderr', fault)}"
    return None


def why_no_mount_namespaces():
    if subprocess.run(["unshare", "--mount", "true"], stderr=subprocess.DEVNULL, check=False).returncode != 0:
        return "no mount namespaces here"
    return None
