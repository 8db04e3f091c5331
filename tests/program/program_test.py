"""Drives the real program on a display of its own (Xvfb) as a user does: by its command line and keys."""
import configparser
import json
import mmap
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

PROGRAM, CLI, SONG = sys.argv[1:4]
WIDTH, HEIGHT = 1600, 1000
PATIENCE = 30  # seconds; a machine may be busy


def until(what, condition):
    """Waits for a condition and returns what it gave."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        result = condition()
        if result:
            return result
        time.sleep(0.05)
    raise AssertionError("in vain: " + what)


class Display:
    """An X server with a window manager, whose picture can be read."""

    def __init__(self, folder):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-fbdir", folder,
             "-nolisten", "tcp"], pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as pipe:
            self.name = ":" + pipe.readline().strip()
        self.environment = dict(os.environ, DISPLAY=self.name)
        # A window that asks to be shown while the manager still starts may never be.
        managed = pathlib.Path(folder, "managed")
        self.manager = subprocess.Popen(["openbox", "--startup", f"touch {managed}"], env=self.environment,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        until("the window manager", managed.exists)
        self.picture = pathlib.Path(folder, "Xvfb_screen0")
        until("the display's picture", self.picture.exists)

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()

    def do(self, *words):
        return subprocess.run(["xdotool", *words], env=self.environment, capture_output=True,
                              text=True).stdout.split()

    def pixels(self):
        with open(self.picture, "rb") as file, mmap.mmap(file.fileno(), 0, access=mmap.ACCESS_READ) as bytes_:
            return bytes_[-WIDTH * HEIGHT * 4:]


class Program(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="sonarello-program-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.display = Display(self.folder)
        self.addCleanup(self.display.close)
        self.home = self.folder / "home"
        self.settings = self.home / "config/Sonarello/Sonarello XI.ini"
        self.settings.parent.mkdir(parents=True)
        self.settings.write_text("[General]\nLang=en\nMidiInstrument00=Yamaha Genos\n"
                                 "MidiOutput00=Virtual MIDI\nConfirmTerminate=0\n")
        self.song = self.home / "my song.mid"
        shutil.copy(SONG, self.song)
        runtime = self.home / "run"
        runtime.mkdir(mode=0o700)
        self.environment = dict(self.display.environment, HOME=str(self.home), XDG_RUNTIME_DIR=str(runtime),
                                XDG_CONFIG_HOME=str(self.home / "config"), LANG="C.UTF-8",
                                XDG_DATA_HOME=str(self.home / "data"), JACK_NO_START_SERVER="1")
        self.environment.pop("QT_QPA_PLATFORM", None)

    def start(self, *words, title):
        program = subprocess.Popen([PROGRAM, *words], env=self.environment, stderr=subprocess.PIPE, text=True)
        self.addCleanup(program.stderr.close)
        self.addCleanup(lambda: program.poll() is None and program.kill())
        window = until(f"a window called {title}", lambda: self.window(title))
        self.display.do("windowactivate", "--sync", window)
        return program, window

    def window(self, title):
        found = self.display.do("search", "--onlyvisible", "--name", f"^{title}$")
        return found[-1] if found else None

    def quit(self, program):
        self.display.do("key", "ctrl+q")
        self.assertEqual(program.wait(timeout=PATIENCE), 0, program.stderr.read())

    def volumes(self):
        told = subprocess.run([CLI, "events", "--json", str(self.song)], capture_output=True, text=True, check=True)
        return told.stdout

    def keys(self):
        ini = configparser.RawConfigParser(strict=False)
        ini.optionxform = str
        ini.read(self.settings, encoding="utf-8")
        return ini["General"]

    def test_is_started_played_saved_ended_and_found_again(self):
        program, window = self.start(str(self.song), title="my song.mid - Sonarello")

        still = self.display.pixels()
        self.display.do("key", "space")
        until("the position to run", lambda: self.display.pixels() != still)
        time.sleep(2)
        first = self.display.pixels()
        until("the position to run on", lambda: self.display.pixels() != first)
        self.display.do("key", "space")
        time.sleep(0.5)

        before = self.volumes()
        self.display.do("key", "Right")
        self.display.do("key", "shift+Up")
        until("the title to tell of a change", lambda: self.window(r"my song.mid\* - Sonarello"))
        self.display.do("key", "F3")
        until("the title to tell that all is saved", lambda: self.window("my song.mid - Sonarello"))
        after = self.volumes()
        self.assertNotEqual(before, after)
        self.assertTrue(json.loads(after))

        self.display.do("key", "ctrl+2")
        until("the larger scale", lambda: self.keys().get("ScaleIndex") == "1" or None)
        self.quit(program)
        kept = self.keys()
        self.assertIn("my song.mid", kept["LastMidifilesList"])
        self.assertEqual(kept["MidiInstrument00"], "Yamaha Genos")
        size = kept["MainFormWidth"], kept["MainFormHeight"]

        program, window = self.start(title="Sonarello")
        geometry = self.display.do("getwindowgeometry", "--shell", window)
        self.assertIn("WIDTH=" + size[0], geometry)
        self.assertIn("HEIGHT=" + size[1], geometry)
        self.quit(program)
        self.assertEqual(self.keys()["ScaleIndex"], "1")
        self.assertEqual(list(self.home.glob("**/_Session_*")), [], "a session was left behind")

    def test_a_crash_offers_the_backup_at_the_next_start(self):
        program, _ = self.start(str(self.song), title="my song.mid - Sonarello")
        program.kill()
        program.wait()
        backups = next(self.home.glob("**/Sonarello XI/")) / "AutoBackups"
        backups.mkdir(exist_ok=True)
        time.sleep(1.1)
        stamp = time.strftime("%Y%m%d_%H%M%S")
        shutil.copyfile(SONG, backups / f"my song_{stamp}.mid")
        program, _ = self.start(title="Sonarello")
        until("the question", lambda: len(self.display.do("search", "--onlyvisible", "--pid", str(program.pid))) > 1)
        self.display.do("key", "Escape")
        time.sleep(0.5)
        self.quit(program)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
