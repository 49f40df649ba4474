"""Cuts the files out of documents: each fenced block bears, behind its language, the name of the file that it is.

usage: cut_documents.py FOLDER DOCUMENT...
"""

import re
import sys
from pathlib import Path

FENCE = re.compile(r"^```(\S*)[ \t]*(.*)\n((?:.*\n)*?)```[ \t]*$", re.MULTILINE)


def main():
    folder = Path(sys.argv[1])
    faults, cut = [], []
    for document in map(Path, sys.argv[2:]):
        for language, name, text in FENCE.findall(document.read_text(encoding="utf-8")):
            path = folder / name
            if not name:
                faults.append(f"{document.name}: a block in {language or 'no language'} has no file name, so nobody tries it")
            elif folder not in path.resolve().parents:
                faults.append(f"{document.name}: {name} leads out of the folder")
            elif path in cut:
                faults.append(f"{document.name}: {name} stands twice in the documents")
            else:
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text, encoding="utf-8")
                cut.append(path)
    for fault in faults:
        print("FAULT:", fault, file=sys.stderr)
    print(*(path.relative_to(folder) for path in cut), sep="\n")
    return 1 if faults or not cut else 0


sys.exit(main())
