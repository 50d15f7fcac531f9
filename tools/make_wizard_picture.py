#!/usr/bin/env python3
"""Writes the Animation Wizard's picture (wizard.bmp, wizard_mask.bmp) into the folder given as argument.

A wand strikes sparks over three frames of a film in which a kite rises in the evening wind. Everything is a distance
field sampled 4 x 4 times a pixel. Around the rounded panel the picture is black and the mask white, so that AND with the
mask and then XOR with the picture leave what was there before.
"""
import math
import struct
import sys
from pathlib import Path

WIDTH, HEIGHT, CORNER, SAMPLES = 96, 232, 9, 4

NIGHT, DUSK, GLOW = (38, 34, 92), (104, 78, 152), (240, 158, 124)
CARD, FILM, HOLE = (252, 250, 244), (30, 27, 60), (196, 188, 220)
MORNING, NOON = (118, 178, 232), (214, 236, 252)
HILL, HILL_BACK = (88, 146, 92), (128, 178, 126)
RED, ORANGE, YELLOW, STRING = (214, 62, 62), (244, 140, 52), (252, 206, 84), (92, 72, 96)
WOOD, TIP, SPARK = (72, 44, 64), (255, 246, 214), (255, 236, 150)


def mix(a, b, t):
    t = max(0.0, min(1.0, t))
    return tuple(x + (y - x) * t for x, y in zip(a, b))


def rounded_box(x, y, cx, cy, half_width, half_height, radius):
    """Distance of a point from a box with rounded corners, negative inside."""
    dx, dy = abs(x - cx) - half_width + radius, abs(y - cy) - half_height + radius
    return math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius


def segment(x, y, ax, ay, bx, by):
    """Distance from a line of no width, and how far along it the nearest point lies (0 to 1)."""
    t = ((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / ((bx - ax) ** 2 + (by - ay) ** 2)
    t = max(0.0, min(1.0, t))
    return math.hypot(x - ax - t * (bx - ax), y - ay - t * (by - ay)), t


def turned(x, y, cx, cy, angle):
    x, y, c, s = x - cx, y - cy, math.cos(angle), math.sin(angle)
    return x * c + y * s, y * c - x * s


def star(x, y, cx, cy, size):
    """A spark of four rays."""
    dx, dy = abs(x - cx), abs(y - cy)
    return math.sqrt(dx) + math.sqrt(dy) < math.sqrt(size)


def kite(x, y, cx, cy, angle, size):
    """Colour of a kite at its place, or None beside it."""
    u, v = turned(x, y, cx, cy, angle)
    length = size if v < 0 else size * 1.7
    if abs(u) / (size * 0.8) + abs(v) / length < 1:
        if abs(u) < 0.5 or abs(v) < 0.5:
            return STRING
        return (RED if u < 0 else ORANGE) if v < 0 else (ORANGE if u < 0 else YELLOW)
    tail = v - size * 1.7
    if 0 <= tail < size * 2.2:
        wave = math.sin(tail * 0.75) * 2.2
        if abs(u - wave) < 0.55:
            return STRING
        bow = (tail % 5.5) - 3.6
        if abs(bow) < 1.5 and abs(u - wave) < abs(bow) + 0.8 and abs(u - wave) < 2.2:
            return RED if int(tail / 5.5) % 2 else YELLOW
    return None


# Centre of each frame of the film, and the kite in it: place and angle.
FRAMES = [(48, 200, (-13, 2, 0.75)), (48, 151, (-2, -3, 0.45)), (48, 102, (9, -7, 0.2))]
FRAME_HALF = (29, 20)


def frame(x, y, centre_x, centre_y, flight):
    u, v = x - centre_x, y - centre_y
    if rounded_box(u, v, 0, 0, *FRAME_HALF, 3) > 0:
        return None
    colour = mix(MORNING, NOON, (v + FRAME_HALF[1]) / (2 * FRAME_HALF[1]))
    if v > 15 - 4 * math.cos((u - 12) / 14):
        colour = HILL_BACK
    if v > 16 + 3 * math.cos((u + 6) / 17):
        colour = HILL
    for cloud_x, cloud_y in ((-17 + flight[0] * 0.2, -11), (17 + flight[0] * 0.2, -1)):
        puffs = ((0, 0, 4), (4.5, 0.8, 3), (-4.5, 1, 2.8))
        if any(math.hypot(u - cloud_x - px, (v - cloud_y - py) * 1.5) < r for px, py, r in puffs):
            colour = mix(colour, CARD, 0.85)
    return kite(u, v, flight[0], flight[1], flight[2], 7.5) or colour


def film(x, y):
    """The strip with its perforation."""
    if not 11 <= x <= 85 or y < 76:
        return None
    for hole_x in (14.9, 81.1):
        if rounded_box(x, (y - 76) % 9.8, hole_x, 4.9, 1.9, 2.7, 1) < 0:
            return HOLE
    return FILM


def sky(x, y):
    colour = mix(NIGHT, DUSK, y / 130) if y < 130 else mix(DUSK, GLOW, (y - 130) / 110)
    for k in range(3):
        gust = 52 + 9 * k + 5 * math.sin(x / (15 + 3 * k) + 1.3 * k)
        if abs(y - gust) < 0.8 - 0.15 * k and 8 + 9 * k < x < 90 - 6 * k:
            colour = mix(colour, CARD, 0.35)
    return colour


SPARKS = [(29, 24, 15), (48, 14, 6), (13, 13, 5), (46, 35, 5), (15, 38, 6), (63, 25, 3.5), (33, 50, 4), (84, 15, 4),
          (9, 58, 3), (79, 64, 3.5)]


def wand(x, y):
    distance, along = segment(x, y, 33, 28, 80, 59)
    if distance > 2.3:
        return None
    shade = mix(TIP, CARD, distance / 2.3) if along < 0.14 or along > 0.93 else mix((128, 92, 116), WOOD, distance / 1.9)
    return shade


def colour_at(x, y):
    colour = sky(x, y)
    glow = math.hypot(x - 29, y - 24)
    colour = mix(colour, SPARK, 0.55 * math.exp(-(glow / 13) ** 2))
    colour = film(x, y) or colour
    for frame_x, frame_y, flight in FRAMES:
        colour = frame(x, y, frame_x, frame_y, flight) or colour
    colour = wand(x, y) or colour
    for spark_x, spark_y, size in SPARKS:
        if star(x, y, spark_x, spark_y, size):
            colour = TIP if size > 9 else SPARK
    edge = rounded_box(x, y, WIDTH / 2, HEIGHT / 2, WIDTH / 2, HEIGHT / 2, CORNER)
    return mix(colour, NIGHT, 0.7) if edge > -1.2 else colour


def is_inside(x, y):
    return rounded_box(x + 0.5, y + 0.5, WIDTH / 2, HEIGHT / 2, WIDTH / 2, HEIGHT / 2, CORNER) < 0


def pixel(x, y):
    if not is_inside(x, y):
        return (0, 0, 0)
    steps = [(k + 0.5) / SAMPLES for k in range(SAMPLES)]
    colours = [colour_at(x + dx, y + dy) for dy in steps for dx in steps]
    return tuple(round(sum(channel) / len(colours)) for channel in zip(*colours))


def write_bmp(path, bits, colours, row):
    """`row` gives the packed bytes of an image row; `colours` are (red, green, blue)."""
    rows = b''.join(data + bytes(-len(data) % 4) for data in (row(y) for y in reversed(range(HEIGHT))))
    table = b''.join(bytes((b, g, r, 0)) for r, g, b in colours)
    offset = 14 + 40 + len(table)
    header = struct.pack('<2sIHHI', b'BM', offset + len(rows), 0, 0, offset)
    header += struct.pack('<IiiHHIIiiII', 40, WIDTH, HEIGHT, 1, bits, 0, len(rows), 2835, 2835, len(colours), 0)
    path.write_bytes(header + table + rows)


def mask_row(y):
    values = [0 if is_inside(x, y) else 15 for x in range(WIDTH)]
    return bytes(high << 4 | low for high, low in zip(values[::2], values[1::2]))


def main():
    folder = Path(sys.argv[1])
    greys = [(0, 0, 0)] * 15 + [(255, 255, 255)]
    write_bmp(folder / 'wizard.bmp', 24, [],
              lambda y: b''.join(bytes((b, g, r)) for r, g, b in (pixel(x, y) for x in range(WIDTH))))
    write_bmp(folder / 'wizard_mask.bmp', 4, greys, mask_row)


main()
