#!/usr/bin/env python3
"""Draws the program's pictures: icon, sample animation, eyedropper (cursor and button) and the wizard's picture.

Writes them into resources/; run it again after a change here. Needs Pillow (Debian: python3-pil).
"""
import math
import struct
from io import BytesIO
from pathlib import Path

from PIL import Image, ImageDraw

RESOURCES = Path(__file__).resolve().parent.parent / 'resources'
FINE = 8  # pictures are drawn this many times as large and shrunk at the end

RED, ORANGE, YELLOW, WINE, STRING = '#d63334', '#f0832d', '#facc48', '#9c1e3c', '#4a3842'
WHITE, CREAM = '#ffffff', '#fcfaf4'


def mix(a, b, t):
    t = min(max(t, 0), 1)
    return tuple(round(x + (y - x) * t) for x, y in zip(a, b))


class Canvas:
    """A see-through picture; places and lengths are given in pixels of the finished one."""

    def __init__(self, width, height):
        self.size = (width, height)
        self.image = Image.new('RGBA', (width * FINE, height * FINE))

    def paint(self, alpha, draw):
        if alpha == 1:
            draw(ImageDraw.Draw(self.image))
            return
        layer = Image.new('RGBA', self.image.size)
        draw(ImageDraw.Draw(layer))
        layer.putalpha(layer.getchannel('A').point(lambda a: round(a * alpha)))
        self.image.alpha_composite(layer)

    def polygon(self, points, colour, alpha=1.0):
        fine = [(x * FINE, y * FINE) for x, y in points]
        self.paint(alpha, lambda draw: draw.polygon(fine, colour))

    def line(self, points, thickness, colour, alpha=1.0):
        fine = [(x * FINE, y * FINE) for x, y in points]
        self.paint(alpha, lambda draw: draw.line(fine, colour, round(thickness * FINE), 'curve'))

    def ellipse(self, centre, rx, ry, colour, alpha=1.0):
        box = [round(FINE * v) for v in (centre[0] - rx, centre[1] - ry, centre[0] + rx, centre[1] + ry)]
        self.paint(alpha, lambda draw: draw.ellipse(box, colour))

    def rounded(self, box, radius, colour, alpha=1.0):
        fine = [round(v * FINE) - (i > 1) for i, v in enumerate(box)]
        self.paint(alpha, lambda draw: draw.rounded_rectangle(fine, radius * FINE, colour))

    def gradient(self, box, colour_at):
        """Rows whose colour is colour_at(t), t from 0 at the top to 1 at the bottom."""
        left, top, right, bottom = (round(v * FINE) for v in box)
        draw = ImageDraw.Draw(self.image)
        for y in range(top, bottom):
            draw.line((left, y, right - 1, y), colour_at((y - top) / (bottom - top)))

    def finished(self, scale=1):
        return self.image.resize(tuple(v * scale for v in self.size), Image.BOX)


BOWS = ((7, RED), (13, YELLOW), (19, ORANGE), (24, RED))


def draw_kite(canvas, centre, size, angle, phase, tail=1.9, bows=BOWS):
    """A kite of four panels whose nose points to `angle`, with a tail of bows that swings with `phase`.

    A bow is (place along the tail in 24ths, colour).
    """
    along = (math.cos(angle), math.sin(angle))

    def at(forward, side):
        return (centre[0] + size * (forward * along[0] - side * along[1]),
                centre[1] + size * (forward * along[1] + side * along[0]))

    steps = [at(-1.3 - tail * i / 24, 0.34 * i / 24 * math.sin(phase + 5.5 * i / 24)) for i in range(25)]
    canvas.line(steps, max(size * 0.05, 0.8), STRING)
    for i, colour in bows:
        x, y = steps[i]
        bow = size * 0.17
        canvas.polygon([(x - bow, y - bow), (x - bow, y + bow), (x + bow, y - bow), (x + bow, y + bow)], colour)
    nose, middle, end, left, right = at(1, 0), at(0.25, 0), at(-1.35, 0), at(0.25, -0.78), at(0.25, 0.78)
    for corners, colour in (((nose, middle, left), ORANGE), ((nose, middle, right), RED),
                            ((end, middle, left), YELLOW), ((end, middle, right), WINE)):
        canvas.polygon(corners, colour)
    for rod in ((nose, end), (left, right)):
        canvas.line(rod, max(size * 0.06, 0.8), STRING)


def draw_cloud(canvas, x, y, scale, alpha=1.0):
    for dx, dy, rx, ry in ((-11, 2, 9, 4), (0, -1, 11, 7), (11, 2, 10, 4)):
        canvas.ellipse((x + dx * scale, y + dy * scale), rx * scale, ry * scale, CREAM, alpha)


def draw_hill(canvas, box, base, swell, stretch, shift, colour):
    left, _, right, bottom = box
    edge = [(x / 2, base - swell * math.sin(x / 2 / stretch + shift)) for x in range(2 * left, 2 * right + 1)]
    canvas.polygon([(left, bottom), *edge, (right, bottom)], colour)


# The icon: Windows takes pixels with their mask for the small sizes, and a PNG file for the largest.

def icon_pixels(picture):
    pixels = picture.transpose(Image.FLIP_TOP_BOTTOM)
    mask = pixels.getchannel('A').point(lambda a: 0 if a else 255).convert('1')
    size = picture.width
    stride = (size + 31) // 32 * 4
    mask_bytes = b''.join(mask.crop((0, y, size, y + 1)).tobytes().ljust(stride, b'\0') for y in range(size))
    bgra = pixels.tobytes('raw', 'BGRA')
    header = struct.pack('<IiiHHIIiiII', 40, size, size * 2, 1, 32, 0, len(bgra) + len(mask_bytes), 0, 0, 0, 0)
    return header + bgra + mask_bytes


def icon_png(picture):
    content = BytesIO()
    picture.save(content, 'PNG', optimize=True)
    return content.getvalue()


def write_icon(path, sizes=(16, 20, 24, 32, 40, 48, 64, 256)):
    images = []
    for size in sizes:
        canvas = Canvas(size, size)
        draw_kite(canvas, (size * 0.6, size * 0.4), size * 0.38, math.radians(-45), 3.6, tail=0.6,
                  bows=((13, YELLOW), (24, RED)))
        images.append((icon_png if size == 256 else icon_pixels)(canvas.finished()))
    directory, offset = struct.pack('<HHH', 0, 1, len(sizes)), 6 + 16 * len(sizes)
    for size, image in zip(sizes, images):
        directory += struct.pack('<BBBBHHII', size % 256, size % 256, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    path.write_bytes(directory + b''.join(images))


# The sample animation: a kite over hills.

SCENE = (0, 0, 160, 120)


def sample_frame(t):
    """The scene at time t, 0 to 1; the last frame leads to the first."""
    turn = 2 * math.pi * t
    canvas = Canvas(*SCENE[2:])
    canvas.gradient(SCENE, lambda s: mix((72, 142, 208), (228, 241, 245), (int(s * 30) / 30) ** 0.85))
    for radius, alpha in ((19, 0.25), (14, 0.4), (10, 1)):
        canvas.ellipse((136, 21), radius, radius, '#ffeeaa', alpha)
    for start, y, scale in ((10, 22, 1.0), (75, 46, 0.7), (120, 58, 0.85)):
        draw_cloud(canvas, (start + 220 * t) % 220 - 30, y, scale)
    for start, y, length in ((20, 34, 26), (100, 72, 34), (60, 86, 20)):
        x = (start + 440 * t) % 220 - 30
        gust = [(x + length * i / 8, y + 2 * math.sin((x + length * i / 8) / 7)) for i in range(9)]
        canvas.line(gust, 1, WHITE, 0.7)
    for base, swell, shift, colour in ((93, 7, 0.5, '#88b86a'), (103, 5, 2.6, '#629c54'), (111, 4, 4.4, '#427c46')):
        draw_hill(canvas, SCENE, base, swell, 26, shift, colour)
    hand, kite = (18, 108), (74 + 9 * math.cos(turn), 46 + 6 * math.sin(2 * turn))
    string = [(hand[0] + (kite[0] - hand[0]) * i / 12,
               hand[1] + (kite[1] - hand[1]) * i / 12 + 9 * math.sin(math.pi * i / 12)) for i in range(13)]
    canvas.line(string, 0.6, STRING)
    draw_kite(canvas, kite, 17, math.radians(-52) + 0.16 * math.sin(turn), -2 * turn)
    canvas.ellipse((17, 103), 2.2, 2.2, '#eebea0')
    canvas.line([(17, 106), (17, 112)], 3.4, WINE)
    canvas.line([(17, 106), (20, 107)], 1.4, WINE)
    return canvas.finished().convert('RGB')


def write_sample(path, count=12):
    frames = [sample_frame(i / count) for i in range(count)]
    strip = Image.new('RGB', (SCENE[2], SCENE[3] * count))
    for i, frame in enumerate(frames):
        strip.paste(frame, (0, SCENE[3] * i))
    colours = strip.quantize(256, dither=Image.Dither.NONE)
    values = colours.getpalette()
    # Colour 0 surrounds the animation: the darkest.
    colours = colours.remap_palette(sorted(range(len(values) // 3), key=lambda i: sum(values[3 * i:3 * i + 3])))
    first, *rest = [frame.quantize(palette=colours, dither=Image.Dither.NONE) for frame in frames]
    first.save(path, 'GIF', save_all=True, append_images=rest, duration=90, disposal=1, loop=0, interlace=0,
               optimize=False, comment=b'A kite in the zephyr')


# The eyedropper. Its pixels lie on diagonals: u counts steps from the tip at the lower left, v the steps across.

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
        if abs(v) > bulb - 2 or u >= self.bulb - 1:
            return 'edge'
        return 'shine' if abs(v + bulb - 2) < 0.5 and u < self.bulb - 3 else 'bulb'


def picture_of(mode, size, value_at):
    picture = Image.new(mode, size)
    picture.putdata([value_at(x, y) for y in range(size[1]) for x in range(size[0])])
    return picture


def write_cursor(path, hot_spot=(6, 27)):
    """32 x 32, black and white where the pipette is, and a white rim that shows on dark images."""
    pipette = Pipette(tip=hot_spot, needle=7, glass=25, collar=30, bulb=41, widths=(4, 8, 5))

    def is_rim(x, y):
        return any(pipette.part(x + dx, y + dy) for dx, dy in ((0, 1), (1, 0), (0, -1), (-1, 0)))

    def white(x, y):
        part = pipette.part(x, y)
        return 255 if part in ('glass', 'shine', 'liquid') or (part is None and is_rim(x, y)) else 0

    def see_through(x, y):
        return 0 if pipette.part(x, y) or is_rim(x, y) else 255

    bits = b''.join(picture_of('1', (32, 32), value).transpose(Image.FLIP_TOP_BOTTOM).tobytes()
                    for value in (white, see_through))
    bitmap = struct.pack('<IiiHHIIiiII', 40, 32, 64, 1, 1, 0, len(bits), 0, 0, 2, 0) + b'\0\0\0\0\xFF\xFF\xFF\0' + bits
    directory = struct.pack('<HHH', 0, 2, 1) + struct.pack('<BBBBHHII', 32, 32, 2, 0, *hot_spot, len(bitmap), 22)
    path.write_bytes(directory + bitmap)


BUTTON_COLOURS = {'edge': (0, 0, 0), 'glass': (255, 255, 255), 'liquid': (0, 255, 255), 'bulb': (0, 0, 128),
                  'shine': (192, 192, 192), None: (255, 255, 255)}
STANDARD_16 = [(0, 0, 0), (128, 0, 0), (0, 128, 0), (128, 128, 0), (0, 0, 128), (128, 0, 128), (0, 128, 128),
               (128, 128, 128), (192, 192, 192), (255, 0, 0), (0, 255, 0), (255, 255, 0), (0, 0, 255),
               (255, 0, 255), (0, 255, 255), (255, 255, 255)]


def write_button_picture(path, size=20):
    """size x 2 size, 16 colours: the glyph on white, below it the mask, black inside the shape.

    The mask lies one row lower in its half than the glyph in its own: buttons are drawn that way.
    """
    pipette = Pipette(tip=(3, 18), needle=4, glass=17, collar=21, bulb=29, widths=(3, 6, 4))

    def part(x, y):
        return pipette.part(*((v + 0.5) * 20 / size - 0.5 for v in (x, y)))

    def number(x, y):
        colour = BUTTON_COLOURS[part(x, y)] if y < size else (0,) * 3 if part(x, y - size - 1) else (255,) * 3
        return STANDARD_16.index(colour)

    write_16_colour_bmp(path, (size, 2 * size), number, STANDARD_16)


def write_16_colour_bmp(path, size, number_at, colours):
    rows = [b''.join(bytes([number_at(x, y) << 4 | number_at(x + 1, y)]) for x in range(0, size[0], 2))
            for y in reversed(range(size[1]))]
    pixels = b''.join(row + bytes(-len(row) % 4) for row in rows)
    table = b''.join(bytes((b, g, r, 0)) for r, g, b in colours)
    start = 54 + len(table)
    header = struct.pack('<2sIHHI', b'BM', start + len(pixels), 0, 0, start)
    header += struct.pack('<IiiHHIIiiII', 40, *size, 1, 4, 0, len(pixels), 0, 0, 16, 0)
    path.write_bytes(header + table + pixels)


# The wizard's picture: a wand strikes sparks over a film in which a kite rises in the evening wind.

WIZARD, CORNER = (0, 0, 96, 232), 9
NIGHT, DUSK, GLOW = (38, 34, 92), (104, 78, 152), (240, 158, 124)
SPARK, TIP = '#ffec96', '#fff6d6'
SPARKS = [(48, 14, 6), (13, 13, 5), (46, 35, 5), (15, 38, 6), (63, 25, 3.5), (33, 50, 4), (84, 15, 4), (9, 58, 3),
          (79, 64, 3.5), (29, 24, 15)]


def draw_spark(canvas, x, y, size, colour):
    """A star of four rays."""
    quarter = [(size * math.cos(a) ** 4, size * math.sin(a) ** 4) for a in (math.pi * i / 24 for i in range(13))]
    star = [(x + sx * px, y + sy * py) for sx, sy, points in ((1, 1, quarter), (-1, 1, quarter[::-1]),
                                                             (-1, -1, quarter), (1, -1, quarter[::-1]))
            for px, py in points]
    canvas.polygon(star, colour)


def draw_film_frame(top, kite, angle):
    box = (0, 0, 58, 40)
    scene = Canvas(*box[2:])
    scene.gradient(box, lambda t: mix((118, 178, 232), (214, 236, 252), t))
    for x, y in ((12 + kite[0] * 0.1, 9), (45 + kite[0] * 0.1, 20)):
        draw_cloud(scene, x, y, 0.42, 0.9)
    draw_hill(scene, box, 35, 3, 14, 0.5, '#80b27e')
    draw_hill(scene, box, 37, 2.5, 17, 3.6, '#58925c')
    draw_kite(scene, kite, 8.5, angle, 0.6 + top / 20, tail=1.3)
    return scene


def wizard_picture():
    canvas = Canvas(*WIZARD[2:])
    canvas.gradient(WIZARD, lambda t: mix(NIGHT, DUSK, t / 0.56) if t < 0.56 else mix(DUSK, GLOW, (t - 0.56) / 0.47))
    for k in range(3):
        gust = [(x, 52 + 9 * k + 5 * math.sin(x / (15 + 3 * k) + 1.3 * k)) for x in range(8 + 9 * k, 91 - 6 * k)]
        canvas.line(gust, 1.5 - 0.25 * k, CREAM, 0.35)
    for radius in range(26, 4, -1):
        canvas.ellipse((29, 24), radius, radius, SPARK, 0.035)
    canvas.polygon([(11, 76), (85, 76), (85, 232), (11, 232)], '#1e1b3c')
    for y in range(16):
        for x in (13, 79.2):
            canvas.rounded((x, 78.2 + 9.8 * y, x + 3.8, 83.6 + 9.8 * y), 1, '#c4bcdc')
    window = Image.new('L', (58 * FINE, 40 * FINE))
    ImageDraw.Draw(window).rounded_rectangle((0, 0, *(v - 1 for v in window.size)), 3 * FINE, 255)
    for top, kite, angle in ((82, (38, 13), -70), (131, (28, 17), -58), (180, (17, 23), -42)):
        scene = draw_film_frame(top, kite, math.radians(angle))
        canvas.image.paste(scene.image, (19 * FINE, top * FINE), window)
    canvas.line([(33, 28), (80, 59)], 4.4, '#482c40')
    canvas.line([(33.4, 27.6), (80.2, 58.5)], 1.6, '#805c74')
    for start, end in (((33, 28), (39.5, 32.3)), ((77, 57), (80, 59))):
        canvas.line([start, end], 4.4, TIP)
    for x, y, size in SPARKS:
        draw_spark(canvas, x, y, size, TIP if size > 9 else SPARK)
    return canvas


def write_wizard(picture_path, mask_path, scale=1):
    """Outside the rounded panel the picture is black and the mask white: AND and then XOR leave what was there."""
    size = tuple(v * scale for v in WIZARD[2:])
    panel = Image.new('1', size)
    ImageDraw.Draw(panel).rounded_rectangle((0, 0, size[0] - 1, size[1] - 1), CORNER * scale, 255)
    picture = Image.new('RGB', size)
    picture.paste(wizard_picture().finished(scale).convert('RGB'), mask=panel)
    picture.save(picture_path)
    inside = panel.load()
    write_16_colour_bmp(mask_path, size, lambda x, y: 0 if inside[x, y] else 15, [(0, 0, 0)] * 15 + [(255,) * 3])


if __name__ == '__main__':
    pictures = RESOURCES / 'pictures'
    write_icon(RESOURCES / 'klmzep.ico')
    write_sample(RESOURCES / 'sample' / 'kite.gif')
    write_cursor(pictures / 'eyedropper.cur')
    write_button_picture(pictures / 'eyedropper.bmp')
    write_button_picture(pictures / 'eyedropper_150.bmp', 30)
    write_button_picture(pictures / 'eyedropper_200.bmp', 40)
    write_wizard(pictures / 'wizard.bmp', pictures / 'wizard_mask.bmp')
    write_wizard(pictures / 'wizard_200.bmp', pictures / 'wizard_mask_200.bmp', 2)
