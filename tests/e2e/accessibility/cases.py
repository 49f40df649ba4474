"""The panel as a screen reader meets it: through the desktop's accessibility bus.

usage, on a session bus of its own: cases.py PROGRAM [Accessibility.test_NAME]
"""

import sys
import tempfile
import unittest
from pathlib import Path

import pyatspi
from gi.repository import GLib

sys.path.insert(0, str(Path(__file__).parent.parent / "program"))
from rack import BENCH, fill_rack  # noqa: E402
from screen import PATIENCE, Program as Started, Screen, wait_for  # noqa: E402

# The keys that bring each page to the front, and a control by which it is known.
PAGES = {
    "Instr.": ("alt+n", "push button", "Refresh"),
    "Mode/Trg": ("alt+m", "radio button", "Gated, Trigger Mode"),
    "Timing": ("alt+t", "spin button", "Width, Channel 1"),
    "Levels": ("alt+l", "combo box", "Level Format, Channel 1"),
    "Pattern": ("alt+p", "spin button", "Actual Address"),
    "Limits": ("alt+i", "spin button", "High Voltage, Channel 1"),
    "Trg-Lev": ("alt+r", "spin button", "Threshold, External Input"),
    "Config": ("alt+n", "combo box", "Source, PLL Reference"),
    "Options": ("alt+o", "check box", "Auto-download New Instrument, Settings"),
}

FIELDS_OF_TIMING = ["Delay", "Width", "Leading Edge", "Trailing Edge"]


def everything_in(part):
    """The part and all that is within it, closed menus and hidden pages included."""
    yield part
    for i in range(part.childCount):
        child = part.getChildAtIndex(i)
        if child:
            yield from everything_in(child)


def is_shown(part):
    return part.getState().contains(pyatspi.STATE_SHOWING)


class Accessibility(unittest.TestCase):
    path = ""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        home = Path(folder.name, "home")
        fill_rack(home / ".local/share/tarvikvi/drivers", BENCH)
        screen = Screen(Path(folder.name, "screen"))
        self.addCleanup(screen.close)
        self.program = Started(screen, self.path, home, accessible=True)
        self.addCleanup(self.program.close)
        self.panel = self.program.panel()
        self.events = []

        def mine():
            desktop = pyatspi.Registry.getDesktop(0)
            return next((application for application in desktop if application and application.name == "TarvikVI"),
                        None)
        self.application = wait_for("the program is on the accessibility bus", mine)
        # The bindings keep names and states that they have once read.
        self.application.setCacheMask(pyatspi.Atspi.Cache.NONE)
        wait_for("the instrument is listed", lambda: self.find("table cell", "Bench"))

    # ---- what there is

    def find(self, role, name):
        return next((part for part in everything_in(self.application)
                     if part.name == name and part.getRoleName() == role), None)

    def part(self, role, name):
        return wait_for(f"there is a {role} named {name}", lambda: self.find(role, name))

    def shown(self, *roles):
        return [part for part in everything_in(self.application) if part.getRoleName() in roles and is_shown(part)]

    def tab(self, caption):
        """What the tab of this caption is called, its state included."""
        return next(part.name for part in everything_in(self.application)
                    if part.getRoleName() == "page tab" and part.name.split(",")[0] == caption)

    def go_to(self, page):
        key, role, name = PAGES[page]

        def in_front():
            control = self.find(role, name)
            return control and is_shown(control)
        # Two tabs share N, and R also belongs to a button: pressed again, the key goes to the next one.
        for _ in range(3):
            if in_front():
                return
            self.panel.key(key)
            try:
                wait_for(f"the page {page} is in front", in_front, seconds=PATIENCE / 10)
            except AssertionError:
                continue
        self.assertTrue(in_front(), page)

    # ---- what is told

    def listen(self, *kinds):
        def note(event):
            self.events.append((event.source.name, event.detail1))
        pyatspi.Registry.registerEventListener(note, *kinds)
        self.addCleanup(pyatspi.Registry.deregisterEventListener, note, *kinds)

    def told(self, what, condition):
        """Waits for an event for which the condition holds."""
        def came():
            while GLib.MainContext.default().iteration(False):
                pass
            return any(condition(*event) for event in self.events)
        try:
            wait_for(what, came)
        except AssertionError as error:
            raise AssertionError(f"{error}; told was {self.events}") from None

    def click(self, part, times=1):
        """Into the part's left half, since a button's right one may open its menu."""
        place = part.queryComponent().getExtents(pyatspi.DESKTOP_COORDS)
        self.panel.screen.xdotool("mousemove", place.x + place.width // 3, place.y + place.height // 2, "click",
                                  "--repeat", times, "--delay", 60, 1)

    def open_instrument(self):
        self.click(self.part("table cell", "Bench"), times=2)
        wait_for("the session is open", lambda: self.find("text", "Status").queryText().getText(0, -1)
                 .startswith("Online with Bench"))

    # ---- the cases

    def test_a_field_is_a_spin_box_with_value_minimum_and_maximum(self):
        self.go_to("Timing")
        width = self.part("spin button", "Width, Channel 1")
        value = width.queryValue()
        self.assertEqual(1.5e-9, value.currentValue)
        self.assertEqual(1.5e-9, value.minimumValue)
        self.assertEqual(999.5, value.maximumValue)
        self.assertEqual("1.500", width.queryText().getText(0, -1))
        self.assertTrue(width.description.startswith("1.500 ns"), width.description)

    def test_fields_of_two_channels_are_told_apart(self):
        self.go_to("Timing")
        names = [part.name for part in self.shown("spin button")]
        for channel in ("Channel 1", "Channel 2"):
            for field in FIELDS_OF_TIMING:
                self.assertIn(f"{field}, {channel}", names)
        self.assertIn("Period or frequency", names)

    def test_all_that_takes_the_focus_has_a_name_of_its_own_on_every_page(self):
        for page in PAGES:
            self.go_to(page)
            named = {}
            for part in self.shown("spin button", "combo box", "push button", "radio button", "check box", "canvas",
                                   "tree", "scroll bar"):
                self.assertNotEqual("", part.name, f"{page}: a {part.getRoleName()}")
                self.assertNotIn((part.getRoleName(), part.name), named, page)
                named[part.getRoleName(), part.name] = part
            self.assertGreater(len(named), 4, page)

    def test_a_list_is_named_by_what_it_chooses(self):
        self.go_to("Levels")
        units = self.part("combo box", "Voltage/Current, Channel 1")
        self.assertEqual(["Voltage", "Current"], [item.name for item in units.getChildAtIndex(0)])
        self.assertIn("Level Format, Channel 2", [part.name for part in self.shown("combo box")])

    def test_the_tick_of_an_instrument_is_told(self):
        self.listen("object:state-changed:checked")
        self.open_instrument()
        self.told("the tick of the instrument", lambda name, on: name == "Bench" and on == 1)
        row = self.part("table cell", "Bench")
        self.assertTrue(row.getState().contains(pyatspi.STATE_CHECKED))

    def test_the_pattern_tells_row_address_and_bit_as_the_user_moves(self):
        self.listen("object:property-change:accessible-name")
        self.go_to("Pattern")
        self.click(self.part("push button", "Channel1"))
        self.told("the row", lambda name, on: name == "Pattern: Channel 1, address 1 of 2, bit 0")
        picture = self.shown("canvas")[0]
        picture.queryComponent().grabFocus()
        wait_for("the picture has the focus", lambda: picture.getState().contains(pyatspi.STATE_FOCUSED))
        self.panel.key("1")
        self.told("the next address", lambda name, on: name == "Pattern: Channel 1, address 2 of 2, bit 0")
        self.panel.key("Left")
        self.told("the address before", lambda name, on: name == "Pattern: Channel 1, address 1 of 2, bit 1")
        self.assertEqual(1, picture.queryValue().currentValue)
        self.assertEqual(2, picture.queryValue().maximumValue)

    def test_the_state_of_a_page_is_told_in_words(self):
        self.listen("object:property-change:accessible-name")
        self.go_to("Options")
        self.click(self.part("check box", "Auto-download New Instrument, Settings"))
        self.go_to("Instr.")
        self.open_instrument()
        self.told("a page is not read yet", lambda name, on: name == "Levels, not read from the instrument yet")
        self.click(self.part("push button", "Download From Instrument"))
        wait_for("all is read", lambda: self.tab("Levels") == "Levels")
        self.go_to("Timing")
        width = self.part("spin button", "Width, Channel 1")
        width.queryComponent().grabFocus()
        wait_for("the field has the focus", lambda: width.getState().contains(pyatspi.STATE_FOCUSED))
        self.panel.key("Up")
        self.told("the page is changed", lambda name, on: name == "Timing, changed, not uploaded")

    def test_a_number_can_be_entered_from_outside(self):
        self.open_instrument()
        self.go_to("Timing")
        width = self.part("spin button", "Width, Channel 1")
        width.queryValue().currentValue = 250e-9
        wait_for("the field shows it", lambda: width.queryText().getText(0, -1) == "250.0")
        self.assertAlmostEqual(250e-9, width.queryValue().currentValue, delta=1e-18)
        wait_for("the page is changed", lambda: self.tab("Timing") == "Timing, changed, not uploaded")


if __name__ == "__main__":
    Accessibility.path = sys.argv.pop(1)
    unittest.main()
