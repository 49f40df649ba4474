"""The simulated instruments that the cases find on their machine."""

BENCH = """
[Bench]
kind = slot
address = 24
slot = 3
model code = 0x0210
"""

# Somebody else's: it does not open.
TAKEN = """
[Taken]
kind = slot
address = 25
slot = 4
opens = no
"""


def fill_rack(drivers, *instruments):
    """Writes the rack into a folder for drivers, which is made if need be."""
    drivers.mkdir(parents=True, exist_ok=True)
    (drivers / "KolvenAtl.Kolven.rack").write_text("".join(instruments), encoding="utf-8")
