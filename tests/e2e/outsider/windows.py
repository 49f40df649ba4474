"""The hosts that the documents show, worked in their windows.

usage: windows.py FOLDER_OF_HOSTS FOLDER_FOR_HOMES
"""

import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "program"))
from screen import Program, Screen, wait_for


class Hosts(unittest.TestCase):
    hosts = work = None

    def start(self, name, program, folder):
        home = self.work / name
        home.mkdir(parents=True)
        screen = Screen(home / "screen")
        self.addCleanup(screen.close)
        self.told = home / "told.txt"
        host = Program(screen, program, home, folder=folder, output=self.told)
        self.addCleanup(host.close)
        return host

    def wait_until_told(self, text):
        wait_for(f"the host tells: {text}", lambda: text in self.told.read_text(encoding="utf-8").splitlines())

    def type_into_the_field_and_ask(self, window):
        window.click(200, 22)
        window.key("ctrl+a")
        window.type("250n")
        window.key("Return", "Tab", "space")

    def work_the_compiled_host(self, name):
        host = self.start(name, self.hosts / name, self.hosts)
        self.type_into_the_field_and_ask(host.panel())
        self.wait_until_told("the user has changed the delay to 2.5e-07 s")
        self.wait_until_told("the delay is 2.5e-07 s")
        self.assertEqual(host.log(), "")

    def test_by_form_and_cmake(self):
        self.work_the_compiled_host("bench-with-cmake")

    def test_by_pkg_config_and_uic(self):
        self.work_the_compiled_host("bench-with-pkg-config")

    def test_by_loading_the_form(self):
        host = self.start("loader", self.hosts / "loader/loader", self.hosts / "loader")
        self.type_into_the_field_and_ask(host.panel())
        self.wait_until_told("the delay is 2.5e-07 s")
        self.assertEqual(host.log(), "")


if __name__ == "__main__":
    Hosts.hosts, Hosts.work = Path(sys.argv[1]), Path(sys.argv[2])
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
