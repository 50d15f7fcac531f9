#!/usr/bin/env python3
"""Writes the two palette resources, palette216.bin and palette256g.bin, into the folder given as argument."""
import struct
import sys
from pathlib import Path

WEB_LEVELS = range(0, 256, 51)
RED_LEVELS = (0, 43, 85, 128, 170, 213, 255)
GREEN_LEVELS = (0, 36, 73, 109, 146, 182, 219, 255)
BLUE_LEVELS = (0, 85, 170, 255)
GREYS = (1, 8, 16, 24, 32, 41, 49, 57, 65, 74, 82, 90, 98, 106, 115, 123,
         131, 139, 148, 156, 164, 172, 180, 189, 197, 205, 213, 222, 230, 238, 246, 254)


def web_colours():
    cube = [(r, g, b) for g in WEB_LEVELS for r in WEB_LEVELS for b in WEB_LEVELS]
    return cube + [(0, 0, 0)] * (256 - len(cube))


def grey_colours():
    cube = [(r, g, b) for r in RED_LEVELS for g in GREEN_LEVELS for b in BLUE_LEVELS]
    return cube[:112] + [(v, v, v) for v in GREYS] + cube[112:]


def resource(colours):
    head = b'QUOXRSRC' + b'256 colour palette'.ljust(64, b'\0') + b'\0' + struct.pack('<H4sIH', 1, b'CMAP', 1, 768)
    return head + bytes(channel for colour in colours for channel in colour)


folder = Path(sys.argv[1])
for name, colours in (('palette216.bin', web_colours()), ('palette256g.bin', grey_colours())):
    (folder / name).write_bytes(resource(colours))
