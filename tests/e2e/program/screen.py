"""A virtual screen and a program on it, worked from outside with keys and mouse."""

import os
import shutil
import struct
import subprocess
import time
from contextlib import contextmanager, nullcontext
from pathlib import Path

# How long anything may take on a busy machine before it counts as not happening, in seconds.
PATIENCE = 30

# What a program of cases ends with when the tools are missing.
SKIPPED = 77

# The panel at the design font, in pixels: its height, and where its pages end and its status box and buttons begin. The
# menu bar stands above it, the status bar below.
PANEL_HEIGHT = 501
PAGES_BOTTOM = 391
STATUS_TOP = 402
BUTTONS_TOP = 462
STATUS_HEIGHT = 22


def tools_missing():
    return [tool for tool in ("Xvfb", "xdotool", "openbox") if not shutil.which(tool)]


def wait_for(what, condition, seconds=PATIENCE):
    """Asks until the condition holds and gives back its answer; fails when it does not come in time."""
    end = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError(f"did not happen within {seconds} s: {what}")
        time.sleep(0.05)


class Picture:
    """A copy of a piece of the screen; a pixel is its brightness from 0 to 255."""

    def __init__(self, width, height, pixels):
        self.width, self.height, self.pixels = width, height, pixels

    def count(self, condition):
        return sum(1 for pixel in self.pixels if condition(pixel))

    def dark(self):
        return self.count(lambda pixel: pixel < 128)

    def differs_from(self, other):
        """The share of pixels that differ visibly, 0 to 1."""
        if (self.width, self.height) != (other.width, other.height):
            return 1.0
        pairs = zip(self.pixels, other.pixels)
        return sum(1 for a, b in pairs if abs(a - b) > 24) / max(1, len(self.pixels))


class Screen:
    """An X server without a screen. Its picture lies in a file, so that no other tool is needed to look at it."""

    def __init__(self, folder, width=1280, height=1024):
        Path(folder).mkdir(parents=True, exist_ok=True)
        self._file = Path(folder, "Xvfb_screen0")
        reader, writer = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{width}x{height}x24", "-fbdir", str(folder),
             "-nolisten", "tcp", "-noreset"],
            pass_fds=[writer], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as answer:
            number = answer.readline().strip()
        if not number:
            raise AssertionError("the X server did not start")
        self.display = f":{number}"
        self._manager = None

    def manage(self):
        """Gives the windows a manager, with a key to maximize them."""
        # Without frames, of which xdotool counts the title bar twice.
        settings = self._file.with_name("openbox.xml")
        settings.write_text("""<openbox_config xmlns="http://openbox.org/3.4/rc">
            <keyboard><keybind key="W-m"><action name="ToggleMaximize"/></keybind></keyboard>
            <applications><application class="*"><decor>no</decor></application></applications>
            </openbox_config>""", encoding="utf-8")
        self._manager = subprocess.Popen(["openbox", "--sm-disable", "--config-file", settings],
                                         env={**os.environ, "DISPLAY": self.display}, stdin=subprocess.DEVNULL,
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for("the window manager", lambda: self.xdotool("get_num_desktops"))

    def close(self):
        if self._manager:
            self._manager.terminate()
            self._manager.wait(timeout=PATIENCE)
        self._server.terminate()
        self._server.wait(timeout=PATIENCE)

    def xdotool(self, *arguments):
        """Runs xdotool; gives back what it prints, or nothing when it found no window."""
        run = subprocess.run(["xdotool", *map(str, arguments)], env={**os.environ, "DISPLAY": self.display},
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, timeout=PATIENCE)
        return run.stdout.strip() if run.returncode == 0 else ""

    @contextmanager
    def clicking(self):
        """Clicks every ten milliseconds where the pointer is."""
        clicks = subprocess.Popen(["xdotool", "click", "--repeat", "1000000", "--delay", "10", "1"],
                                  env={**os.environ, "DISPLAY": self.display}, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            yield
        finally:
            clicks.terminate()
            clicks.wait(timeout=PATIENCE)

    def picture(self, left, top, width, height):
        data = self._file.read_bytes()
        header = struct.unpack(">25I", data[:100])
        size, row, colours = header[0], header[12], header[19]
        first = size + colours * 12
        pixels = []
        for y in range(top, top + height):
            line = data[first + y * row + left * 4:first + y * row + (left + width) * 4]
            pixels += [(30 * line[i + 2] + 59 * line[i + 1] + 11 * line[i]) // 100 for i in range(0, len(line), 4)]
        return Picture(width, height, pixels)


def panel_top(window):
    """Where the panel begins in the program's window."""
    return window.height - STATUS_HEIGHT - PANEL_HEIGHT


class Window:
    def __init__(self, screen, number):
        self.screen, self.number = screen, number
        self.title = screen.xdotool("getwindowname", number)
        place = dict(line.split("=", 1) for line in
                     screen.xdotool("getwindowgeometry", "--shell", number).splitlines() if "=" in line)
        self.left, self.top = int(place.get("X", 0)), int(place.get("Y", 0))
        self.width, self.height = int(place.get("WIDTH", 0)), int(place.get("HEIGHT", 0))

    def key(self, *keys):
        # In one run, so that the server gives the focus before it takes the keys.
        self.screen.xdotool("windowfocus", self.number, "key", "--clearmodifiers", *keys)

    def type(self, text):
        self.screen.xdotool("type", "--delay", 20, text)

    def click(self, left, top):
        self.screen.xdotool("windowfocus", self.number, "mousemove", self.left + left, self.top + top, "click", 1)

    def picture(self, left=0, top=0, width=None, height=None):
        return self.screen.picture(self.left + left, self.top + top, width or self.width - left,
                                   height or self.height - top)


def settings_file(home):
    return Path(home) / ".config/TarvikVI/TarvikVI.conf"


class Program:
    """The program in a home of its own."""

    # Boxes are smaller than the panel.
    PANEL_WIDTH = 560

    def __init__(self, screen, path, home, arguments=(), folder=None, output=None, accessible=False, **variables):
        """Starts in the folder, or in its home, with these variables of the environment; what it prints goes into the file
        `output`. With `accessible` it joins the accessibility bus of the session that this process runs in."""
        self.screen, self.home = screen, Path(home)
        self.home.chmod(0o700)
        environment = {**os.environ, "HOME": str(home), "DISPLAY": screen.display, "QT_QPA_PLATFORM": "xcb",
                       "LC_ALL": "C.UTF-8", "XDG_RUNTIME_DIR": str(home), "QT_ACCESSIBILITY": "0"}
        if accessible:
            environment.pop("QT_ACCESSIBILITY")
            environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        else:
            environment.pop("DBUS_SESSION_BUS_ADDRESS", None)
        for name in ("XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_DIRS", "WAYLAND_DISPLAY",
                     "QT_SCALE_FACTOR", "QT_FONT_DPI", "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME",
                     "XDG_CURRENT_DESKTOP"):
            environment.pop(name, None)
        environment.update(variables)
        with open(output, "wb") if output else nullcontext() as stdout:
            self.process = subprocess.Popen([path, *arguments], env=environment, cwd=folder or home,
                                            stdin=subprocess.DEVNULL, stdout=stdout)

    def windows(self):
        numbers = self.screen.xdotool("search", "--onlyvisible", "--pid", self.process.pid, "--name", ".").split()
        return [window for window in (Window(self.screen, number) for number in numbers) if window.title]

    def panel(self):
        """The panel's window, once it is there and drawn."""
        def found():
            for window in self.windows():
                if window.width >= self.PANEL_WIDTH and window.picture().dark() > 500:
                    return window
            assert self.process.poll() is None, f"the program ended with code {self.process.poll()}"
            return None
        return wait_for("the panel's window", found)

    def find_box(self):
        return next((window for window in self.windows() if window.width < self.PANEL_WIDTH), None)

    def box(self):
        """The next box, once it is there and drawn."""
        return wait_for("a box", lambda: (box := self.find_box()) and box.picture().dark() > 50 and box)

    def close_box(self, box, key="Return"):
        box.key(key)
        wait_for("the box goes", lambda: all(window.number != box.number for window in self.windows()))

    def settings(self):
        path = settings_file(self.home)
        return path.read_text(encoding="utf-8") if path.exists() else ""

    def log(self):
        path = self.home / ".local/state/tarvikvi/tarvikerr.txt"
        return path.read_bytes().decode("utf-8") if path.exists() else ""

    def quit(self):
        """Ctrl+Q, and the code the program ended with."""
        self.panel().key("ctrl+q")
        return wait_for("the program ends", lambda: self.process.poll() is not None) and self.process.returncode

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait(timeout=PATIENCE)
