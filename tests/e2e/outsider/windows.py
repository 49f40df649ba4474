"""The hosts that the documents show, worked in their windows.

usage: windows.py FOLDER_OF_HOSTS FOLDER_FOR_HOMES PROGRAM

The home of the process has the driver that the documents show.
"""

import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "program"))
from panel import PanelPlaces
from screen import Program, Screen, wait_for


class Hosts(PanelPlaces, unittest.TestCase):
    hosts = work = program = None

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

    def test_the_driver_is_worked_by_the_panel(self):
        screen = Screen(self.work / "panel/screen")
        self.addCleanup(screen.close)
        program = Program(screen, self.program, Path.home())
        self.addCleanup(program.close)
        panel = program.panel()
        wait_for("the driver's instrument is listed", lambda: self.row(panel, 0).dark() > 20)
        self.assertEqual(self.row(panel, 1).dark(), 0, "the driver has one instrument")
        self.open_first(panel)
        self.change_page(panel, "alt+t")
        self.enter(panel, 200, 204, "250n")
        wait_for("the Upload button casts a shadow", lambda: self.upload_shadow(panel))
        panel.key("alt+u")
        wait_for("the shadow goes", lambda: not self.upload_shadow(panel))
        self.assertIsNone(program.find_box())
        self.assertEqual(program.quit(), 0)
        self.assertEqual(program.log(), "")


if __name__ == "__main__":
    Hosts.hosts, Hosts.work, Hosts.program = map(Path, sys.argv[1:4])
    unittest.main(argv=sys.argv[:1] + sys.argv[4:])
