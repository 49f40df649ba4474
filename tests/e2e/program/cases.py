"""The program as its user meets it: in a window, with keys and mouse.

usage: cases.py PROGRAM [Program.test_NAME]
"""

import sys
import tempfile
import unittest
from pathlib import Path

from screen import PANEL_HEIGHT, SKIPPED, Program as Started, Screen, tools_missing, wait_for

RACK = """
[Bench]
kind = slot
address = 24
slot = 3
model code = 0x0210
[Taken]
kind = slot
address = 25
slot = 4
opens = no
"""


class Program(unittest.TestCase):
    path = ""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.home = self.folder / "home"
        self.drivers = self.home / "data/tarvikvi/drivers"
        self.drivers.mkdir(parents=True)
        (self.drivers / "KolvenAtl.Kolven.rack").write_text(RACK, encoding="utf-8")

    def start(self, width=1280, height=1024):
        screen = Screen(self.folder / f"screen-{width}", width, height)
        self.addCleanup(screen.close)
        return self.start_on(screen)

    def start_on(self, screen):
        program = Started(screen, self.path, self.home)
        self.addCleanup(program.close)
        return program

    # Places on the panel, counted from its upper left corner.

    @staticmethod
    def shown(panel, left, top, width, height):
        return panel.picture(left, panel.height - PANEL_HEIGHT - 2 + top, width, height)

    @staticmethod
    def click(panel, left, top):
        panel.click(left, panel.height - PANEL_HEIGHT - 2 + top)

    def page(self, panel):
        return self.shown(panel, 0, 0, 616, 344)

    def status(self, panel):
        return self.shown(panel, 67, 355, 540, 46)

    def row(self, panel, number):
        return self.shown(panel, 36, 58 + 14 * number, 250, 14)

    def tick(self, panel, number):
        self.click(panel, 26, 65 + 14 * number)

    def upload_shadow(self, panel):
        return self.shown(panel, 222, 443, 180, 8).dark() > 180

    def change_page(self, panel, key):
        before = self.page(panel)
        panel.key(key)
        wait_for(f"{key} changes the page", lambda: self.page(panel).differs_from(before) > 0.01)
        return self.page(panel)

    def open_first(self, panel):
        empty = self.status(panel).dark()
        self.tick(panel, 0)
        wait_for("the status tells of the session", lambda: self.status(panel).dark() > empty + 150)

    def enter(self, panel, left, top, text):
        """Writes over a number field and confirms it."""
        self.click(panel, left, top)
        panel.key("ctrl+a")
        panel.type(text)
        panel.key("Return")

    def test_starts_with_a_window_that_lists_the_instruments(self):
        program = self.start()
        panel = program.panel()
        self.assertEqual(panel.title, "TarvikVI")
        wait_for("two rows", lambda: self.row(panel, 0).dark() > 20 and self.row(panel, 1).dark() > 20)
        self.assertEqual(self.row(panel, 2).dark(), 0, "the rack holds two instruments")
        self.assertEqual(program.quit(), 0)
        self.assertEqual(program.log(), "")

    def test_ticking_a_row_opens_a_session_and_unticking_ends_it(self):
        program = self.start()
        panel = program.panel()
        wait_for("the list", lambda: self.row(panel, 1).dark() > 20)
        offline = self.status(panel)
        self.open_first(panel)
        self.assertIsNone(program.find_box())
        self.tick(panel, 0)
        wait_for("offline again", lambda: self.status(panel).differs_from(offline) < 0.005)
        self.assertEqual(program.log(), "")

    def test_an_instrument_that_does_not_open_is_told_in_a_box(self):
        program = self.start()
        panel = program.panel()
        wait_for("the list", lambda: self.row(panel, 1).dark() > 20)
        self.tick(panel, 1)
        box = program.box()
        self.assertEqual(box.title, "TarvikVI")
        program.close_box(box)
        self.open_first(panel)

    def test_the_alt_keys_lead_to_the_pages(self):
        program = self.start()
        panel = program.panel()
        wait_for("the list", lambda: self.row(panel, 1).dark() > 20)
        seen = [self.page(panel)]
        for letter in "mtlpiro":
            page = self.change_page(panel, f"alt+{letter}")
            for other in seen:
                self.assertGreater(page.differs_from(other), 0.01, f"alt+{letter} leads to a page of its own")
            seen.append(page)

    def test_a_typed_value_is_uploaded_and_downloaded(self):
        program = self.start()
        panel = program.panel()
        wait_for("the list", lambda: self.row(panel, 1).dark() > 20)
        self.open_first(panel)
        self.change_page(panel, "alt+t")
        self.assertFalse(self.upload_shadow(panel))

        def width():
            return self.shown(panel, 190, 197, 40, 14)

        self.enter(panel, 200, 204, "250n")
        wait_for("the Upload button casts a shadow", lambda: self.upload_shadow(panel))
        panel.key("alt+u")
        wait_for("the shadow goes", lambda: not self.upload_shadow(panel))
        self.assertIsNone(program.find_box())
        sent = width()

        self.enter(panel, 200, 204, "700n")
        wait_for("the Upload button casts a shadow", lambda: self.upload_shadow(panel))
        self.assertGreater(width().differs_from(sent), 0.06)
        panel.key("alt+d")
        wait_for("the shadow goes", lambda: not self.upload_shadow(panel))
        wait_for("the sent width is back", lambda: width().differs_from(sent) < 0.05)
        self.assertEqual(program.log(), "")

    def test_settings_that_the_instrument_refuses_are_told_in_a_box(self):
        program = self.start()
        panel = program.panel()
        wait_for("the list", lambda: self.row(panel, 1).dark() > 20)
        self.open_first(panel)
        self.change_page(panel, "alt+t")
        # Beyond the period of a microsecond.
        self.enter(panel, 200, 176, "9u")
        wait_for("the Upload button casts a shadow", lambda: self.upload_shadow(panel))
        panel.key("alt+u")
        box = program.box()
        self.assertEqual(box.title, "TarvikVI")
        program.close_box(box)
        self.assertIsNone(program.process.poll())
        self.assertEqual(program.quit(), 0)

    def test_about_box_opens_and_closes(self):
        program = self.start()
        panel = program.panel()
        panel.key("alt+h")
        # The menu is a window of its own without a name; its first entry is taken by its letter.
        def about():
            program.screen.xdotool("key", "a")
            return program.find_box()
        box = wait_for("the About box", about, 10)
        self.assertEqual(box.title, "About TarvikVI")
        program.close_box(box, "Escape")
        self.assertEqual(program.quit(), 0)

    def test_the_place_of_the_window_is_remembered(self):
        screen = Screen(self.folder / "screen", 1280, 1024)
        self.addCleanup(screen.close)
        program = self.start_on(screen)
        panel = program.panel()
        screen.xdotool("windowmove", "--sync", panel.number, 333, 222)
        wait_for("the window is there", lambda: (program.panel().left, program.panel().top) == (333, 222))
        self.assertEqual(program.quit(), 0)
        self.assertIn("Geometry=", program.settings())

        again = self.start_on(screen).panel()
        self.assertEqual((again.left, again.top, again.width, again.height), (333, 222, panel.width, panel.height))

    def test_a_place_on_a_screen_that_is_gone_is_not_taken(self):
        program = self.start(2400, 1600)
        panel = program.panel()
        program.screen.xdotool("windowmove", "--sync", panel.number, 1700, 1100)
        wait_for("the window is there", lambda: (program.panel().left, program.panel().top) == (1700, 1100))
        self.assertEqual(program.quit(), 0)

        panel = self.start(800, 600).panel()
        self.assertGreaterEqual(panel.left, 0)
        self.assertGreaterEqual(panel.top, 0)
        self.assertLessEqual(panel.left + panel.width, 800)
        self.assertLessEqual(panel.top + panel.height, 600)

    def test_the_options_are_stored_at_the_end(self):
        program = self.start()
        panel = program.panel()
        wait_for("the list", lambda: self.row(panel, 1).dark() > 20)
        self.change_page(panel, "alt+o")
        def box():
            return self.shown(panel, 26, 145, 14, 14)
        before = box().dark()
        self.click(panel, 33, 152)
        wait_for("the box is ticked", lambda: box().dark() > before + 5)
        self.assertEqual(program.quit(), 0)
        for line in ("Upload=All", "Download=All", "AutoErrors=1", "AutoDownOnError=1", "AutoOutputOnOff=1"):
            self.assertIn(line + "\n", program.settings())

    def test_a_broken_driver_is_told_in_a_stop_box_and_the_program_runs_on(self):
        (self.drivers / "KolvenAtl.Kolven.driver").write_text("/nowhere/libmissing.so\n", encoding="utf-8")
        program = self.start()
        # Being offline is told first, then the fault; the record is written when the fault was read.
        for _ in range(3):
            program.close_box(program.box())
            if "Proc: Connect" in program.log():
                break
        self.assertIn("Mod: clsInstrInterface; Proc: Connect\r\n", program.log())
        self.assertIn("libmissing.so", program.log())
        panel = program.panel()
        self.change_page(panel, "alt+t")
        self.assertEqual(program.quit(), 0)


if __name__ == "__main__":
    if tools_missing():
        print("not installed:", *tools_missing())
        sys.exit(SKIPPED)
    Program.path = sys.argv.pop(1)
    unittest.main()
