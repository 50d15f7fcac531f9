"""What the judges go through, and what they are expected to find."""
import glob
import json
import os
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent


def read_exceptions(file, place):
    """The expected differences of each GIF file, by its name: the lists of all groups of `file` that name it, joined."""
    exceptions = {}
    for group in json.loads((HERE / file).read_text(encoding="utf-8")):
        for name, lines in group.get(place, {}).items():
            exceptions.setdefault(name, []).extend(lines)
    return exceptions


def gif_files(folders):
    """The paths of the GIF files in the folders; none of these may be without."""
    paths = []
    for folder in folders:
        found = sorted(glob.glob(os.path.join(glob.escape(folder), "*.gif")))
        if not found:
            sys.exit(f"no GIF file in {folder}")
        paths += found
    return paths
