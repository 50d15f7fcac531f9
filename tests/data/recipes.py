#!/usr/bin/env python3
"""Makes the GIF files that tests and fuzzers read, each by the recipe of its name:

  recipes.py FOLDER             writes those that are put together here, byte by byte
  recipes.py --programs FOLDER  writes those that other programs make
  recipes.py --table            writes the table of README.md anew
  recipes.py --check            fails when that table is not the one of the recipes

What is in order is built by the functions below; trouble is what a recipe adds, leaves out, or writes by hand.
"""
import pathlib
import random
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
RECIPES = {}   # name: what the file exercises, its bytes
PROGRAMS = {}  # name: what the file exercises, the command that makes it from others; OUT is the file itself


def recipe(name, exercises, content):
    RECIPES[name] = exercises, content


# Building blocks. Sizes and places are (x, y) pairs; `bits` is the depth of a palette, 0 for none.

def words(*numbers):
    return b"".join(number.to_bytes(2, "little") for number in numbers)


def palette(bits, shade=0):
    """2 ** bits colours, no two alike; another shade gives another palette. No bits, no colours."""
    return bytes(part for i in range(1 << bits) for part in (i * 255 >> bits, i * 89 + 40 * shade & 255, 255 - i & 255)
                 if bits)


def mixed(width, height, bits, seed=0):
    """Pixels in short runs, long runs and noise, as colours of `bits`."""
    noise = random.Random(seed).randbytes(width * height)
    return bytes((x // 4 + y // 3 + seed if noise[y * width + x] % 8 or y % 16 < 8 else noise[x]) % (1 << bits)
                 for y in range(height) for x in range(width))


def noise(width, height, seed=0):
    return random.Random(seed).randbytes(width * height)


def encoded(size, pixels, clears_full_table=True):
    """The LZW codes of the pixels, clear code first and end code last."""
    clear, prefix, table = 1 << size, None, {}
    codes = [clear]
    for pixel in pixels:
        if prefix is None or (prefix, pixel) in table:
            prefix = pixel if prefix is None else table[prefix, pixel]
            continue
        codes.append(prefix)
        if clear + 2 + len(table) < 4096:
            table[prefix, pixel] = clear + 2 + len(table)
        elif clears_full_table:
            codes.append(clear)
            table = {}
        prefix = pixel
    return codes + ([] if prefix is None else [prefix]) + [clear + 1]


def packed(size, codes):
    """The codes as bytes, each as wide as a decoder expects it by then."""
    out, value, used = bytearray(), 0, 0
    width, free, is_first = size + 1, (1 << size) + 2, True
    for code in codes:
        value |= code << used
        used += width
        while used >= 8:
            out.append(value & 255)
            value, used = value >> 8, used - 8
        if code == 1 << size:
            width, free, is_first = size + 1, (1 << size) + 2, True
            continue
        if not is_first and free < 4096:
            free += 1
            width += free == 1 << width and width < 12
        is_first = False
    return bytes(out) + (bytes([value]) if used else b"")


def sub_blocks(data, longest=255):
    pieces = [data[i:i + longest] for i in range(0, len(data), longest)]
    return b"".join(bytes([len(piece)]) + piece for piece in pieces) + b"\0"


def coded(size, *codes):
    """Image data: minimum code size and these codes."""
    return bytes([size]) + sub_blocks(packed(size, codes))


def lzw(size, pixels, **settings):
    return coded(size, *encoded(size, pixels, **settings))


def image(size=(4, 4), pixels=None, at=(0, 0), bits=2, local=0, interlaced=False, data=None):
    """An image in the colours of a global palette of `bits`, or a local one; `data` in place of its pixels' codes."""
    bits, (width, height) = local or bits, size
    if data is None:
        pixels = mixed(*size, bits) if pixels is None else pixels
        passes = ((0, 8), (4, 8), (2, 4), (1, 2)) if interlaced else ((0, 1),)
        rows = [y for first, step in passes for y in range(first, height, step)]
        data = lzw(max(bits, 2), b"".join(pixels[y * width:(y + 1) * width] for y in rows))
    flags = bool(local) << 7 | interlaced << 6 | (local - 1 if local else 0)
    return b"," + words(*at, *size) + bytes([flags]) + palette(local, 1) + data


def control(delay=10, disposal=0, transparent=None, user_input=False):
    flags = disposal << 2 | user_input << 1 | (transparent is not None)
    return b"!\xf9\4" + bytes([flags]) + words(delay) + bytes([transparent or 0, 0])


def frame(size=(4, 4), delay=10, disposal=0, transparent=None, **settings):
    return control(delay, disposal, transparent) + image(size, **settings)


def comment(text, longest=255):
    return b"!\xfe" + sub_blocks(text, longest)


def plain_text(text, at=(0, 0), size=(32, 16), cell=(8, 8)):
    return b"!\1\x0c" + words(*at, *size) + bytes([*cell, 1, 2]) + sub_blocks(text)


def application(name, data, size=11):
    return b"!\xff" + bytes([size]) + name + data


def loop(times=0):
    return application(b"NETSCAPE2.0", b"\3\1" + words(times) + b"\0")


def block_names(count, *entries):
    """Names for blocks: `count` is how many there should be; an entry is kind, position, name and the name's length."""
    table = b"".join(words(length, kind, position) + bytes(8) + name for kind, position, name, length in entries)
    return application(b"KELMORnb1.0", sub_blocks(words(count) + table))


def gif(*blocks, screen=(4, 4), bits=2, version=b"GIF89a", background=0, aspect=0, end=b";"):
    """A file; with `bits` its global palette."""
    flags = 0x80 | 0x11 * (bits - 1) if bits else 0
    return version + words(*screen) + bytes([flags, background, aspect]) + palette(bits) + b"".join(blocks) + end


def cut(content, last):
    """The file as far as the first place where the bytes `last` stand, with them."""
    return content[:content.index(last) + len(last)]


# Codes. In two bits 4 is the clear code, 5 the end code, 6 the first entry of the table.

def one(size, *codes, picture=(2, 2)):
    """A file of one image that holds these codes."""
    return gif(image(picture, data=coded(size, *codes)), screen=picture)


recipe("codes-deferred-clear", "the table fills and is never cleared: codes stay 12 bits wide",
       gif(image((100, 100), data=lzw(8, noise(100, 100), clears_full_table=False)), screen=(100, 100), bits=8))
recipe("codes-several-clears", "noise fills the table several times, each time it is cleared",
       gif(image((100, 100), noise(100, 100), bits=8), screen=(100, 100), bits=8))
recipe("codes-clear-every-row", "a clear code before every row",
       one(2, *(code for row in range(9) for code in encoded(2, mixed(20, 1, 2, row))[:-1]), 5, picture=(20, 9)))
recipe("codes-clear-twice", "clear codes in a row, at the start and in the midst",
       one(2, 4, 4, 4, 1, 2, 4, 4, 3, 0, 5))
recipe("codes-one-run", "one colour: every code is the table's next entry",
       gif(image((300, 200), bytes(60000)), screen=(300, 200)))
recipe("codes-no-clear-no-end", "neither clear nor end code", one(2, 1, 2, 3, 0))
recipe("codes-no-end", "ends without an end code", one(2, 4, 1, 2, 3, 0))
recipe("codes-none", "image data without a single code", gif(image(data=b"\2\0")))
recipe("codes-no-pixels", "clear and end code, nothing between", one(2, 4, 5))
recipe("codes-one-pixel-short", "the last pixel is missing", one(2, 4, 1, 2, 3, 5))
recipe("codes-rows-short", "the last two rows are missing, one before them is begun",
       one(2, 4, *[1, 2, 3, 0] * 7, 5, picture=(8, 6)))
recipe("codes-rows-short-interlaced", "interlaced, the last pass is missing",
       gif(image((8, 8), interlaced=True, data=coded(2, 4, *[1, 2, 3, 0] * 8, 5)), screen=(8, 8)))
recipe("codes-one-pixel-more", "a pixel too many", one(2, 4, 1, 2, 3, 0, 1, 5))
recipe("codes-rows-more", "three rows too many", one(2, 4, *[1, 2, 3, 0] * 5, 5, picture=(4, 2)))
recipe("codes-rows-more-interlaced", "interlaced, three rows too many",
       gif(image((4, 5), interlaced=True, data=coded(2, 4, *[1, 2, 3, 0] * 8, 5)), screen=(4, 5)))
recipe("codes-many-more", "noise for a hundred times the pixels, the table is cleared several times",
       gif(image((10, 10), data=lzw(8, noise(100, 100))), screen=(10, 10), bits=8))
recipe("codes-many-more-deferred", "noise for a hundred times the pixels, the table is never cleared",
       gif(image((10, 10), data=lzw(8, noise(100, 100), clears_full_table=False)), screen=(10, 10), bits=8))
recipe("codes-many-more-one-run", "long strings of one colour, a hundred times the pixels",
       gif(image((30, 20), data=lzw(2, bytes(60000))), screen=(30, 20)))
recipe("codes-more-then-cut", "pixels too many, then the file ends without an empty sub-block",
       gif(image((2, 2), data=coded(2, 4, 1, 2, 3, 0, 1)[:-1]), screen=(2, 2), end=b""))
recipe("codes-behind-the-end", "more sub-blocks behind the one with the end code",
       gif(image((2, 2), data=coded(2, 4, 1, 2, 3, 0, 5)[:-1] + b"\3abc\xff" + bytes(255) + b"\0"), screen=(2, 2)))
recipe("codes-unknown-first", "the first code is not in the table", one(2, 4, 7))
recipe("codes-next-after-clear", "the first code is the table's next entry, which has no string yet", one(2, 4, 6, 5))
recipe("codes-unknown-midway", "a code beyond the table's next entry", one(2, 4, 1, 2, 6, 15, 3, 5, picture=(8, 2)))
recipe("codes-unknown-behind-the-last-pixel", "a code that is not in the table where nothing is needed any more",
       one(2, 4, 1, 2, 3, 0, 15, 5))
recipe("codes-unknown-behind-surplus", "a code that is not in the table behind pixels too many",
       one(2, 4, 1, 2, 3, 0, 1, 1, 15, 5))
recipe("codes-unknown-in-fourth-frame", "the codes of the fourth frame break, junk follows",
       gif(loop(), *[frame()] * 3, control(), image(data=coded(2, 4, 1, 7, 7)), b"\0junk,!", screen=(4, 4)))
recipe("codes-unknown-then-cut", "a code that is not in the table, and the file ends behind its sub-block",
       gif(frame(), control(), image(data=coded(2, 4, 1, 15)[:-1]), end=b""))
recipe("codes-of-size-3-for-4-colours", "a minimum code size larger than the palette needs",
       gif(image((2, 2), data=lzw(3, bytes([0, 1, 2, 3]))), screen=(2, 2)))
recipe("codes-of-size-8-for-2-colours", "a minimum code size much larger than the palette needs",
       gif(image((9, 5), data=lzw(8, mixed(9, 5, 1))), screen=(9, 5), bits=1))
recipe("codes-of-size-2-for-256-colours", "a minimum code size smaller than the palette's depth",
       gif(image((9, 5), data=lzw(2, mixed(9, 5, 2))), screen=(9, 5), bits=8))
recipe("codes-in-sub-blocks-of-1", "image data in sub-blocks of one byte",
       gif(image((30, 20), data=b"\4" + sub_blocks(packed(4, encoded(4, mixed(30, 20, 4))), 1)), screen=(30, 20),
           bits=4))
for colour_bits in (1, 3, 5):
    recipe(f"pixels-outside-palette-{colour_bits}", f"pixels beyond the {2 << colour_bits - 1} colours of the palette",
           gif(image((4, 3), data=lzw(8, bytes([0, 1, 2, 3, 7, 8, 15, 16, 31, 32, 254, 255]))), screen=(4, 3),
               bits=colour_bits))
for code_size, codes in ((0, b"\2\x06\x00"), (1, b"\2\x0a\x03"), (9, b"\3\0\2\1"), (143, b"\4abcd"), (156, b"")):
    recipe(f"code-size-{code_size}", f"minimum code size {code_size}, out of range",
           gif(image(data=bytes([code_size]) + codes + b"\0"), image()))
recipe("code-size-11", "minimum code size 11 with a palette of 256 colours",
       gif(image((100, 100), data=lzw(11, noise(100, 100))), screen=(100, 100), bits=8))
recipe("code-size-12-cut", "minimum code size 12 on a screen of 8224 x 8224, the file ends there",
       gif(image((8224, 8), data=b"\x0c"), screen=(8224, 8224), bits=1, end=b""))
recipe("code-size-143-cut", "minimum code size 143 in a frame of 65535 x 1321 pixels at row 65280, cut off",
       gif(control(), image((65535, 1321), at=(0, 65280), data=b"\x8f"), screen=(32, 32), bits=1, end=b""))

# Pictures.

for depth in range(1, 9):
    for suffix, interlaced in (("", False), ("-interlaced", True)):
        # Of two to four interlaced rows one is lost; files for that are below.
        sizes = (120, 90), (1, 1), (7, 5), (8, 9), (33, 64), (64, 7), (90, 33)
        frames = [frame(size, delay=i, disposal=i % 3, bits=depth, local=i % 2 and (depth + i) % 8 + 1,
                        transparent=i % 4 and i % 2, at=(i, 2 * i), interlaced=interlaced)
                  for i, size in enumerate(sizes)]
        recipe(f"depth-{depth}{suffix}", f"a palette of {1 << depth} colours and local ones of other depths, seven "
               "sizes" + (", interlaced" if interlaced else ""),
               gif(loop(), *frames, screen=(130, 100), bits=depth))
recipe("interlaced-heights", "interlaced frames of 1 and 5 to 24 rows",
       gif(*(frame((5, height), bits=4, interlaced=True) for height in (1, *range(5, 25))), screen=(5, 24), bits=4))
recipe("interlaced-few-rows", "interlaced frames of 2, 3 and 4 rows: a pass begins below the picture",
       gif(*(frame((5, height), bits=4, interlaced=True) for height in (2, 3, 4)), screen=(5, 4), bits=4))
recipe("interlaced-many", "33 interlaced frames of changing size and disposal, two comments",
       gif(comment(b"one"), loop(5),
           *(frame((30 - i % 3, 60 - i), disposal=i % 3, transparent=i % 8, bits=4, at=(i % 4, i), interlaced=True)
             for i in range(33)),
           comment(b"two"), screen=(33, 92), bits=4))
recipe("interlaced-transparent", "an interlaced still with transparency",
       gif(frame((100, 100), bits=6, transparent=9, interlaced=True), screen=(100, 100), bits=6))
for depth in (1, 3, 8):
    recipe(f"widths-{depth}", f"frames of 1 to 33 pixels' width in {1 << depth} colours: rows of every length",
           gif(*(frame((width, 2), bits=depth) for width in range(1, 34)), screen=(33, 2), bits=depth))
recipe("size-65535x1", "a picture as wide as can be", gif(image((65535, 1)), screen=(65535, 1)))
recipe("size-1x65535", "a picture as high as can be", gif(image((1, 65535)), screen=(1, 65535)))
recipe("size-800x600", "a large picture", gif(image((800, 600), bits=4), screen=(800, 600), bits=4))
recipe("size-frame-65535x65535", "a frame that claims 4 GiB of pixels and has four",
       gif(image((65535, 65535), data=coded(2, 4, 1, 2, 3, 0, 5)), screen=(4, 4)))
recipe("size-frame-9000x9000", "a frame that claims 81 million pixels and has the first row's",
       gif(image((9000, 9000), data=lzw(2, bytes(9001))), screen=(4, 4), bits=1))
for width, height in ((0, 4), (4, 0), (0, 0)):
    recipe(f"size-frame-{width}x{height}", f"an image of {width} x {height} pixels with data, one in order behind it",
           gif(image((width, height), data=lzw(2, bytes(40))), frame(), image((width, height), interlaced=True)))
recipe("size-frame-0x0-cut", "an image of 0 x 0 pixels where the file ends",
       gif(image((0, 0), data=b""), end=b""))
for width, height in ((0, 0), (0, 1), (1, 0), (65535, 65535)):
    recipe(f"screen-{width}x{height}", f"a screen of {width} x {height} pixels and no image",
           gif(screen=(width, height)))
recipe("screen-0x0-with-frame", "a screen of 0 x 0 pixels and a frame", gif(frame(), screen=(0, 0)))
recipe("screen-smaller-than-frames", "frames partly or wholly outside the screen, at the far corner too",
       gif(*(frame((6, 5), at=at, delay=i) for i, at in enumerate(((0, 0), (3, 2), (20, 3), (3, 20), (65535, 65535)))),
           screen=(8, 6)))
recipe("screen-partly-left", "frames that reach over the right and the lower edge",
       gif(frame((8, 6)), frame((6, 5), at=(5, 0)), frame((4, 5), at=(0, 4)), frame((9, 9), at=(7, 5)), screen=(8, 6)))
recipe("screen-larger-than-frames", "five small overlapping frames, transparent, none covers the screen",
       gif(loop(), *(frame((16, 16), at=(4 * i, 3 * i), transparent=3) for i in range(5)), screen=(32, 32),
           background=1))
recipe("frames-259-local-palettes", "259 frames, each with a palette of its own and no global one",
       gif(*(frame((6, 5), local=i % 3 + 1, at=(i % 7, i % 5)) for i in range(259)), screen=(12, 9), bits=0))
recipe("frames-make-one-picture", "images without control blocks make one picture",
       gif(*(image((2, 2), at=(2 * (i % 2), i // 2 * 2)) for i in range(4))))
recipe("frames-over-each-other", "the second image covers the first", gif(image(), image(pixels=bytes([3] * 16))))
recipe("frames-of-several-images", "several images for each frame shown, delays of zero written out or left out",
       gif(*(frame((2, 2), delay=0 if i % 3 else 20, at=(i % 3, i // 3)) + image((1, 1)) for i in range(9))))

# Palettes.

recipe("palette-none", "neither a global nor a local palette, in 87a", gif(image(), image(), bits=0, version=b"GIF87a"))
recipe("palette-none-first", "the first frame has no palette, the second its own", gif(image(), image(local=2), bits=0))
recipe("palette-none-disposals", "frames without any palette, disposals 1 to 4",
       gif(*(frame(disposal=i) for i in range(1, 5)), plain_text(b"x"), screen=(32, 65312), bits=0))
recipe("palette-local-only", "the only palette is a local one", gif(image(local=3), bits=0))
recipe("palette-mixed", "frames with and without a palette of their own",
       gif(frame((8, 8), bits=3), frame((8, 8), local=2), frame((5, 5), bits=3, at=(2, 1)), frame((4, 8), local=8),
           screen=(8, 8), bits=3))
recipe("palette-larger-than-global", "a frame with 256 colours of its own beside two global ones",
       gif(image((60, 50), local=8), screen=(60, 50), bits=1))
recipe("background-outside-palette", "a background index that the palette lacks, disposal 2",
       gif(frame(disposal=2), frame((2, 2), disposal=2), background=4))
recipe("background-colour", "a background colour behind transparent frames, disposal 2",
       gif(frame(disposal=2, transparent=1), frame((2, 2), disposal=2, at=(1, 1), transparent=2), frame((3, 1)),
           background=3))
recipe("transparent-outside-palette", "a transparent index that the palette lacks", gif(frame(transparent=200)))

# Headers.

recipe("version-87a", "a file of 1987", gif(image((40, 40), bits=4), version=b"GIF87a", bits=4, screen=(40, 40)))
recipe("version-87a-animation", "several images in 87a, the last one interlaced",
       gif(image(), image((2, 2), at=(1, 1)), image((4, 9), interlaced=True), version=b"GIF87a"))
recipe("version-87a-extensions", "control, comment and loop in a file marked 87a",
       gif(loop(2), frame(), comment(b"after the only frame"), version=b"GIF87a"))
recipe("version-90a", "a version that does not exist", gif(image(), version=b"GIF90a"))
recipe("aspect", "the pixel aspect byte is 49", gif(image(), aspect=49))
recipe("prefix-128", "128 bytes before the signature", bytes(range(128)) + gif(loop(7), frame()))
recipe("prefix-128-no-gif", "141 bytes without a signature anywhere", bytes(141))
recipe("empty", "no byte at all", b"")
recipe("trailer-missing", "a complete image, then the file ends", gif(image(), end=b""))
recipe("trailer-bytes-behind", "47 bytes behind the trailer, loop 10",
       gif(loop(10), frame(), frame(), end=b";" + bytes(47)))
recipe("trailer-images-behind", "blocks behind the trailer", gif(frame()) + frame() + b";")
recipe("junk-between-blocks", "bytes that start no block, between two images", gif(image(), b"junk", image()))
recipe("junk-zero-between-blocks", "an empty sub-block too many behind an image", gif(image(), b"\0", image()))
recipe("junk-wrong-length", "a length stands where an image's last, empty sub-block should be and swallows bytes",
       gif(frame(), image(data=lzw(2, mixed(4, 4, 2))[:-1] + b"\x0b"), frame(), frame()))

# Control blocks.

for disposal in range(8):
    recipe(f"disposal-{disposal}", f"disposal {disposal}" + (", which is reserved" if disposal > 3 else ""),
           gif(frame((12, 8), disposal=1),
               *(frame((6, 5), disposal=disposal, transparent=3, at=(2 * i, i)) for i in range(4)),
               frame((2, 2), at=(5, 5)), screen=(12, 8), background=2))
recipe("disposal-3-first", "the first frame asks for what was before it",
       gif(frame((10, 8), disposal=3), frame((4, 4), disposal=1, at=(3, 3)), frame((2, 2), delay=30), screen=(10, 8)))
recipe("disposal-mixed", "all disposals in turn, with transparency",
       gif(loop(), *(frame((9, 7), disposal=i % 4, transparent=i % 3, at=(i % 4, i % 5), delay=i) for i in range(24)),
           screen=(12, 11), background=1))
recipe("control-delays", "delays of 0, 1, 10000 and 65535",
       gif(loop(2), *(frame(delay=n) for n in (0, 1, 10000, 65535))))
recipe("control-user-input", "waits for the user; aspect byte 255, disposal 4, too many pixels",
       gif(control(5, 4, user_input=True), image(data=coded(2, 4, *range(4), *[1] * 20, 5)), aspect=255))
recipe("control-without-image", "control blocks before a text, in a row, and behind the last image",
       gif(control(), plain_text(b"text"), control(), control(7), control(8, 2, 1), image(), control(9),
           screen=(32, 16)))
recipe("control-wrong-size", "a control block whose size byte is not 4",
       gif(control().replace(b"\xf9\4", b"\xf9\5"), image()))

# Texts.

for name, exercises, text in (
        ("one", "one comment", b"A comment."), ("empty", "a comment without sub-blocks", b""),
        ("nul", "a comment of one NUL", b"\0"), ("controls", "line ends and control bytes", b"a\r\nb\tc\rd\n\x1b\x7f"),
        ("ansi", "bytes over 127", b"caf\xe9"), ("utf-8", "UTF-8", "caf\u00e9 \u6f22".encode()),
        ("not-utf-8", "what is not UTF-8", b"\xc3\x28\xff"), ("of-254", "254 bytes", b"x" * 254),
        ("of-255", "255 bytes: a full sub-block", b"x" * 255), ("of-256", "256 bytes", b"x" * 256),
        ("of-510", "two full sub-blocks", b"x" * 510), ("of-40000", "more bytes than are kept", b"0123456789" * 4000)):
    recipe(f"comment-{name}", exercises if "comment" in exercises else f"a comment: {exercises}",
           gif(comment(text), image()))
recipe("comment-in-sub-blocks-of-3", "a comment in short sub-blocks", gif(comment(b"0123456789", 3), image()))
recipe("comment-four", "four comments between frames",
       gif(loop(), *(comment(b"comment %d" % i) + frame((9, 8), delay=i) for i in range(4)), screen=(9, 8)))
recipe("comment-and-no-image", "comments only", gif(comment(b"no image"), comment(b"at all")))
recipe("comment-empty-then-image", "an empty comment with the terminator twice, the load goes on",
       gif(b"!\xfe\0\0", image()))
recipe("plain-text", "a plain text", gif(image((40, 8)), control(), plain_text(b"hello\tyou\0\xe9"), screen=(40, 16)))
recipe("plain-text-of-255", "a plain text of a full sub-block", gif(image(), plain_text(b"x" * 255)))
recipe("plain-text-empty", "a plain text without text", gif(plain_text(b""), image()))
recipe("plain-text-outside", "grids outside the screen, cells of no size",
       gif(image(), plain_text(b"far", at=(65535, 65535)), plain_text(b"none", size=(0, 0), cell=(0, 0))))
recipe("plain-text-interlaced-frames", "texts among interlaced frames, each with control blocks",
       gif(*(frame((9, 12), bits=3, interlaced=True) + control(3) + plain_text(b"%d" % i) for i in range(13)),
           screen=(32, 32), bits=3))

# Application and other extensions.

# The twelfth byte is the length of a sub-block that ends where those behind all 13 bytes do.
LONG_APPLICATION = application(b"PROGRAM 1.0\6\xff", b"\4data\0", 13)
FOREIGN = {  # name: what it is, identifier and code, data
    "icc": ("an ICC profile", b"ICCRGBG1012", sub_blocks(bytes(range(256)) * 2)),
    "icc-empty": ("an ICC profile without data", b"ICCRGBG1012", b"\0"),
    # The packet stands there unframed: 258 bytes of trailer end it wherever a reader steps to.
    "xmp": ("an XMP packet with the trailer that belongs to it", b"XMP DataXMP",
            b"<?xpacket begin=''?><x/><?xpacket end='r'?>\1" + bytes(range(255, -1, -1)) + b"\0"),
    "xmp-empty": ("an XMP packet of its trailer alone", b"XMP DataXMP", b"\1" + bytes(range(255, -1, -1)) + b"\0"),
    "xmp-in-sub-blocks": ("an XMP packet in sub-blocks, without trailer", b"XMP DataXMP", sub_blocks(b" " * 300)),
    "gamma": ("a gamma value", b"ImageMagick", sub_blocks(b"gamma=1")),
    "animexts": ("a loop in ANIMEXTS1.0", b"ANIMEXTS1.0", sub_blocks(b"\1\2\0")),
    "netscape-2.1": ("NETSCAPE2.1", b"NETSCAPE2.1", sub_blocks(b"\1\2\0")),
    "begins-a-block": ("data whose length is an image's introducer", b"LOOKSLIKE44", sub_blocks(bytes(44))),
}
for name, (exercises, identifier, data) in FOREIGN.items():
    recipe(f"application-{name}", exercises, gif(frame(), application(identifier, data), frame()))
recipe("application-size-13", "an application block of size 13, its data read from the twelfth byte on",
       gif(LONG_APPLICATION, image()))
recipe("application-size-0", "an application block of size 0", gif(image(), b"!\xff\0", image()))
recipe("application-block-names", "names for blocks, one for a block that is not there",
       gif(block_names(3, (2, 2, b"first\0", 6), (2, 9, b"gone\0", 5), (6, 3, b"text\0", 5)), image(), comment(b"c")))
recipe("application-block-names-odd", "block names: one given twice, one without end, one with two, one of 300 bytes",
       gif(block_names(6, (2, 2, b"first\0", 6), (2, 2, b"second\0", 7), (2, 3, b"endless", 7), (2, 4, b"a\0b\0", 4),
                       (2, 5, b"", 0), (2, 6, b"x" * 300 + b"\0", 301)), *[image()] * 5))
recipe("application-block-names-short", "block names: more announced than there are, a name longer than the data",
       gif(block_names(9, (2, 2, b"first\0", 6), (2, 3, b"long\0", 5000)), image(), image()))
recipe("application-block-names-empty", "block names without a count", gif(block_names(0)[:-3] + b"\0", image()))
for times in (1, 65535):
    recipe(f"loop-{times}", f"{times} iterations", gif(loop(times), frame(), frame((2, 2))))
recipe("loop-several", "three loop blocks: 30, 40, 50",
       gif(loop(30), frame(), loop(40), frame((2, 2)), loop(50), frame()))
recipe("loop-behind-the-frames", "the loop block comes last", gif(frame(), frame((2, 2)), loop(3)))
recipe("loop-buffering", "a second sub-block in a loop block",
       gif(application(b"NETSCAPE2.0", sub_blocks(b"\1\0\0")[:-1] + sub_blocks(b"\2\xff\xff\xff\xff")), frame()))
recipe("loop-empty", "a loop block without sub-blocks", gif(application(b"NETSCAPE2.0", b"\0"), frame(), frame()))
recipe("extension-unknown", "an extension that nobody defined", gif(b"!\x2a" + sub_blocks(b"unknown"), image()))

# Files that end early.

WHOLE = gif(comment(b"before"), loop(9), plain_text(b"some text"), control(7, 2, 1), image((9, 9), local=3),
            LONG_APPLICATION, frame((20, 12), interlaced=True), screen=(20, 12))
for name, exercises, last in (
        ("in-the-signature", "inside the signature", b"GIF89"),
        ("in-the-palette", "inside the global palette", palette(2)[:7]),
        ("behind-the-palette", "behind the global palette", palette(2)),
        ("behind-an-introducer", "behind an extension's introducer", palette(2) + b"!"),
        ("in-a-comment", "inside a comment", b"befo"), ("in-a-loop-block", "inside a loop block", b"NETSCAPE2.0\3"),
        ("in-a-text-head", "inside a plain text's descriptor", b"!\1\x0c\0\0\0"),
        ("in-a-text", "inside a plain text", b"some"),
        ("in-a-control-block", "inside a control block", b"!\xf9\4"),
        ("in-an-image-head", "inside an image's descriptor", b",\0"),
        ("in-a-local-palette", "inside a local palette", palette(3, 1)[:9]),
        ("before-the-code-size", "where the code size is due", palette(3, 1)),
        ("before-the-codes", "behind the code size", palette(3, 1) + b"\3"),
        ("in-an-application", "inside an application's identifier", b"PROGRAM"),
        ("in-application-data", "inside an application's data", b"PROGRAM 1.0\6\xff\4da")):
    recipe(f"cut-{name}", f"cut off {exercises}", cut(WHOLE, last))
recipe("cut-in-the-codes", "cut off inside an interlaced picture's only sub-block", WHOLE[:-40])
recipe("cut-in-fifth-frame", "cut off inside the fifth frame's second sub-block, loop 10000",
       gif(loop(10000), *[frame((60, 40), bits=6)] * 5, screen=(60, 40), bits=6)[:-700])

# What other programs make of the same things.

for colours in (2, 3, 8, 16, 100, 256):
    for suffix, way in (("", "none"), ("-interlaced", "GIF")):
        PROGRAMS[f"by-convert-{colours}{suffix}"] = (
            f"a turned gradient in {colours} colours" + (", interlaced" if suffix else ""),
            f"convert -size 61x43 gradient:red-blue -rotate 30 -colors {colours} -interlace {way} OUT")
for name, exercises, option in (("optimized", "frames cut down to what changes", "-O3"),
                                ("interlaced", "interlaced", "--interlace"),
                                ("8-colours", "in 8 colours", "--colors 8")):
    PROGRAMS[f"by-gifsicle-{name}"] = exercises, f"gifsicle --no-warnings {option} depth-8.gif -o OUT"
PROGRAMS["by-gifsicle-many"] = "many small frames, optimized", "gifsicle --no-warnings -O3 interlaced-many.gif -o OUT"


def write_files(folder):
    """Writes the files of RECIPES, and deletes others from earlier recipes."""
    folder.mkdir(parents=True, exist_ok=True)
    for old in folder.glob("*.gif"):
        old.unlink()
    for name, (_, content) in RECIPES.items():
        (folder / f"{name}.gif").write_bytes(content)


def write_by_programs(folder):
    """Writes the files of PROGRAMS; fails when one of them can't be run."""
    folder.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as sources:
        write_files(pathlib.Path(sources))
        for name, (_, command) in PROGRAMS.items():
            out = folder.resolve() / f"{name}.gif"
            subprocess.run([str(out) if word == "OUT" else word for word in command.split()], cwd=sources, check=True)


def readme():
    """README.md with the table of the recipes in place of its own."""
    text = (HERE / "README.md").read_text(encoding="utf-8").split("| file |")[0]
    rows = ["| file | what it exercises | bytes |", "|---|---|---|"]
    rows += [f"| {name} | {exercises} | {len(content)} |" for name, (exercises, content) in RECIPES.items()]
    rows += [f"| {name} | {exercises} | by `{command}` |" for name, (exercises, command) in PROGRAMS.items()]
    return text + "\n".join(rows) + "\n"


def main(words_given):
    if words_given == ["--table"]:
        (HERE / "README.md").write_text(readme(), encoding="utf-8")
    elif words_given == ["--check"]:
        if readme() != (HERE / "README.md").read_text(encoding="utf-8"):
            sys.exit("tests/data/README.md is out of date; tests/data/recipes.py --table writes its table anew")
    elif len(words_given) == 2 and words_given[0] == "--programs":
        write_by_programs(pathlib.Path(words_given[1]))
    elif len(words_given) == 1 and not words_given[0].startswith("-"):
        write_files(pathlib.Path(words_given[0]))
    else:
        sys.exit(__doc__)


if __name__ == "__main__":
    main(sys.argv[1:])
