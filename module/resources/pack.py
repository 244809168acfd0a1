#!/usr/bin/python3
"""Packs a resource library: pack.py LIBRARY (FOLDER ENTRY...)... The same entries always give the same bytes.

An absolute path is the folder of the entries behind it. An archive is searched from its first entry on, so what is always read
comes first: the texts."""
import sys
import zipfile
from pathlib import Path

FIXED_TIME = (2000, 1, 1, 0, 0, 0)


def contents(arguments):
    folder = None
    for argument in arguments:
        if Path(argument).is_absolute():
            folder = Path(argument)
        else:
            yield argument, (folder / argument).read_bytes()


def main():
    library, *arguments = sys.argv[1:]
    with zipfile.ZipFile(library, "w") as archive:
        for name, content in contents(arguments):
            info = zipfile.ZipInfo(name, FIXED_TIME)
            info.external_attr = 0o644 << 16
            info.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(info, content)


main()
