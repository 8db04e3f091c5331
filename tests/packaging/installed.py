"""What the tests of installed files share: the tree, its version, and the files that are to be there."""
import os
import pathlib
import subprocess
import sys

SOURCE, BUILD, VERSION, PROGRAMS = None, None, "", ()
ICON_SIZES = (16, 22, 24, 32, 48, 64, 128, 256)


def read_arguments():
    """Takes the tree, the build folder, the version and the programs from the command line."""
    global SOURCE, BUILD, VERSION, PROGRAMS
    SOURCE, BUILD = (pathlib.Path(path) for path in sys.argv[1:3])
    VERSION = sys.argv[3]
    PROGRAMS = tuple(word for word in sys.argv[4:] if word.startswith("sonarello"))
    del sys.argv[1:4 + len(PROGRAMS)]


def has_windows():
    return "sonarello" in PROGRAMS


def run(*words, **environment):
    """Runs a program; its output, both kinds together, and its exit status."""
    done = subprocess.run([str(word) for word in words], capture_output=True, text=True, check=False,
                          encoding="utf-8", env={**os.environ, "LC_ALL": "C.UTF-8", **environment})
    return done.stdout + done.stderr, done.returncode


def files_below(folder):
    return {str(path.relative_to(folder)) for path in pathlib.Path(folder).rglob("*") if not path.is_dir()}


def expected_files():
    """Every file of an installation, below its prefix."""
    found = {"share/doc/sonarello/" + name
             for name in ("README.md", "SECURITY.md", "settings.md", "copyright", "changelog")}
    for program in PROGRAMS:
        found |= {f"bin/{program}", f"share/man/man1/{program}.1", f"share/man/de/man1/{program}.1"}
    if has_windows():
        icons = "share/icons/hicolor/"
        found |= {f"{icons}{size}x{size}/apps/sonarello.png" for size in ICON_SIZES}
        found |= {icons + "scalable/apps/sonarello.svg", "share/applications/sonarello.desktop",
                  "share/metainfo/invalid.sonarello.sonarello.metainfo.xml"}
        manual = SOURCE / "docs" / "manual"
        found |= {"share/doc/sonarello/manual/" + path for path in files_below(manual)}
    return found
