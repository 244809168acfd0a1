#!/usr/bin/python3
"""Packs a resource library: pack.py LIBRARY FOLDER ENTRY... The same entries always give the same bytes."""
import sys
import zipfile
from pathlib import Path

FIXED_TIME = (2000, 1, 1, 0, 0, 0)


def main():
    library, folder, *entries = sys.argv[1:]
    with zipfile.ZipFile(library, "w") as archive:
        for name in sorted(entries):
            info = zipfile.ZipInfo(name, FIXED_TIME)
            info.external_attr = 0o644 << 16
            info.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(info, Path(folder, name).read_bytes())


main()
