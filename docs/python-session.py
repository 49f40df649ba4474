# A session at the bench, cell by cell: run it as a script, or open it in an editor that runs cells.

# %% Which instruments are there?
import json

import numpy

import tarvikvi

for instrument in tarvikvi.list():
    print(instrument)

# %% Open one and keep what it has now
pg = tarvikvi.open("VP-210")
pg.reset()
before = pg.setup()
before.save("before.json")
print(before)

# %% Set what belongs together
with pg.transaction():
    pg.timing.period = 1e-6
    pg.timing.width[1] = "100ns"
    pg.levels.high[1] = 3.3
    pg.levels.low[1] = 0
    pg.levels.output[1] = True

try:
    pg.timing.width[1] = "2us"
except tarvikvi.RefusedError as error:
    print("refused:", *error.reasons)

# %% Sweep, and keep the whole setup with every point
rows = []
for width in (20e-9, 50e-9, 100e-9, 200e-9):
    pg.timing.width[1] = width
    rows.append({"width": pg.timing.width[1], "setup": pg.snapshot()})
with open("sweep.json", "w", encoding="utf-8") as file:
    json.dump(rows, file)

# %% A pattern from numpy, and back without a copy
bits = numpy.tile([1, 0, 1, 1, 0, 0, 0, 1], 32)
pg.pattern.stream[1] = bits
assert numpy.array_equal(numpy.asarray(pg.pattern.stream[1]), bits)

# %% What has changed since the beginning? Put it back
for difference in before.compare(pg.setup()):
    print(difference)
pg.apply(before)
assert pg.setup().compare(before) == []
pg.close()
