#!/usr/bin/env python3
"""Makes the picture files that tests and fuzzers read: pictures.py FOLDER

Each NAME.png, .jpg or .bmp lies beside a NAME.*.expected: what reading it must give. That is the name of a failure (with "where libjpeg reads": Windows makes up the rest), or
"WIDTH HEIGHT TOLERANCE" with the pixels behind it in the next line as hexadecimal red, green, blue and opacity. Files
are put together byte by byte, so that the same files are there on every system, and nothing judges itself.
"""
import pathlib
import struct
import sys
import zlib

FILES = {}  # name: content, what reading it must give


def good(name, content, rows, tolerance=0):
    pixels = "".join(bytes(pixel).hex() for row in rows for pixel in row)
    FILES[name] = content, f"{len(rows[0])} {len(rows)} {tolerance}\n{pixels}\n"


def bad(name, content, failure):
    FILES[name] = content, failure + "\n"


# PNG

def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def pack_row(samples, bits):
    """Samples of 1 to 16 bits as bytes, the first in the highest bits."""
    number = 0
    for sample in samples:
        number = number << bits | sample
    total = len(samples) * bits
    return (number << -total % 8).to_bytes((total + 7) // 8, "big")


def filtered(rows, step):
    """Each row with the next of the five filters. `step`: bytes from a sample to the one on its left."""
    out, before = bytearray(), None
    for number, row in enumerate(rows):
        kind, above = number % 5, before or bytes(len(row))
        out.append(kind)
        for i, byte in enumerate(row):
            a, b = (row[i - step] if i >= step else 0), above[i]
            c = above[i - step] if i >= step else 0
            nearest = min((abs(b - c), 0, a), (abs(a - c), 1, b), (abs(a + b - 2 * c), 2, c))[2]
            out.append(byte - (0, a, b, (a + b) // 2, nearest)[kind] & 255)
        before = row
    return bytes(out)


ADAM7 = ((0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2))


def png(rows, colour_type, bits, extra=b"", interlaced=False, size=None, behind=b""):
    """`rows` of pixels, each a tuple of samples. `extra`: chunks before the image data; `size`: a lie about the size."""
    channels = len(rows[0][0])
    step = max(1, channels * bits // 8)

    def data(part):
        return filtered([pack_row([sample for pixel in row for sample in pixel], bits) for row in part], step)

    if interlaced:
        parts = [[row[x::dx] for row in rows[y::dy]] for x, y, dx, dy in ADAM7]
        stream = b"".join(data(part) for part in parts if part and part[0])
    else:
        stream = data(rows)
    width, height = size or (len(rows[0]), len(rows))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, bits, colour_type, 0, 0, interlaced)) +
            extra + chunk(b"IDAT", zlib.compress(stream)) + behind + chunk(b"IEND", b""))


def grid(width, height, most, channels):
    """Pixels that differ, with samples of 0 to `most`."""
    return [[tuple((x * 37 + y * 59 + c * 101 + x * y) % (most + 1) for c in range(channels)) for x in range(width)]
            for y in range(height)]


def level(sample, bits):
    most = (1 << bits) - 1
    return (sample * 255 + most // 2) // most


def rgba(pixel, bits):
    levels = [level(sample, bits) for sample in pixel]
    if len(levels) <= 2:
        levels = levels[:1] * 3 + levels[1:]
    return tuple(levels + [255] * (4 - len(levels)))


PALETTE = [(i * 15 % 256, i * 89 % 256, 255 - i % 256) for i in range(256)]

for colour_type, channels, depths in ((0, 1, (1, 2, 4, 8, 16)), (2, 3, (8, 16)), (4, 2, (8, 16)), (6, 4, (8, 16))):
    for bits in depths:
        for interlaced in (False, True):
            rows = grid(11, 9, (1 << bits) - 1 if bits < 16 else 65535, channels)
            name = f"{ {0: 'grey', 2: 'colours', 4: 'grey-opacity', 6: 'colours-opacity'}[colour_type] }-{bits}"
            good(f"{name}{'-interlaced' * interlaced}.png", png(rows, colour_type, bits, interlaced=interlaced),
                 [[rgba(pixel, bits) for pixel in row] for row in rows], int(bits == 16))
for bits in (1, 2, 4, 8):
    for interlaced in (False, True):
        rows = grid(11, 9, (1 << bits) - 1, 1)
        colours = PALETTE[:1 << bits]
        good(f"palette-{bits}{'-interlaced' * interlaced}.png",
             png(rows, 3, bits, chunk(b"PLTE", bytes(sum(colours, ()))), interlaced),
             [[(*colours[i], 255) for (i,) in row] for row in rows])
SMALL = grid(3, 2, 3, 1)
THREE = chunk(b"PLTE", bytes(sum(PALETTE[:4], ())))
good("palette-transparent.png", png(SMALL, 3, 2, THREE + chunk(b"tRNS", bytes([0, 127, 128]))),
     [[(*PALETTE[i], (0, 127, 128, 255)[i]) for (i,) in row] for row in SMALL])
good("grey-transparent.png", png(SMALL, 0, 2, chunk(b"tRNS", struct.pack(">H", 2))),
     [[(i * 85, i * 85, i * 85, 0 if i == 2 else 255) for (i,) in row] for row in SMALL])
COLOURS = grid(3, 2, 255, 3)
good("colours-transparent.png", png(COLOURS, 2, 8, chunk(b"tRNS", struct.pack(">HHH", *COLOURS[0][1]))),
     [[(*pixel, 0 if pixel == COLOURS[0][1] else 255) for pixel in row] for row in COLOURS])
good("one-pixel.png", png([[(1, 2, 3)]], 2, 8), [[(1, 2, 3, 255)]])
# A text that unpacks to 100 MB, and a profile that is none: nobody looks at them.
good("bombs-beside.png", png([[(1, 2, 3)]], 2, 8, chunk(b"zTXt", b"a\0\0" + zlib.compress(bytes(10**8))) +
                             chunk(b"iCCP", b"b\0\0" + zlib.compress(b"no profile") )), [[(1, 2, 3, 255)]])
bad("no-palette.png", png(SMALL, 3, 2), "kDamaged")
bad("rows-missing.png", png(COLOURS, 2, 8, size=(3, 200)), "kDamaged")
bad("no-data.png", png(COLOURS, 2, 8)[:33] + chunk(b"IEND", b""), "kDamaged")
bad("no-width.png", png(COLOURS, 2, 8, size=(0, 2)), "kDamaged")
bad("wide.png", png(COLOURS, 2, 8, size=(65536, 1)), "kTooLarge")
bad("many-pixels.png", png(COLOURS, 2, 8, size=(65535, 65535)), "kTooLarge")
bad("wrong-sum.png", png(COLOURS, 2, 8).replace(zlib.compress(b""), b"")[:-20] + b"\0\0\0\0" + png(COLOURS, 2, 8)[-16:],
    "kDamaged")
bad("odd-depth.png", png(COLOURS, 2, 8).replace(b"\x08\x02\0\0\0", b"\x03\x02\0\0\0", 1), "kDamaged")


# JPEG: every block of 8 x 8 has one colour, so that only the first coefficient of each is there.

def segment(marker, data):
    return bytes([0xFF, marker]) + struct.pack(">H", len(data) + 2) + data


class Bits:
    def __init__(self):
        self.number, self.count = 0, 0

    def put(self, value, bits):
        self.number = self.number << bits | value & (1 << bits) - 1
        self.count += bits

    def stuffed(self):
        filled = -self.count % 8
        data = (self.number << filled | (1 << filled) - 1).to_bytes((self.count + filled) // 8, "big")
        return data.replace(b"\xFF", b"\xFF\0")


def jpeg(blocks, extra=b"", size=None, end=b"\xFF\xD9", names=b"\1\2\3\4"):
    """`blocks`: rows of blocks, each a tuple of 1, 3 or 4 samples as they are stored; `names` of these channels."""
    channels = len(blocks[0][0])
    # Differences have 0 to 11 bits, each count with a code of 4; of the other coefficients only "no more", code 0.
    tables = segment(0xC4, b"\0" + bytes([0, 0, 0, 12] + [0] * 12) + bytes(range(12)))
    tables += segment(0xC4, b"\x10" + bytes([1] + [0] * 15) + b"\0")
    bits, before = Bits(), [0] * channels
    for row in blocks:
        for block in row:
            for c, sample in enumerate(block):
                value = (sample - 128) * 8
                difference, before[c] = value - before[c], value
                length = abs(difference).bit_length()
                bits.put(length, 4)
                bits.put(difference if difference >= 0 else difference + (1 << length) - 1, length)
                bits.put(0, 1)
    width, height = size or (8 * len(blocks[0]), 8 * len(blocks))
    parts = b"".join(bytes([names[c], 0x11, 0]) for c in range(channels))
    scan = b"".join(bytes([names[c], 0]) for c in range(channels))
    return (b"\xFF\xD8" + extra + segment(0xDB, b"\0" + bytes([1] * 64)) +
            segment(0xC0, struct.pack(">BHHB", 8, height, width, channels) + parts) + tables +
            segment(0xDA, bytes([channels]) + scan + b"\0\x3F\0") + bits.stuffed() + end)


def spread(blocks, colour, width=None, height=None):
    rows = [[colour(block) for block in row for _ in range(8)] for row in blocks for _ in range(8)]
    return [row[:width] for row in rows[:height]]


def from_ycc(block):
    y, blue, red = block[0], block[1] - 128, block[2] - 128
    return tuple(min(255, max(0, round(part))) for part in
                 (y + 1.402 * red, y - 0.344136 * blue - 0.714136 * red, y + 1.772 * blue)) + (255,)


def from_inks(block):
    return tuple((block[i] * block[3] + 127) // 255 for i in range(3)) + (255,)  # Adobe: 255 stands for none


def grey(block):
    return (block[0],) * 3 + (255,)


def adobe(transform):
    return segment(0xEE, b"Adobe\0\x64\0\0\0\0" + bytes([transform]))


GREYS = [[(0,), (60,)], [(255,), (128,)], [(200,), (31,)]]
YCC = [[(80, 100, 160), (200, 128, 128)], [(120, 180, 90), (60, 120, 140)]]
INKS = [[(255, 255, 255, 255), (0, 255, 255, 255)], [(200, 100, 50, 128), (10, 20, 30, 0)]]
good("grey.jpg", jpeg(GREYS), spread(GREYS, grey), 1)
good("grey-cut-blocks.jpg", jpeg(GREYS, size=(11, 17)), spread(GREYS, grey, 11, 17), 1)
good("colours.jpg", jpeg(YCC), spread(YCC, from_ycc), 2)
good("plain-colours.jpg", jpeg(YCC, adobe(0), names=b"RGB"), spread(YCC, lambda block: (*block, 255)), 1)
good("inks.jpg", jpeg(INKS, adobe(0), names=b"CMYK"), spread(INKS, from_inks), 2)
bad("no-size.jpg", jpeg(GREYS, size=(16, 0)), "kDamaged")
bad("many-pixels.jpg", jpeg(GREYS, size=(65000, 65000)), "kTooLarge")
bad("rows-missing.jpg", jpeg(GREYS, size=(16, 400)), "kDamaged where libjpeg reads")
bad("no-end.jpg", jpeg(GREYS, end=b""), "kDamaged")


def exif(orientation, order="<", behind=b"", kind=3, offset=8, entries=None):
    entry = struct.pack(order + "HHI", 0x112, kind, 1) + struct.pack(order + "HH", orientation, 0)
    other = struct.pack(order + "HHII", 0x100, 4, 1, 77)
    tiff = struct.pack(order + "HI", 42, offset) + struct.pack(order + "H", 2 if entries is None else entries) + other + entry
    return segment(0xE1, b"Exif\0\0" + (b"II" if order == "<" else b"MM") + tiff + behind)


def turned(rows, orientation):
    """What a viewer shows of the stored rows."""
    columns = [list(column) for column in zip(*rows)]
    flip, mirror = (lambda r: r[::-1]), (lambda r: [row[::-1] for row in r])
    return {1: rows, 2: mirror(rows), 3: flip(mirror(rows)), 4: flip(rows), 5: columns, 6: mirror(columns),
            7: flip(mirror(columns)), 8: flip(columns)}[orientation]


for orientation in range(1, 9):
    for order, name in (("<", "little"), (">", "big")):
        good(f"orientation-{orientation}-{name}.jpg", jpeg(GREYS, exif(orientation, order)),
             turned(spread(GREYS, grey), orientation), 1)
good("orientation-after-comment.jpg", jpeg(GREYS, segment(0xFE, b"hello") + b"\xFF\xFF" + exif(6)),
     turned(spread(GREYS, grey), 6), 1)
for name, extra in (("nine", exif(9)), ("of-other-type", exif(6, kind=4)), ("beyond", exif(6, offset=2**31)),
                    ("overlong", exif(6, offset=25, entries=65535)), ("in-other-name", segment(0xE1, b"http\0\0" + exif(6)[10:]))):
    good(f"orientation-{name}.jpg", jpeg(GREYS, extra), spread(GREYS, grey), 1)


# BMP

def bmp(data, width, height, bits, compression=0, colours=b"", masks=b"", info=40, used=0, gap=0):
    header = struct.pack("<IiiHHIIiiII", info, width, height, 1, bits, compression, len(data), 0, 0, used, 0) + masks
    header = header.ljust(info, b"\0") if info > 40 else header
    if info == 12:
        header = struct.pack("<IHHHH", 12, width, height, 1, bits)
    start = 14 + len(header) + len(colours) + gap
    return b"BM" + struct.pack("<IHHI", start + len(data), 0, 0, start) + header + colours + bytes(gap) + data


def stored(rows, bits):
    """Rows of numbers, the lowest first, each padded to 4 bytes; numbers of 16 bits and more are little-endian."""
    def row_bytes(row):
        data = pack_row(row, bits) if bits <= 8 else b"".join(n.to_bytes(bits // 8, "little") for n in row)
        return data + bytes(-len(data) % 4)
    return b"".join(map(row_bytes, reversed(rows)))


def quads(colours):
    return b"".join(bytes([blue, green, red, 0]) for red, green, blue in colours)


def numbers(width, height, most):
    return [[pixel[0] for pixel in row] for row in grid(width, height, most, 1)]


def opaque(rows, colours):
    return [[(*colours[i], 255) for i in row] for row in rows]


for bits in (1, 4, 8):
    rows, colours = numbers(13, 5, (1 << bits) - 1), PALETTE[:1 << bits]
    good(f"indexes-{bits}.bmp", bmp(stored(rows, bits), 13, 5, bits, colours=quads(colours)), opaque(rows, colours))
    good(f"indexes-{bits}-top-down.bmp", bmp(stored(rows[::-1], bits), 13, -5, bits, colours=quads(colours), gap=6),
         opaque(rows, colours))
    good(f"indexes-{bits}-old.bmp",
         bmp(stored(rows, bits), 13, 5, bits, colours=bytes(n for colour in colours for n in colour[::-1]), info=12),
         opaque(rows, colours))
FEW = numbers(5, 3, 2)
good("few-colours.bmp", bmp(stored(FEW, 8), 5, 3, 8, colours=quads(PALETTE[:3]), used=3), opaque(FEW, PALETTE))
good("colours-that-are-not-there.bmp", bmp(stored(FEW, 8), 5, 3, 8, colours=quads(PALETTE[:2]), used=2),
     opaque(FEW, PALETTE[:2] + [(0, 0, 0)]))
good("last-row-unpadded.bmp", bmp(stored(FEW, 8)[:-3], 5, 3, 8, colours=quads(PALETTE[:3]), used=3), opaque(FEW, PALETTE))
TRUE = [[red << 16 | green << 8 | blue for red, green, blue in row] for row in grid(5, 3, 255, 3)]


def parts(number, opacity=255):
    return number >> 16 & 255, number >> 8 & 255, number & 255, opacity


EXPECTED = [[parts(number) for number in row] for row in TRUE]
good("colours-24.bmp", bmp(stored(TRUE, 24), 5, 3, 24), EXPECTED)
good("colours-32.bmp", bmp(stored(TRUE, 32), 5, 3, 32), EXPECTED)
HALF = [[number | (x * 63) << 24 for x, number in enumerate(row)] for row in TRUE]
good("fourth-byte-32.bmp", bmp(stored(HALF, 32), 5, 3, 32), [[parts(n) for n in row] for row in HALF])
SHUFFLED = struct.pack("<IIII", 0xFF, 0xFF00, 0xFF0000, 0xFF000000)
good("fields-32-opacity.bmp", bmp(stored(HALF, 32), 5, 3, 32, 3, masks=SHUFFLED, info=108),
     [[(n & 255, n >> 8 & 255, n >> 16 & 255, n >> 24) for n in row] for row in HALF])
good("fields-32-no-opacity.bmp", bmp(stored(TRUE, 32), 5, 3, 32, 3, masks=SHUFFLED, info=108),
     [[(n & 255, n >> 8 & 255, n >> 16 & 255, 255) for n in row] for row in TRUE])
good("fields-32.bmp", bmp(stored(HALF, 32), 5, 3, 32, 3, masks=SHUFFLED[:12]),
     [[(n & 255, n >> 8 & 255, n >> 16 & 255, 255) for n in row] for row in HALF])
SHORT = [[number * 2654435761 >> 7 & 0xFFFF for number in row] for row in TRUE]
good("colours-16.bmp", bmp(stored(SHORT, 16), 5, 3, 16),
     [[tuple(level(n >> shift & 31, 5) for shift in (10, 5, 0)) + (255,) for n in row] for row in SHORT])
good("fields-16.bmp", bmp(stored(SHORT, 16), 5, 3, 16, 3, masks=struct.pack("<III", 0xF800, 0x7E0, 0x1F)),
     [[(level(n >> 11, 5), level(n >> 5 & 63, 6), level(n & 31, 5), 255) for n in row] for row in SHORT])
RUNS8 = bytes([3, 1, 2, 2, 0, 0, 0, 3, 1, 2, 1, 0, 2, 0, 0, 0, 1, 2, 0, 2, 2, 0, 2, 1, 0, 1])
good("runs-8.bmp", bmp(RUNS8, 5, 3, 8, 1, colours=quads(PALETTE[:3]), used=3),
     opaque([[2, 0, 0, 1, 1], [1, 2, 1, 0, 0], [1, 1, 1, 2, 2]], PALETTE))
RUNS4 = bytes([5, 0x12, 0, 0, 0, 5, 0x01, 0x20, 0x10, 0, 0, 0, 3, 0x22, 0, 1])
good("runs-4.bmp", bmp(RUNS4, 5, 3, 4, 2, colours=quads(PALETTE[:3]), used=3),
     opaque([[2, 2, 2, 0, 0], [0, 1, 2, 0, 1], [1, 2, 1, 2, 1]], PALETTE))
good("runs-beyond.bmp", bmp(bytes([255, 1, 0, 0, 255, 2, 0, 2, 9, 0, 9, 1, 0, 1]), 2, 2, 8, 1, colours=quads(PALETTE[:3]), used=3),
     opaque([[2, 2], [1, 1]], PALETTE))
bad("runs-cut.bmp", bmp(RUNS8[:9], 5, 3, 8, 1, colours=quads(PALETTE[:3]), used=3), "kDamaged")
bad("runs-top-down.bmp", bmp(RUNS8, 5, -3, 8, 1, colours=quads(PALETTE[:3]), used=3), "kNotSupported")
bad("rows-missing.bmp", bmp(stored(TRUE, 24)[:-9], 5, 3, 24), "kDamaged")
bad("of-no-bits.bmp", bmp(stored(TRUE, 24), 5, 3, 0), "kNotSupported")
bad("a-png-inside.bmp", bmp(png(COLOURS, 2, 8), 3, 2, 0, 5), "kNotSupported")
bad("wide.bmp", bmp(b"", 65536, 1, 24), "kTooLarge")
bad("lowest-height.bmp", bmp(b"", 1, -2**31, 24), "kTooLarge")
bad("no-height.bmp", bmp(b"", 1, 0, 24), "kDamaged")
bad("negative-width.bmp", bmp(b"", -5, 3, 24), "kTooLarge")
bad("pixels-beyond.bmp", bmp(b"", 5, 3, 24, gap=0)[:10] + struct.pack("<I", 10**9) + bmp(b"", 5, 3, 24)[14:], "kDamaged")


def main(folder):
    folder.mkdir(parents=True, exist_ok=True)
    for old in folder.iterdir():
        old.unlink()
    for name, (content, expected) in FILES.items():
        (folder / name).write_bytes(content)
        (folder / f"{name}.expected").write_text(expected, encoding="ascii")


if __name__ == "__main__":
    if len(sys.argv) != 2 or sys.argv[1].startswith("-"):
        sys.exit(__doc__)
    main(pathlib.Path(sys.argv[1]))
