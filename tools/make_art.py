#!/usr/bin/env python3
"""Draws the program's icon and the sample animation: a kite in the wind.

Writes resources/klmzep.ico and resources/sample/kite.gif. Needs nothing but Python; run it again after a change here.
"""
import math
import os
import struct

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
WIDTH, HEIGHT, FRAMES, DELAY = 160, 120, 12, 9
FINE = 3  # every pixel is the mean of FINE x FINE points

RED, ORANGE, YELLOW, WINE = (214, 51, 52), (240, 131, 45), (250, 204, 72), (156, 30, 60)
LINE = (74, 56, 66)


def mix(a, b, t):
    return tuple(a[i] + (b[i] - a[i]) * t for i in range(3))


class Canvas:
    """Points with a colour or None (see-through), FINE to a pixel in each direction."""

    def __init__(self, width, height):
        self.width, self.height = width * FINE, height * FINE
        self.points = [[None] * self.width for _ in range(self.height)]

    def fill(self, box, inside, colour, alpha=1.0):
        """Paints the points of `box` (pixels: left, top, right, bottom) for which inside(x, y) holds."""
        left, top = max(int(box[0] * FINE), 0), max(int(box[1] * FINE), 0)
        right, bottom = min(int(box[2] * FINE) + 1, self.width), min(int(box[3] * FINE) + 1, self.height)
        for row in range(top, bottom):
            points, y = self.points[row], (row + 0.5) / FINE
            for column in range(left, right):
                if inside((column + 0.5) / FINE, y):
                    below = points[column]
                    points[column] = colour if alpha == 1 or below is None else mix(below, colour, alpha)

    def polygon(self, corners, colour):
        edges = list(zip(corners, corners[1:] + corners[:1]))

        def inside(x, y):
            crossings = [a for a, b in edges
                         if (a[1] > y) != (b[1] > y) and x < a[0] + (y - a[1]) * (b[0] - a[0]) / (b[1] - a[1])]
            return len(crossings) % 2 == 1

        xs, ys = [c[0] for c in corners], [c[1] for c in corners]
        self.fill((min(xs), min(ys), max(xs), max(ys)), inside, colour)

    def line(self, a, b, thickness, colour, alpha=1.0):
        dx, dy, half = b[0] - a[0], b[1] - a[1], thickness / 2
        length = dx * dx + dy * dy or 1

        def inside(x, y):
            t = min(max(((x - a[0]) * dx + (y - a[1]) * dy) / length, 0), 1)
            return (x - a[0] - t * dx) ** 2 + (y - a[1] - t * dy) ** 2 <= half * half

        self.fill((min(a[0], b[0]) - half, min(a[1], b[1]) - half, max(a[0], b[0]) + half, max(a[1], b[1]) + half),
                  inside, colour, alpha)

    def ellipse(self, centre, rx, ry, colour, alpha=1.0):
        cx, cy = centre
        self.fill((cx - rx, cy - ry, cx + rx, cy + ry),
                  lambda x, y: ((x - cx) / rx) ** 2 + ((y - cy) / ry) ** 2 <= 1, colour, alpha)

    def pixels(self):
        """Rows of (red, green, blue, coverage), 0 to 255."""
        for y in range(0, self.height, FINE):
            row = []
            for x in range(0, self.width, FINE):
                found = [p for line in self.points[y:y + FINE] for p in line[x:x + FINE] if p]
                mean = [round(sum(p[i] for p in found) / len(found)) for i in range(3)] if found else [0, 0, 0]
                row.append((*mean, len(found) * 255 // (FINE * FINE)))
            yield row


def draw_kite(canvas, centre, size, angle, phase):
    """A kite of four panels whose nose points to `angle`, with a tail of bows that swings with `phase`."""
    along = (math.cos(angle), math.sin(angle))
    across = (-along[1], along[0])

    def at(forward, side):
        return (centre[0] + size * (forward * along[0] + side * across[0]),
                centre[1] + size * (forward * along[1] + side * across[1]))

    def tail_at(s):
        return at(-1.35 - 1.9 * s, 0.34 * s * math.sin(phase + 5.5 * s))

    steps = [tail_at(i / 24) for i in range(25)]
    for a, b in zip([at(-1.3, 0)] + steps, steps):
        canvas.line(a, b, max(size * 0.05, 0.8), LINE)
    for i, colour in ((7, RED), (13, YELLOW), (19, ORANGE), (24, RED)):
        x, y = steps[i]
        bow = size * 0.17
        canvas.polygon([(x - bow, y - bow), (x - bow, y + bow), (x + bow, y - bow), (x + bow, y + bow)], colour)
    nose, middle, end, left, right = at(1, 0), at(0.25, 0), at(-1.35, 0), at(0.25, -0.78), at(0.25, 0.78)
    for corners, colour in (((nose, middle, left), ORANGE), ((nose, middle, right), RED),
                            ((end, middle, left), YELLOW), ((end, middle, right), WINE)):
        canvas.polygon(list(corners), colour)
    canvas.line(nose, end, max(size * 0.06, 0.8), LINE)
    canvas.line(left, right, max(size * 0.06, 0.8), LINE)


def draw_frame(t):
    """The scene at time t, 0 to 1; the last frame leads to the first."""
    turn = 2 * math.pi * t
    canvas = Canvas(WIDTH, HEIGHT)
    for y in range(HEIGHT):
        sky = mix((72, 142, 208), (228, 241, 245), (y // 4 * 4 / HEIGHT) ** 0.85)
        canvas.fill((0, y, WIDTH, y + 0.99), lambda x, _: True, sky)
    for radius, alpha in ((19, 0.25), (14, 0.4), (10, 1)):
        canvas.ellipse((136, 21), radius, radius, (255, 238, 170), alpha)
    for start, y, scale in ((10, 22, 1.0), (75, 46, 0.7), (120, 58, 0.85)):
        x = (start + 220 * t) % 220 - 30
        for dx, dy, rx, ry in ((-11, 2, 9, 4), (0, -1, 11, 7), (11, 2, 10, 4)):
            canvas.ellipse((x + dx * scale, y + dy * scale), rx * scale, ry * scale, (250, 252, 253))
    for start, y, length in ((20, 34, 26), (100, 72, 34), (60, 86, 20)):
        x = (start + 440 * t) % 220 - 30
        for step in range(8):
            a, b = x + length * step / 8, x + length * (step + 1) / 8
            canvas.line((a, y + 2 * math.sin(a / 7)), (b, y + 2 * math.sin(b / 7)), 1, (255, 255, 255), 0.7)
    for base, swell, shift, colour in ((93, 7, 0.5, (136, 184, 106)), (103, 5, 2.6, (98, 156, 84)),
                                       (111, 4, 4.4, (66, 124, 70))):
        canvas.fill((0, base - swell, WIDTH, HEIGHT),
                    lambda x, y: y > base - swell * math.sin(x / 26 + shift), colour)
    centre = (74 + 9 * math.cos(turn), 46 + 6 * math.sin(2 * turn))
    previous = (18, 108)
    for i in range(1, 13):
        s = i / 12
        point = (18 + (centre[0] - 18) * s, 108 + (centre[1] - 108) * s + 9 * math.sin(math.pi * s))
        canvas.line(previous, point, 0.6, LINE, 0.8)
        previous = point
    draw_kite(canvas, centre, 17, math.radians(-52) + 0.16 * math.sin(turn), -2 * turn)
    canvas.ellipse((17, 103), 2.2, 2.2, (238, 190, 160))
    canvas.line((17, 106), (17, 112), 3.4, WINE)
    canvas.line((17, 106), (20, 107), 1.4, WINE)
    return [pixel[:3] for row in canvas.pixels() for pixel in row]


def make_palette(frames):
    """At most 256 colours: those that stand for the most pixels, and the nearest of them for all others."""
    counts = {}
    for frame in frames:
        for colour in frame:
            key = tuple(c & 0xF8 | c >> 5 for c in colour)
            counts[key] = counts.get(key, 0) + 1
    palette = sorted(counts, key=counts.get, reverse=True)[:256]
    nearest = {key: min(range(len(palette)), key=lambda i: sum((a - b) ** 2 for a, b in zip(palette[i], key)))
               for key in counts}
    return palette, [[nearest[tuple(c & 0xF8 | c >> 5 for c in colour)] for colour in frame] for frame in frames]


def lzw(indexes):
    clear, end = 256, 257
    codes, width, bits, used, out = {}, 9, 0, 0, bytearray()

    def put(code):
        nonlocal bits, used
        bits |= code << used
        used += width
        while used >= 8:
            out.append(bits & 0xFF)
            bits >>= 8
            used -= 8

    put(clear)
    prefix = (indexes[0],)
    for index in indexes[1:]:
        longer = prefix + (index,)
        if longer in codes:
            prefix = longer
            continue
        put(codes.get(prefix, prefix[0]))
        codes[longer] = 258 + len(codes)
        if codes[longer] == 1 << width and width < 12:
            width += 1
        elif codes[longer] == 4095:
            put(clear)
            codes, width = {}, 9
        prefix = (index,)
    put(codes.get(prefix, prefix[0]))
    put(end)
    if used:
        out.append(bits & 0xFF)
    return bytes(out)


def sub_blocks(data):
    pieces = [data[i:i + 255] for i in range(0, len(data), 255)]
    return b"".join(bytes([len(piece)]) + piece for piece in pieces) + b"\0"


def make_gif():
    palette, frames = make_palette([draw_frame(i / FRAMES) for i in range(FRAMES)])
    colours = b"".join(bytes(c) for c in palette).ljust(768, b"\0")
    out = b"GIF89a" + struct.pack("<HHBBB", WIDTH, HEIGHT, 0xF7, 0, 0) + colours
    out += b"!\xFF\x0BNETSCAPE2.0\x03\x01\0\0\0"
    out += b"!\xFE" + sub_blocks(b"A kite in the zephyr")
    for frame in frames:
        out += b"!\xF9\x04" + struct.pack("<BHB", 4, DELAY, 0) + b"\0"
        out += b"," + struct.pack("<HHHHB", 0, 0, WIDTH, HEIGHT, 7) + b"\x08" + sub_blocks(lzw(frame))
    return out + b";"


def icon_image(size):
    """A bitmap of 32 bits per pixel with its mask, as icons hold it."""
    canvas = Canvas(size, size)
    draw_kite(canvas, (size * 0.6, size * 0.4), size * 0.37, math.radians(-45), 0.9)
    rows = [row for row in canvas.pixels()][::-1]
    pixels = b"".join(struct.pack("BBBB", p[2], p[1], p[0], p[3]) for row in rows for p in row)
    mask = b""
    for row in rows:
        bits = "".join("0" if p[3] else "1" for p in row).ljust((size + 31) // 32 * 32, "0")
        mask += int(bits, 2).to_bytes(len(bits) // 8, "big")
    return struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(pixels) + len(mask), 0, 0, 0, 0) + pixels + mask


def make_icon(sizes=(16, 24, 32, 48, 64)):
    images = [icon_image(size) for size in sizes]
    out, offset = struct.pack("<HHH", 0, 1, len(sizes)), 6 + 16 * len(sizes)
    for size, image in zip(sizes, images):
        out += struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    return out + b"".join(images)


def write(path, content):
    with open(os.path.join(ROOT, path), "wb") as file:
        file.write(content)


if __name__ == "__main__":
    write("resources/klmzep.ico", make_icon())
    write("resources/sample/kite.gif", make_gif())
