"""Checks that the pictures of the user guide are those that the program's tour draws today.

usage: check_guide.py PROGRAM DOCS
"""

import os
import re
import struct
import subprocess
import sys
import tempfile
from pathlib import Path


def picture_size(path):
    head = path.read_bytes()[:24]
    if head[:8] != b"\x89PNG\r\n\x1a\n" or head[12:16] != b"IHDR":
        raise ValueError(f"{path.name} is no PNG picture")
    return struct.unpack(">II", head[16:24])


def main():
    program, docs = sys.argv[1], Path(sys.argv[2])
    faults = []
    named = set()
    for guide in (docs / "user-guide.md", docs.parent / "README.md"):
        named |= set(re.findall(r"\]\((?:docs/)?pictures/([^)]+)\)", guide.read_text(encoding="utf-8")))
    if len(named) < 9:
        faults.append(f"the guide shows {len(named)} pictures; there are nine pages")

    with tempfile.TemporaryDirectory() as folder:
        out = Path(folder, "pictures")
        # A home of its own: neither the user's settings nor a rack of the user's take part.
        environment = {**os.environ, "HOME": folder, "QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C.UTF-8",
                       "XDG_RUNTIME_DIR": folder}
        for name in ("XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_DIRS", "QT_SCALE_FACTOR",
                     "QT_FONT_DPI", "QT_STYLE_OVERRIDE", "QT_QPA_PLATFORMTHEME", "XDG_CURRENT_DESKTOP"):
            environment.pop(name, None)
        run = subprocess.run([program, "--tour", str(out)], env=environment, stdin=subprocess.DEVNULL,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=150, text=True)
        print(run.stdout)
        if run.returncode != 0:
            faults.append(f"the tour ended with code {run.returncode}")
        if not re.search(r"^[1-9][0-9]* steps, 0 went wrong$", run.stdout, re.MULTILINE):
            faults.append("the tour does not say that nothing went wrong")

        drawn = {path.name for path in out.glob("*.png")} if out.is_dir() else set()
        kept = {path.name for path in (docs / "pictures").glob("*.png")}
        faults += [f"{name} is shown, but the tour draws no such picture" for name in sorted(named - drawn)]
        faults += [f"{name} is shown, but not in docs/pictures" for name in sorted(named - kept)]
        faults += [f"{name} lies in docs/pictures, but nothing shows it" for name in sorted(kept - named)]
        for name in sorted(named & drawn & kept):
            now, then = picture_size(out / name), picture_size(docs / "pictures" / name)
            if now != then:
                faults.append(f"{name} measures {now}, the kept one {then}: run the tour into docs/pictures")

    for fault in faults:
        print("FAULT:", fault)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
