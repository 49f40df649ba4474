"""Where things are in the panel's window, and what a user does there."""

from screen import BUTTONS_TOP, PAGES_BOTTOM, PATIENCE, STATUS_TOP, panel_top, wait_for


class PanelPlaces:
    """For test cases; `panel` is the window of the program."""

    # Places on the panel, counted from its upper left corner.

    @staticmethod
    def shown(panel, left, top, width, height):
        return panel.picture(left, panel_top(panel) + top, width, height)

    @staticmethod
    def click(panel, left, top):
        panel.click(left, panel_top(panel) + top)

    def page(self, panel):
        return self.shown(panel, 0, 0, 616, PAGES_BOTTOM)

    def status(self, panel):
        return self.shown(panel, 67, STATUS_TOP, 540, 46)

    def row(self, panel, number):
        return self.shown(panel, 36, 58 + 14 * number, 250, 14)

    def tick(self, panel, number):
        self.click(panel, 26, 65 + 14 * number)

    def upload_shadow(self, panel):
        return self.shown(panel, 222, BUTTONS_TOP + 28, 180, 8).dark() > 180

    def change_page(self, panel, key):
        before = self.page(panel)
        panel.key(key)
        wait_for(f"{key} changes the page", lambda: self.page(panel).differs_from(before) > 0.01)
        return self.page(panel)

    def open_first(self, panel):
        # Until its start has run the panel takes no click.
        wait_for("the instruments are listed", lambda: self.row(panel, 0).dark())
        empty = self.status(panel).dark()

        def opened():
            return self.status(panel).dark() > empty + 150
        self.tick(panel, 0)
        try:
            wait_for("the status tells of the session", opened, seconds=PATIENCE / 6)
        except AssertionError:
            # What is clicked before the last answer has been worked on is dropped.
            self.tick(panel, 0)
            wait_for("the status tells of the session", opened)

    def enter(self, panel, left, top, text):
        """Writes over a number field and confirms it."""
        self.click(panel, left, top)
        panel.key("ctrl+a")
        panel.type(text)
        panel.key("Return")
