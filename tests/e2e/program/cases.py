"""The program as its user meets it: in a window, with keys and mouse.

usage: cases.py PROGRAM [Program.test_NAME]
"""

import json
import sys
import tempfile
import unittest
from pathlib import Path

from panel import PanelPlaces
from rack import BENCH, TAKEN, fill_rack
from screen import (SKIPPED, STATUS_HEIGHT, Program as Started, Screen, panel_top, settings_file, tools_missing,
                    wait_for)

# The middle of buttons, counted as the places below, and the share of the page that the pressed one takes.
SELFTEST, ERRORS, UPLOAD = (502, 144), (463, 477), (310, 477)
SELFTEST_BUTTON_SHARE = 0.02

# The Edit menu in the bar, counted from the window's corner.
EDIT_MENU = (52, 11)


class Setups(PanelPlaces):
    """A user who keeps setups; what the pages show is read back from the file that is saved over and over."""

    WIDTH = "timing.width[1]"

    def __init__(self, program, file):
        self.program, self.file = program, file

    def window(self, title):
        return wait_for(f'a window "{title}"', lambda: next(
            (window for window in self.program.windows() if window.title == title and window.picture().dark() > 50), None))

    def name_file(self, title):
        """Types the name into a dialog for files."""
        dialog = self.window(title)
        dialog.key("alt+n")
        dialog.type(str(self.file))
        dialog.key("Return")
        wait_for("the dialog goes", lambda: all(window.title != title for window in self.program.windows()))

    def save_as(self):
        self.program.panel().key("ctrl+shift+s")
        self.name_file("Save setup")
        wait_for("the file", lambda: self.file.exists() and self.width())

    def width(self):
        """Of channel 1 in the file, in seconds."""
        return json.loads(self.file.read_text(encoding="utf-8")).get("settings", {}).get(self.WIDTH)

    def saved_width_becomes(self, seconds):
        def saved():
            self.program.panel().key("ctrl+s")
            return self.width() == seconds
        wait_for(f"the panel has a width of {seconds} s", saved)

    def compare(self, *keys):
        """The dialog, after these keys."""
        self.program.panel().key("ctrl+d")
        dialog = self.window("Compare settings")
        dialog.key(*keys)
        return dialog

    @staticmethod
    def rows(dialog):
        """The first row of the table, beside the pointer of one who has clicked on its page."""
        return dialog.picture(120, 62, 300, 22)

    def close(self, dialog):
        dialog.key("Escape")
        wait_for("the dialog goes", lambda: all(window.title != dialog.title for window in self.program.windows()))


class Program(PanelPlaces, unittest.TestCase):
    path = ""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.home = self.folder / "home"
        self.drivers = self.home / ".local/share/tarvikvi/drivers"
        fill_rack(self.drivers, BENCH, TAKEN)

    def start(self, width=1280, height=1024):
        screen = Screen(self.folder / f"screen-{width}", width, height)
        self.addCleanup(screen.close)
        return self.start_on(screen)

    def start_managed(self, *arguments, **variables):
        screen = Screen(self.folder / "managed", 1600, 1000)
        self.addCleanup(screen.close)
        screen.manage()
        return self.start_on(screen, *arguments, **variables)

    def start_on(self, screen, *arguments, **variables):
        program = Started(screen, self.path, self.home, arguments, **variables)
        self.addCleanup(program.close)
        return program

    def test_starts_with_a_window_that_lists_the_instruments(self):
        program = self.start()
        panel = program.panel()
        wait_for("the title tells of the connection", lambda: program.panel().title == "TarvikVI - this machine")
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

    def test_clicks_made_before_the_start_do_nothing(self):
        screen = Screen(self.folder / "screen")
        self.addCleanup(screen.close)
        # From the second time on the window comes to the place where it was; the pointer waits there for it.
        for _ in range(2):
            program = self.start_on(screen)
            panel = program.panel()
            self.assertEqual(program.quit(), 0)
        screen.xdotool("mousemove", panel.left + UPLOAD[0], panel.top + panel_top(panel) + UPLOAD[1])
        for _ in range(4):
            with screen.clicking():
                program = self.start_on(screen)
                panel = program.panel()

            def listed():
                # The start serves its window once; a click of that moment is told that no instrument is open.
                box = program.find_box()
                if box:
                    program.close_box(box)
                return not box and self.row(panel, 1).dark() > 20
            wait_for("the list", listed)
            self.assertEqual(program.log(), "", "a command of before the start would have failed")
            self.assertEqual(program.quit(), 0)

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
            return self.shown(panel, 190, 224, 40, 14)

        self.enter(panel, 200, 231, "250n")
        wait_for("the Upload button casts a shadow", lambda: self.upload_shadow(panel))
        panel.key("alt+u")
        wait_for("the shadow goes", lambda: not self.upload_shadow(panel))
        self.assertIsNone(program.find_box())
        sent = width()

        self.enter(panel, 200, 231, "700n")
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
        self.enter(panel, 200, 200, "9u")
        wait_for("the Upload button casts a shadow", lambda: self.upload_shadow(panel))
        panel.key("alt+u")
        box = program.box()
        self.assertEqual(box.title, "TarvikVI")
        program.close_box(box)
        self.assertIsNone(program.process.poll())
        self.assertEqual(program.quit(), 0)

    def take_menu(self, program, menu, letter):
        """Opens a menu by its letter and takes an entry by its own, which brings a box."""
        program.panel().key(f"alt+{menu}")
        # The menu is a window of its own without a name.
        def opened():
            program.screen.xdotool("key", letter)
            return program.find_box()
        return wait_for("the entry's box", opened, 10)

    def test_about_box_opens_and_closes(self):
        program = self.start()
        box = self.take_menu(program, "h", "a")
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
        self.assertIn("[Window]\nPlace=", program.settings())

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
            return self.shown(panel, 26, 147, 14, 14)
        before = box().dark()
        self.click(panel, 33, 154)
        wait_for("the box is ticked", lambda: box().dark() > before + 5)
        self.assertEqual(program.quit(), 0)
        for line in ("Upload=All", "Download=All", "AutoErrors=1", "AutoDownOnError=1", "AutoOutputOnOff=1"):
            self.assertIn(line + "\n", program.settings())

    def test_an_answered_question_is_gone_and_clicks_are_dropped_while_the_instrument_works(self):
        # Longer than everything that is looked at meanwhile takes on a busy machine.
        fill_rack(self.drivers, BENCH, "self test delay = 20000 ms\n", TAKEN)
        program = self.start()
        panel = program.panel()
        wait_for("the list", lambda: self.row(panel, 1).dark() > 20)
        self.open_first(panel)
        # Two pages have this letter; the first press stays on the one in front.
        panel.key("alt+n")
        self.change_page(panel, "alt+n")
        page = self.page(panel)
        self.click(panel, *SELFTEST)
        program.close_box(program.box())
        wait_for("the page as it was before the question",
                 lambda: self.page(panel).differs_from(page) < SELFTEST_BUTTON_SHARE)
        self.assertIsNone(program.find_box(), "the self-test still runs")

        for _ in range(3):
            self.click(panel, *ERRORS)
        result = program.box()
        self.assertEqual(result.title, "TarvikVI: Selftest")
        program.close_box(result)
        self.change_page(panel, "alt+o")
        self.assertIsNone(program.find_box(), "the clicks on Errors are gone")
        self.assertEqual(program.log(), "")

    def test_a_broken_driver_is_told_in_a_stop_box_and_the_program_runs_on(self):
        (self.drivers / "KolvenAtl.Kolven.driver").write_text("/nowhere/libmissing.so\n", encoding="utf-8")
        program = self.start()
        self.close_boxes_of_the_start(program)
        self.assertIn("Mod: clsInstrInterface; Proc: Connect\r\n", program.log())
        self.assertIn("libmissing.so", program.log())
        panel = program.panel()
        self.change_page(panel, "alt+t")
        self.assertEqual(program.quit(), 0)

    def store(self, text):
        path = settings_file(self.home)
        path.parent.mkdir(parents=True)
        path.write_text(text, encoding="utf-8")

    def title(self, program):
        return program.panel().title

    def close_boxes_of_the_start(self, program):
        """Being offline is told first, then the fault; the record is written when the fault was read."""
        for _ in range(3):
            program.close_box(program.box())
            if "Proc: Connect" in program.log():
                break

    def choose_server(self, program, address):
        box = self.take_menu(program, "s", "a")
        self.assertEqual(box.title, "Server Address")
        box.key("ctrl+a", "Delete")
        if address:
            box.type(address)
        program.close_box(box)

    def test_a_dead_server_address_is_changed_from_the_menu(self):
        self.store("[LastUsed]\nServerURL=tarvik+insecure://localhost:1\n")
        program = self.start()
        self.close_boxes_of_the_start(program)
        panel = program.panel()
        wait_for("the title tells that nothing is connected", lambda: self.title(program)
                 == "TarvikVI - tarvik+insecure://localhost:1 (not connected)")
        wait_for("the status bar says how to go on", lambda: self.status_bar(panel).dark() > 100)
        self.assertEqual(self.row(panel, 0).dark(), 0)

        self.choose_server(program, "")
        wait_for("two rows", lambda: self.row(panel, 0).dark() > 20 and self.row(panel, 1).dark() > 20)
        self.assertEqual(self.title(program), "TarvikVI - this machine")
        self.assertEqual(program.quit(), 0)

        program = self.start_on(program.screen)
        wait_for("the choice is kept", lambda: self.title(program) == "TarvikVI - this machine")

    def test_a_server_on_the_command_line_counts_for_one_run(self):
        program = self.start_managed("--server", "tarvik+insecure://localhost:1")
        self.close_boxes_of_the_start(program)
        wait_for("the title names the server", lambda: self.title(program)
                 == "TarvikVI - tarvik+insecure://localhost:1 (not connected)")
        self.assertEqual(program.quit(), 0)
        program = self.start_on(program.screen)
        wait_for("the next run is as before", lambda: self.title(program) == "TarvikVI - this machine")

    def status_bar(self, panel):
        return panel.picture(0, panel.height - STATUS_HEIGHT + 2, 500, STATUS_HEIGHT - 4)

    def test_one_key_switches_all_outputs_off(self):
        program = self.start()
        panel = program.panel()
        wait_for("the list", lambda: self.row(panel, 1).dark() > 20)
        empty = self.status_bar(panel).dark()
        panel.key("F12")
        wait_for("it says that no instrument is open", lambda: self.status_bar(panel).dark() > empty + 100)
        self.open_first(panel)
        self.change_page(panel, "alt+t")
        offline = self.status_bar(panel)

        def off():
            return self.shown(panel, 91, 345, 14, 14).dark()
        before = off()
        self.click(panel, 40, 352)
        wait_for("output 1 is on", lambda: off() < before - 5)
        panel.key("F12")
        wait_for("the switch is off again", lambda: off() == before)
        self.assertGreater(self.status_bar(panel).differs_from(offline), 0.01, "it tells what it did")
        self.assertIsNone(program.find_box())
        self.assertEqual(program.log(), "")

    def test_larger_and_smaller_by_key_on_keyboards_whose_plus_needs_shift(self):
        program = self.start_managed()
        panel = program.panel()
        width = panel.width
        for keys, expected in (("ctrl+plus", 1.2), ("ctrl+equal", 1.4), ("ctrl+KP_Add", 1.7), ("ctrl+minus", 1.4),
                               ("ctrl+KP_Subtract", 1.2)):
            program.panel().key(keys)
            wait_for(f"{keys} leads to {expected}", lambda: abs(program.panel().width / width - expected) < 0.06)
        self.assertEqual(program.quit(), 0)
        self.assertIn("[View]\nZoom=120\n", program.settings())
        again = self.start_on(program.screen)
        self.assertAlmostEqual(again.panel().width / width, 1.2, delta=0.06)
        again.panel().key("ctrl+0")
        wait_for("fitting is kept, too", lambda: "Zoom=0\n" in again.settings())

    def test_a_maximized_window_shows_a_large_panel_in_its_middle(self):
        program = self.start_managed()
        panel = program.panel()
        wait_for("the list", lambda: self.row(panel, 1).dark() > 20)
        small = self.extent(panel)
        panel.key("super+m")
        wait_for("the window is maximized", lambda: program.panel().width > 1500)
        panel = program.panel()

        def is_large_and_in_the_middle():
            left, top, right, bottom = self.extent(panel)
            return (bottom - top > 1.6 * (small[3] - small[1]) and bottom - top > 0.85 * panel.height
                    and abs(left - (panel.width - right)) < 0.05 * panel.width)
        wait_for("the panel has grown and stands in the middle", is_large_and_in_the_middle)

    def extent(self, panel):
        """Left, top, right and bottom of what is drawn below the menu and above the status bar."""
        top = 30
        picture = panel.picture(0, top, panel.width, panel.height - STATUS_HEIGHT - top)
        ground = picture.pixels[0]
        drawn = [(i % picture.width, i // picture.width) for i, pixel in enumerate(picture.pixels)
                 if abs(pixel - ground) > 24]
        columns, rows = [x for x, _ in drawn], [y for _, y in drawn]
        return min(columns), min(rows) + top, max(columns), max(rows) + top

    def test_ctrl_q_quits_under_every_desktop(self):
        screen = Screen(self.folder / "screen")
        self.addCleanup(screen.close)
        for desktop in ("", "KDE", "GNOME", "XFCE"):
            program = self.start_on(screen, XDG_CURRENT_DESKTOP=desktop)
            self.assertEqual(program.quit(), 0, desktop)

    def keep_setups(self):
        program = self.start_managed()
        panel = program.panel()
        wait_for("the list", lambda: self.row(panel, 1).dark() > 20)
        self.open_first(panel)
        self.change_page(panel, "alt+t")
        setups = Setups(program, self.folder / "bench.json")
        setups.save_as()
        self.assertEqual(setups.width(), 1e-07)
        return program, panel, setups

    def test_a_change_is_saved_undone_and_redone_by_keys(self):
        program, panel, setups = self.keep_setups()
        self.enter(panel, 200, 231, "250n")
        setups.saved_width_becomes(2.5e-07)
        panel.key("ctrl+z")
        setups.saved_width_becomes(1e-07)
        panel.key("ctrl+shift+z")
        setups.saved_width_becomes(2.5e-07)
        self.assertIsNone(program.find_box())
        self.assertEqual(program.log(), "")

    def test_a_change_is_undone_and_redone_by_mouse(self):
        program, panel, setups = self.keep_setups()
        self.enter(panel, 200, 231, "250n")
        setups.saved_width_becomes(2.5e-07)
        for entry, width in ((0, 1e-07), (1, 2.5e-07)):
            closed = panel.picture(0, 0, 300, 120)
            panel.click(*EDIT_MENU)
            wait_for("the menu opens", lambda: panel.picture(0, 0, 300, 120).differs_from(closed) > 0.05)
            panel.click(EDIT_MENU[0] + 20, EDIT_MENU[1] + 24 + 22 * entry)
            setups.saved_width_becomes(width)
        self.assertEqual(program.log(), "")

    def test_what_differs_from_the_instrument_is_compared_and_taken_over(self):
        program, panel, setups = self.keep_setups()
        self.enter(panel, 200, 231, "250n")
        dialog = setups.compare("alt+r")
        wait_for("a row", lambda: setups.rows(dialog).dark() > 50)
        dialog.click(60, 75)
        dialog.key("alt+i")
        wait_for("nothing differs", lambda: setups.rows(dialog).dark() == 0)
        setups.close(dialog)
        setups.saved_width_becomes(1e-07)

    def test_what_differs_from_a_file_is_compared_and_taken_over_by_keys(self):
        program, panel, setups = self.keep_setups()
        self.enter(panel, 200, 231, "250n")
        dialog = setups.compare("alt+o")
        setups.name_file("Open setup")
        dialog = setups.window("Compare settings")
        wait_for("a row", lambda: setups.rows(dialog).dark() > 50)
        # From the filter by the page to the table.
        dialog.key("Tab", "Tab", "ctrl+a", "alt+t")
        wait_for("nothing differs", lambda: setups.rows(dialog).dark() == 0)
        setups.close(dialog)
        setups.saved_width_becomes(1e-07)


if __name__ == "__main__":
    if tools_missing():
        print("not installed:", *tools_missing())
        sys.exit(SKIPPED)
    Program.path = sys.argv.pop(1)
    unittest.main()
