#!/usr/bin/python3
"""Installs the packages on a bare Debian system in a folder, starts the program there and looks for the panel.

Usage: bare_system.py <suite> <work folder> [<folder of packages>]

Without a folder of packages they are built first, on a second system of the same suite. Needs root, debootstrap,
the packages of a virtual desktop, and this machine's Debian mirror. Leaves <suite>.png in the work folder.
"""

import filecmp
import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

PROJECT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(PROJECT / "tests/system"))
from virtual_desktop import VirtualDesktop, wait_for  # noqa: E402

WELCOME = "^Willkommen bei Quillbar$"
APPLICATION = ("--session", "--dest", "com.randblatt.Quillbar", "--object-path", "/com/randblatt/Quillbar",
               "--method", "org.freedesktop.Application.ActivateAction")


def mirror():
    """The first place that this machine takes Debian's packages from."""
    lines = subprocess.run(["apt-get", "indextargets", "--format", "$(REPO_URI)", "Created-By: Packages",
                            "Label: Debian"], check=True, capture_output=True, text=True).stdout.split()
    if not lines:
        raise SystemExit("apt has no list of Debian's packages")
    return lines[0]


class System:
    """A Debian system in a folder. Its mounts end with this process, which has them for itself."""

    def __init__(self, folder, suite):
        self.root = folder
        if not (folder / "etc/debian_version").exists():
            subprocess.run(["debootstrap", "--variant=minbase", suite, folder, mirror()], check=True,
                           stdout=subprocess.DEVNULL)
        self.share("/proc")
        self.share("/dev")

    def share(self, path):
        target = self.root / str(path).lstrip("/")
        target.mkdir(parents=True, exist_ok=True)
        subprocess.run(["mount", "--rbind", path, target], check=True)

    def command(self, *arguments):
        return ["chroot", str(self.root), *map(str, arguments)]

    def run(self, *arguments):
        """Runs a command there to its end; its output is in log.txt beside the system."""
        environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "HOME": "/root", "LC_ALL": "C.UTF-8",
                       "DEBIAN_FRONTEND": "noninteractive"}
        done = subprocess.run(self.command(*arguments), env=environment, text=True, check=False,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        with open(f"{self.root}.log", "a", encoding="utf-8") as log:
            log.write(f"\n$ {' '.join(map(str, arguments))}\n{done.stdout}")
        if done.returncode != 0:
            raise SystemExit(f"{' '.join(map(str, arguments))} failed, see {self.root}.log\n{done.stdout[-2000:]}")
        return done.stdout


def build_packages(system):
    """Builds the packages of the checked-out files there; what has not changed is not built again."""
    names = subprocess.run(["git", "ls-files", "-z"], cwd=PROJECT, check=True, capture_output=True,
                           text=True).stdout.split("\0")
    target = system.root / "build/quillbar"
    for name in filter(None, names):
        copy = target / name
        if not copy.exists() or not filecmp.cmp(PROJECT / name, copy, shallow=False):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(PROJECT / name, copy)
    system.run("/build/quillbar/scripts/package.sh")
    return target / "build/packages"


def install(system, packages):
    """Installs the application alone and as little else as it allows, so that a forgotten dependency shows."""
    target = system.root / "packages"
    shutil.rmtree(target, ignore_errors=True)
    shutil.copytree(packages, target)
    system.run("apt-get", "update")
    for package in target.glob("quillbar_*.deb"):
        system.run("apt-get", "install", "-y", "--no-install-recommends", f"/packages/{package.name}")
    handlers = (system.root / "usr/share/applications/mimeinfo.cache").read_text(encoding="utf-8")
    if "x-scheme-handler/randblatt=com.randblatt.Quillbar.desktop" not in handlers:
        raise SystemExit("The address scheme was not registered:\n" + handlers)


def install_rest(system):
    """Installs the helper and the plugin, and looks whether they find what they were linked with."""
    for package in (system.root / "packages").glob("quillbar-*.deb"):
        system.run("apt-get", "install", "-y", "--no-install-recommends", f"/packages/{package.name}")
        for file in system.run("dpkg", "-L", package.name.split("_")[0]).split():
            if re.search(r"/libexec/.|\.so$", file) and "not found" in system.run("ldd", file):
                raise SystemExit(f"{file} lacks libraries")


def show_panel(system, picture):
    with VirtualDesktop(compositor=True) as desktop:
        system.share("/tmp/.X11-unix")
        system.share(desktop.folder)
        program = desktop.start(system.command("/usr/bin/quillbar"))
        try:
            wait_for(lambda: desktop.windows(WELCOME), timeout=60, message=lambda: "no welcome\n" + program.log)
            desktop.key("Escape")
            wait_for(lambda: not desktop.windows(WELCOME), message=lambda: "the welcome stays\n" + program.log)
            desktop.run("gdbus", "call", *APPLICATION, "show", "@av []", "@a{sv} {}")
            wait_for(lambda: desktop.windows("^Quillbar$"), message=lambda: "no panel\n" + program.log)
            panel = desktop.windows("^Quillbar$")[0]
            wait_for(lambda: desktop.geometry(panel)[0] == 0, message=lambda: f"at {desktop.geometry(panel)}")
            desktop.type("Auf einem kahlen System")
            desktop.key("Return")
            wait_for(lambda: b"kahlen" in desktop.preferences().get("todoItems.v1", b""),
                     message=lambda: "the task was not kept\n" + program.log)
            desktop.screenshot(picture)
        finally:
            program.process.terminate()
            print(program.log, end="")
        if program.wait(20) != 0:
            raise SystemExit("The program did not end well")


def main(suite, folder, packages=None):
    folder = Path(folder).resolve()
    folder.mkdir(parents=True, exist_ok=True)
    if packages is None:
        packages = build_packages(System(folder / f"{suite}-build", suite))
    system = System(folder / suite, suite)
    install(system, packages)
    picture = folder / f"{suite}.png"
    show_panel(system, picture)
    install_rest(system)
    system.run("apt-get", "purge", "-y", "quillbar")
    print(picture)


if __name__ == "__main__":
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    if not os.environ.get("QUILLBAR_OWN_MOUNTS"):
        os.environ["QUILLBAR_OWN_MOUNTS"] = "1"
        os.execvp("unshare", ["unshare", "--mount", sys.executable, "-B", *sys.argv])
    main(*sys.argv[1:])
