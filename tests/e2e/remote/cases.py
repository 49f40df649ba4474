"""The program on a machine without instruments, and the server that has them.

usage: cases.py PROGRAM SERVER LIBRARY CERTIFICATE_SCRIPT [Remote.test_NAME]

TARVIK_PICTURES names a folder in which the program's window is kept as a picture.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "program"))
from rack import BENCH, fill_rack  # noqa: E402
from screen import SKIPPED, STATUS_TOP, Program, Screen, panel_top, tools_missing, wait_for


class Server:
    """The server program with a rack of its own."""

    def __init__(self, program, folder, certificates, port="0"):
        fill_rack(folder / "data/tarvikvi/drivers", BENCH)
        (folder / "clients").write_text("# who may work with the rack\nbench  # the client\n", encoding="utf-8")
        self._log = folder / "server.log"
        self._process = subprocess.Popen(
            [program, "--listen", "127.0.0.1", "--port", port, "--certificate", certificates / "server.pem",
             "--key", certificates / "server.key", "--authority", certificates / "ca.pem",
             "--allow-file", folder / "clients", "--log", self._log],
            env={**os.environ, "XDG_DATA_HOME": str(folder / "data")}, stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, text=True)
        line = self._process.stdout.readline().strip()
        if "listening on" not in line:
            raise AssertionError(f"the server said {line!r}")
        self.port = line.rpartition(":")[2]

    def log(self):
        return self._log.read_text(encoding="utf-8")

    def close(self):
        self._process.terminate()
        code = self._process.wait(timeout=30)
        self._process.stdout.close()
        return code


class Remote(unittest.TestCase):
    path = server_path = library = script = ""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        certificates = self.certificates = self.folder / "certificates"
        subprocess.run([self.script, certificates], check=True)
        self.server = Server(self.server_path, self.folder / "server", certificates)
        self.addCleanup(self.server.close)
        self.url = f"tarvik://127.0.0.1:{self.server.port}"

        self.home = self.folder / "home"
        drivers = self.home / ".local/share/tarvikvi/drivers"
        drivers.mkdir(parents=True)
        (drivers / "KolvenAtl.Kolven.driver").write_text(f"{self.library}\n", encoding="utf-8")
        configuration = self.home / ".config/tarvikvi"
        configuration.mkdir(parents=True)
        for name in ("ca.pem", "client.pem", "client.key"):
            shutil.copy(certificates / name, configuration)
        self.screen = Screen(self.folder / "screen")
        self.addCleanup(self.screen.close)

    def start(self):
        program = Program(self.screen, self.path, self.home)
        self.addCleanup(program.close)
        return program

    def answer(self, program, text):
        """Types into the question for the server and confirms."""
        box = program.box()
        self.assertEqual(box.title, "TarvikVI")
        self.keep("question")
        box.key("ctrl+a")
        box.type(text)
        program.close_box(box)

    def keep(self, name):
        if folder := os.environ.get("TARVIK_PICTURES"):
            subprocess.run(["import", "-display", self.screen.display, "-window", "root", f"{folder}/{name}.png"])

    @staticmethod
    def shown(panel, left, top, width, height):
        return panel.picture(left, panel_top(panel) + top, width, height)

    def wait_for_the_rack(self, panel):
        """One instrument is listed, and no other."""
        # What is not drawn yet is dark all over.
        wait_for("one row in the list", lambda: 20 < self.shown(panel, 36, 58, 250, 14).dark() < 1000
                 and self.shown(panel, 36, 72, 250, 14).dark() == 0)

    def test_the_panel_asks_for_the_server_and_works_with_its_instruments(self):
        program = self.start()
        self.answer(program, self.url)
        panel = program.panel()
        self.wait_for_the_rack(panel)
        panel.click(26, panel_top(panel) + 65)
        wait_for("the server has opened it", lambda: "bench at ipv4:127.0.0.1:" in self.server.log()
                 and ": opened Bench\n" in self.server.log())
        wait_for("the status", lambda: self.shown(panel, 67, STATUS_TOP, 540, 46).dark() > 150)
        self.keep("session")
        self.assertIn("[LastUsed]\nServerURL=" + self.url + "\n", program.settings())
        self.assertEqual(program.quit(), 0)
        wait_for("the server has closed it", lambda: ": closed Bench\n" in self.server.log())
        self.assertEqual(program.log(), "")

        # The instrument interface blanks its address at a start without a question; the program keeps its own.
        for _ in range(2):
            program = self.start()
            self.wait_for_the_rack(program.panel())
            self.assertIsNone(program.find_box())
            self.assertEqual(program.panel().title, f"TarvikVI - {self.url}")
            self.assertEqual(program.quit(), 0)
            self.assertIn("[LastUsed]\nServerURL=\n", program.settings())

    def test_connecting_again_finds_a_server_that_was_away(self):
        self.server.close()
        program = Program(self.screen, self.path, self.home, ("--server", self.url))
        self.addCleanup(program.close)
        while "Proc: Connect" not in program.log():
            program.close_box(program.box())
        wait_for("the title tells that nothing is connected",
                 lambda: program.panel().title == f"TarvikVI - {self.url} (not connected)")
        self.server = Server(self.server_path, self.folder / "server", self.certificates, self.server.port)
        self.addCleanup(self.server.close)
        program.panel().key("alt+s")
        # The menu is a window of its own without a name; the entry answers once it is open.
        def connected():
            self.screen.xdotool("key", "c")
            return program.panel().title == f"TarvikVI - {self.url}"
        wait_for("the connection is back", connected)
        self.wait_for_the_rack(program.panel())

    def test_a_bad_address_is_told_and_asked_for_again_at_the_next_start(self):
        program = self.start()
        self.answer(program, "rack1")
        # Being offline is told first, then the fault.
        for _ in range(2):
            box = program.box()
            self.keep("bad-address")
            program.close_box(box)
        wait_for("the record", lambda: "no address of a driver server" in program.log())
        panel = program.panel()
        before = panel.picture()
        panel.key("alt+t")
        wait_for("the page changes", lambda: panel.picture().differs_from(before) > 0.01)
        self.assertEqual(program.quit(), 0)

        program = self.start()
        self.answer(program, self.url)
        self.wait_for_the_rack(program.panel())
        self.assertEqual(program.quit(), 0)


if __name__ == "__main__":
    if tools_missing():
        print("not installed:", *tools_missing())
        sys.exit(SKIPPED)
    Remote.path, Remote.server_path, Remote.library, Remote.script = (sys.argv.pop(1) for _ in range(4))
    unittest.main()
