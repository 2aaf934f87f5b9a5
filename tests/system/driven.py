"""Starts the real window program on a display of its own and presses its keys."""

import getpass
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

IWAD = "/usr/share/games/doom/freedoom2.wad"
BETA = "This is a beta release of Plinket3 -- use it at your own risk!"
SKIPPED = 77


class Failed(Exception):
    """What the program should have done and did not."""


def require(*tools):
    """Ends the test as skipped when something that it drives the program with is not installed."""
    missing = [tool for tool in tools if shutil.which(tool) is None and not os.path.exists(tool)]
    if missing:
        print("skipped: not installed:", *missing)
        sys.exit(SKIPPED)


class Display:
    """An X server with a window manager, without which nothing gets the keyboard. The Windows that wine shows has no other
    display as long as it runs, so it ends with this one."""

    def __enter__(self):
        self.end_windows()
        self.folder = tempfile.mkdtemp(prefix="plinket3_display_")
        settings = Path(self.folder, "jwmrc")
        settings.write_text('<?xml version="1.0"?><JWM><FocusModel>click</FocusModel></JWM>')
        for _ in range(10):  # servers that start at the same time may take each other's number
            read, write = os.pipe()
            self.server = subprocess.Popen(
                ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp"],
                pass_fds=[write], stderr=subprocess.DEVNULL)
            os.close(write)
            with os.fdopen(read) as numbers:
                self.name = ":" + numbers.readline().strip()
            self.manager = subprocess.Popen(["jwm", "-f", str(settings), "-display", self.name],
                                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            try:
                self.manager.wait(0.3)
            except subprocess.TimeoutExpired:
                return self
            self.stop(self.server)
        raise Failed("no X server starts")

    @staticmethod
    def stop(process):
        process.terminate()
        process.wait()

    @staticmethod
    def end_windows():
        if shutil.which("wineserver"):
            subprocess.run(["wineserver", "--kill"], stderr=subprocess.DEVNULL, check=False)

    def __exit__(self, *_):
        self.end_windows()
        self.stop(self.manager)
        self.stop(self.server)
        shutil.rmtree(self.folder)


PROJECT = Path(__file__).resolve().parents[2]
WINE = PROJECT / "scripts/on-wine"
os.environ.setdefault("WINEPREFIX", str(PROJECT / "build/wine-driven"))  # other tests run at the same time in theirs


def for_windows(program):
    return Path(program).with_suffix(".exe").exists()


def command(program, *arguments):
    """The command line of a program; of one for Windows, with wine before it."""
    if for_windows(program):
        return [str(WINE), str(Path(program).with_suffix(".exe")), *map(str, arguments)]
    return [str(program), *map(str, arguments)]


def windows_home():
    """The home folder of the Windows that wine shows."""
    return Path(os.environ["WINEPREFIX"], "drive_c/users", getpass.getuser())


def path_in(program, path):
    """A path as the program writes it."""
    return "Z:" + str(path).replace("/", "\\") if for_windows(program) else str(path)


class Account:
    """A home folder with settings that know Freedoom; with none if it is `new`. On Windows there is one for all, and only
    the settings are made anew."""

    def __init__(self, home, backup=1, new=False, windows=False):
        self.home, self.windows = Path(home), windows
        self.settings = windows_home() / "AppData/Roaming/Plinket3" if windows else self.home / ".config/Plinket3"
        shutil.rmtree(self.settings, ignore_errors=True)
        self.home.mkdir(parents=True, exist_ok=True)
        run = self.home / "run"
        run.mkdir(mode=0o700)
        if new:
            return
        self.settings.mkdir(parents=True)
        (self.settings / "plinket3.cfg").write_text(
            'Type = "Plinket3 Program Configuration file"; IWADs { 0wad = "Freedoom;%s"; } recentFiles { } '
            'createBackup = %d; firstRun = 0; lastDir = "%s";' % (IWAD, backup, home))

    def environment(self, display):
        changed = {"HOME": str(self.home), "XDG_RUNTIME_DIR": str(self.home / "run"), "SDL_AUDIODRIVER": "dummy",
                   "DISPLAY": display.name, "LC_ALL": "C.UTF-8"}
        if self.windows:
            changed["DOOMWADDIR"] = os.path.dirname(IWAD)  # where nothing but this system looks
        else:
            changed["QT_QPA_PLATFORM"] = "xcb"
        foreign = ("XDG_CONFIG_HOME", "QT_QPA_PLATFORM")
        return {key: value for key, value in os.environ.items() if key not in foreign} | changed

    def log(self):
        return (self.settings / "plinket3.log").read_text("latin-1")


class Program:
    """The running program. Its message boxes are known from what it prints of them."""

    def __init__(self, program, account, display, *arguments, limit=None, folder=None):
        self.environment = account.environment(display)
        self.messages = []
        self.process = subprocess.Popen(command(program, *arguments), env=self.environment, preexec_fn=limit,
                                        cwd=folder, stderr=subprocess.PIPE, stdout=subprocess.DEVNULL, text=True,
                                        encoding="latin-1")
        self.reader = threading.Thread(target=self._read, daemon=True)
        self.reader.start()
        self.answered = 0

    def _read(self):
        for line in self.process.stderr:
            self.messages.append(line.rstrip("\n"))

    def running(self):
        return self.process.poll() is None

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=self.environment, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, check=False).stdout

    def until(self, condition, what, seconds=20, may_end=False):
        """Waits for a condition and returns it; fails when it does not come or the program ends before."""
        end = time.monotonic() + seconds
        while not (value := condition()):
            if not self.running():
                self.reader.join(1)
                if may_end:
                    return None
                if value := condition():
                    return value
                raise Failed(f"the program ended with {self.process.returncode} before {what}\n" + self.said())
            if time.monotonic() > end:
                raise Failed(f"waited in vain for {what}\n" + self.said())
            time.sleep(0.01)
        return value

    def said(self):
        return "it said: " + "\n".join(self.messages)

    def focused(self):
        return self.xdotool("getwindowfocus", "getwindowname").strip()

    def focus(self, pattern):
        """Waits until a window of that title has the keyboard."""
        def there():
            title = self.focused()
            if re.search(pattern, title):
                return title
            window = self.xdotool("search", "--onlyvisible", "--name", pattern).split()
            if window:
                self.xdotool("windowactivate", window[0])
                time.sleep(0.02)
            return None
        return self.until(there, f'a window "{pattern}"')

    def key(self, *keys):
        self.xdotool("key", *keys)

    def press(self, *keys):
        """Like `key`, but does not wait until the keys are on their way."""
        subprocess.Popen(["xdotool", "key", *keys], env=self.environment, stderr=subprocess.DEVNULL)

    def answer(self, text, key="Return"):
        """Waits for a message that holds `text`, the next one that was not answered yet, and presses a key in it."""
        self.until(lambda: len(self.messages) > self.answered, f'the message "{text}"')
        if text not in self.messages[self.answered]:
            raise Failed(f'instead of "{text}" ' + self.said())
        self.answered += 1
        self.through("^Plinket3$", key)

    def through(self, title, key="Return"):
        """Waits for a dialog of that title and presses a key in it; once more only if the dialog stays for long."""
        self.focus(title)
        dialog = self.xdotool("getwindowfocus")

        def gone():
            self.key(key)
            end = time.monotonic() + 10
            while self.running() and time.monotonic() < end:
                if self.xdotool("getwindowfocus") != dialog:
                    return True
                time.sleep(0.02)
            return False

        self.until(gone, f'the dialog "{title}" to go', may_end=True)

    def pass_by(self, what, reached, *dialogs):
        """Presses Return in every dialog, those of these titles too, until reached(title of the focused window). Once
        in each window, and again only if it stays for long: a second key would go to what comes behind it."""
        pressed = {}

        def there():
            window = self.xdotool("getwindowfocus").strip()
            focused = self.xdotool("getwindowname", window).strip()
            if reached(focused):
                return True
            if any(re.search(dialog, focused) for dialog in (*dialogs, "^Plinket3$")):
                now = time.monotonic()
                if now > pressed.get(window, now - 9) + 8:
                    pressed[window] = now
                    self.key("Return")
                time.sleep(0.05)
            else:
                for window in self.xdotool("search", "--onlyvisible", "--name", ".").split()[-1:]:
                    self.xdotool("windowactivate", window)
            return False
        self.until(there, what)
        self.answered = len(self.messages)

    def reach_patch(self):
        """From the start with a patch to the main window that shows it."""
        self.pass_by("the open patch", lambda title: title.startswith("Plinket3 - ["), "^File settings of ")

    def open_patch(self):
        """The same, of a patch about which nothing is said."""
        self.reach_patch()
        if self.messages != [BETA]:
            raise Failed(self.said())

    def end(self):
        """Ends it by its menu; fails when it does not end as it should."""
        self.focus("^Plinket3")
        self.key("ctrl+q")
        self.ended()

    def get_to_end(self):
        """Ends it whatever it still shows."""
        def gone():
            self.key("Return" if self.focused().startswith("Plinket3") else "Escape")
            self.key("ctrl+q")
            time.sleep(0.05)
            return not self.running()
        self.until(gone, "its end", may_end=True)
        self.ended()

    def ended(self):
        try:
            code = self.process.wait(20)
        except subprocess.TimeoutExpired:
            self.kill()
            raise Failed("it does not end\n" + self.said()) from None
        if code != 0:
            raise Failed(f"it ended with {code}\n" + self.said())

    def kill(self):
        self.process.send_signal(signal.SIGKILL)
        self.process.wait()
