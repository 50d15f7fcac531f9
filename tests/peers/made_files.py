"""GIF files made for the check: every depth, interlaced and not, odd sizes; and places where our rules are unusual."""
import os
import random
import struct
import subprocess

ODD_SIZES = [(1, 1), (3, 1), (5, 5), (7, 8), (17, 9), (33, 31), (101, 67)]


class CodePacker:
    """Joins codes into bytes, the least significant bit first."""

    def __init__(self):
        self.bits, self.count, self.bytes = 0, 0, bytearray()

    def put(self, code, width):
        self.bits |= code << self.count
        self.count += width
        while self.count >= 8:
            self.bytes.append(self.bits & 255)
            self.bits >>= 8
            self.count -= 8

    def finish(self):
        self.put(0, 7)
        return bytes(self.bytes)


def sub_blocks(data):
    pieces = [data[i:i + 255] for i in range(0, len(data), 255)]
    return b"".join(bytes([len(piece)]) + piece for piece in pieces) + b"\0"


def image_data(pixels, code_size, deferred_clear):
    """Minimum code size and LZW data. A deferred clear never comes: codes go on unchanged when the table is full."""
    clear = 1 << code_size
    packer, table, following, width = CodePacker(), {}, clear + 2, code_size + 1
    packer.put(clear, width)
    prefix = pixels[0]
    for pixel in pixels[1:]:
        if (prefix, pixel) in table:
            prefix = table[prefix, pixel]
            continue
        packer.put(prefix, width)
        if following < 4096:
            table[prefix, pixel] = following
            if following == 1 << width:
                width += 1
            following += 1
        elif not deferred_clear:
            packer.put(clear, width)
            table, following, width = {}, clear + 2, code_size + 1
        prefix = pixel
    packer.put(prefix, width)
    if following < 4096 and following == 1 << width:  # the reader adds one more entry behind the last pixel's code
        width += 1
    packer.put(clear + 1, width)
    return bytes([code_size]) + sub_blocks(packer.finish())


def row_order(height, interlaced):
    if not interlaced:
        return list(range(height))
    return [*range(0, height, 8), *range(4, height, 8), *range(2, height, 4), *range(1, height, 2)]


def palette(seed, depth):
    return random.Random(str(seed)).randbytes(3 << depth)


def image(dice, place, size, depth, interlaced, local):
    """One image with runs and noise, so that short and long strings come up."""
    width, height = size
    pixels = bytearray()
    while len(pixels) < width * height:
        pixels += bytes([dice.randrange(1 << depth)]) * dice.choice([1, 1, 1, 2, 9])
    rows = [pixels[y * width:(y + 1) * width] for y in row_order(height, interlaced)]
    packed = interlaced << 6 | (0x80 | depth - 1 if local else 0)
    table = palette(size, depth) if local else b""
    data = image_data(b"".join(rows), max(2, depth), deferred_clear=dice.random() < 0.5)
    return b"," + struct.pack("<4HB", *place, *size, packed) + table + data


def control(disposal, delay, transparent=None):
    packed = disposal << 2 | (transparent is not None)
    return b"!\xf9" + struct.pack("<BBHBB", 4, packed, delay, transparent or 0, 0)


def document(blocks, depth):
    screen = struct.pack("<2HBBB", 120, 90, 0xF0 | depth - 1, 0, 0)
    return b"GIF89a" + screen + palette("global", depth) + b"".join(blocks) + b";"


def odd_sizes(depth, interlaced):
    """An animation of many sizes, every second image with a palette of its own and of another depth."""
    dice = random.Random(depth * 2 + interlaced)
    blocks = [b"!\xff\x0bNETSCAPE2.0\x03\x01\x07\x00\x00"]
    for number, size in enumerate(ODD_SIZES):
        own_depth = 1 + (depth + number) % 8
        local = number % 2 == 1
        blocks.append(control(number % 4, number * 300, number % 2 if number > 3 else None))
        blocks.append(image(dice, (number, number * 3), size, own_depth if local else depth, interlaced, local))
    return document(blocks, depth)


def texts():
    comments = [b"!\xfe" + sub_blocks(bytes([65 + i % 26]) * n) for i, n in enumerate([1, 254, 256, 509, 511, 700])]
    plain_text = b"!\x01" + struct.pack("<B4H4B", 12, 0, 0, 80, 16, 8, 8, 1, 0) + sub_blocks(b"tab\tand\r\nline")
    return document([*comments, plain_text, image(random.Random(1), (0, 0), (9, 9), 3, False, False)], 3)


def comment_of_255():
    return document([b"!\xfe" + sub_blocks(b"x" * 255), image(random.Random(2), (0, 0), (4, 4), 2, False, False)], 2)


def few_interlaced_rows():
    dice = random.Random(3)
    return document([image(dice, (0, 0), (6, height), 4, True, False) for height in (1, 2, 3, 4, 5)], 4)


def too_many_rows(interlaced):
    """Data for ten rows where the image says six."""
    pixels = bytes(y + 1 for y in range(10) for _ in range(3))
    head = b"," + struct.pack("<4HB", 0, 0, 3, 6, interlaced << 6)
    return document([head + image_data(pixels, 4, False)], 4)


def values_beyond_depth(depth, code_size):
    pixels = bytes(range(1 << code_size)) * 2
    head = b"," + struct.pack("<4HB", 0, 0, 1 << code_size, 2, 0)
    return document([head + image_data(pixels, code_size, False)], depth)


def write(folder):
    """Writes all files into `folder` and returns their paths."""
    made = {f"depth-{d}{'-interlaced' * i}": odd_sizes(d, i) for d in range(1, 9) for i in (False, True)}
    made.update({"texts": texts(), "comment-of-255": comment_of_255(), "few-interlaced-rows": few_interlaced_rows(),
                 "too-many-rows": too_many_rows(False), "too-many-rows-interlaced": too_many_rows(True),
                 "values-beyond-depth-1": values_beyond_depth(1, 2),
                 "values-beyond-depth-3": values_beyond_depth(3, 4),
                 "values-beyond-depth-4": values_beyond_depth(4, 6)})
    paths = []
    for name, content in made.items():
        paths.append(os.path.join(folder, f"made-{name}.gif"))
        with open(paths[-1], "wb") as file:
            file.write(content)
    return paths + write_with_others(folder, paths[14])


def write_with_others(folder, source):
    """Files from other producers: gradients from ImageMagick, one of our own files passed through gifsicle."""
    gradient = ["convert", "-size", "61x43", "gradient:red-blue", "-rotate", "30", "-colors"]
    jobs = {f"convert-{n}{'-interlaced' * i}": [*gradient, str(n), *(["-interlace", "GIF"] * i)]
            for n in (2, 3, 8, 16, 100, 256) for i in (False, True)}
    jobs.update({"gifsicle-optimized": ["gifsicle", "-O3", source, "-o"],
                 "gifsicle-interlaced": ["gifsicle", "-O1", "--interlace", "--careful", source, "-o"],
                 "gifsicle-8-colours": ["gifsicle", "--colors", "8", "--dither", source, "-o"]})
    paths = []
    for name, command in jobs.items():
        paths.append(os.path.join(folder, f"made-{name}.gif"))
        subprocess.run([*command, paths[-1]], check=True, stderr=subprocess.DEVNULL)
    return paths
