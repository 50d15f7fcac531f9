#!/usr/bin/env python3
"""Writes the eyedropper's cursor (eyedropper.cur) and button picture (eyedropper.bmp) into the folder given as argument.

Both are the same pipette, drawn along the diagonal from its tip at the lower left: u counts diagonal steps from the tip,
v the steps across, so that u and v are whole numbers for every pixel.
"""
import struct
import sys
from pathlib import Path

# The standard 16 colours, (blue, green, red).
COLOURS = [(0, 0, 0), (0, 0, 128), (0, 128, 0), (0, 128, 128), (128, 0, 0), (128, 0, 128), (128, 128, 0),
           (128, 128, 128), (192, 192, 192), (0, 0, 255), (0, 255, 0), (0, 255, 255), (255, 0, 0), (255, 0, 255),
           (255, 255, 0), (255, 255, 255)]
BLACK, NAVY, SILVER, CYAN, WHITE = 0, 4, 8, 14, 15


class Pipette:
    """Lengths (in u) at which the parts end, and their widths (the greatest |v|)."""

    def __init__(self, tip, needle, glass, collar, bulb, widths):
        self.tip, self.needle, self.glass, self.collar, self.bulb, self.widths = tip, needle, glass, collar, bulb, widths

    def part(self, x, y):
        """The part at pixel (x, y): 'edge', 'glass', 'liquid', 'shine', 'bulb', or None outside."""
        u, v = x - self.tip[0] + self.tip[1] - y, x - self.tip[0] - self.tip[1] + y
        glass, collar, bulb = self.widths
        if u < 0 or u > self.bulb:
            return None
        if u <= self.needle:
            return 'edge' if abs(v) <= (u > 1) else None
        if u <= self.glass:
            if abs(v) > min(glass, u - self.needle + 1):
                return None
            if abs(v) > glass - 2 or u <= self.needle + 1:
                return 'edge'
            return 'liquid' if u < (self.needle + self.glass) * 0.55 else 'glass'
        if u <= self.collar:
            return 'edge' if abs(v) <= collar else None
        if abs(v) > min(bulb, (self.bulb - u) + bulb // 2):
            return None
        inside = abs(v) <= bulb - 2 and u < self.bulb - 1
        return 'edge' if not inside else 'shine' if v == -(bulb - 2) and u < self.bulb - 3 else 'bulb'


def packed_row(values, bits):
    number = 0
    for value in values:
        number = number << bits | value
    length = len(values) * bits
    padding = -length % 32
    return (number << padding).to_bytes((length + padding) // 8, 'big')


def rows_bottom_up(size, bits, value_at):
    width, height = size
    return b''.join(packed_row([value_at(x, y) for x in range(width)], bits) for y in reversed(range(height)))


def info_header(width, height, bits, image_bytes, colours):
    return struct.pack('<IiiHHIIiiII', 40, width, height, 1, bits, 0, image_bytes, 0, 0, colours, 0)


def cursor():
    """32 x 32, two colours: black and white where the pipette is, and a white rim that shows on dark images."""
    size = (32, 32)
    pipette = Pipette(tip=(6, 27), needle=7, glass=25, collar=30, bulb=41, widths=(4, 8, 5))

    def is_rim(x, y):
        return any(pipette.part(x + dx, y + dy) for dx, dy in ((0, 1), (1, 0), (0, -1), (-1, 0)))

    def see_through(x, y):
        return int(not pipette.part(x, y) and not is_rim(x, y))

    def white(x, y):
        part = pipette.part(x, y)
        return int(part in ('glass', 'shine', 'liquid') or (part is None and is_rim(x, y)))

    image = rows_bottom_up(size, 1, white) + rows_bottom_up(size, 1, see_through)
    bitmap = info_header(32, 64, 1, len(image), 2) + bytes((0, 0, 0, 0, 255, 255, 255, 0)) + image
    directory = struct.pack('<HHH', 0, 2, 1) + struct.pack('<BBBBHHII', 32, 32, 2, 0, 6, 27, len(bitmap), 22)
    return directory + bitmap


def button_picture():
    """20 x 40, 16 colours: the glyph on white, below it the mask, black inside the shape.

    The mask lies one row lower in its half than the glyph in its own: buttons are drawn that way.
    """
    pipette = Pipette(tip=(3, 18), needle=4, glass=17, collar=21, bulb=29, widths=(3, 6, 4))
    glyph_colours = {'edge': BLACK, 'glass': WHITE, 'liquid': CYAN, 'bulb': NAVY, 'shine': SILVER, None: WHITE}

    def colour(x, y):
        if y < 20:
            return glyph_colours[pipette.part(x, y)]
        return BLACK if pipette.part(x, y - 21) else WHITE

    image = rows_bottom_up((20, 40), 4, colour)
    table = b''.join(bytes(c) + b'\0' for c in COLOURS)
    start = 14 + 40 + len(table)
    file_header = b'BM' + struct.pack('<IHHI', start + len(image), 0, 0, start)
    return file_header + info_header(20, 40, 4, len(image), len(COLOURS)) + table + image


folder = Path(sys.argv[1])
folder.mkdir(parents=True, exist_ok=True)
(folder / 'eyedropper.cur').write_bytes(cursor())
(folder / 'eyedropper.bmp').write_bytes(button_picture())
