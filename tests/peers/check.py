#!/usr/bin/env python3
"""Other programs judge our files: check.py ZEPHYR GIFLIB_FRAMES

ZEPHYR is the command line, GIFLIB_FRAMES the helper built beside it; giftext, gifsicle and ImageMagick's convert must
be installed. Every file of tests/data/corpus goes through this:

  load   our blocks (list --json) and pixels (extract) are those that giflib reads
  saved  the file that we save is read without a word of complaint by giflib, giftext, gifsicle and convert,
         and holds the blocks and pixels that we loaded
  again  saving the saved file gives the same bytes

Each difference is one line of text: what we have, "not" what the judge has. exceptions.json lists, for every file that
has any, exactly these lines, in groups with the reason why they are as they should be; a line too many or too few
fails. Prints what fails and one closing line with the counts.
"""
import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

HERE = os.path.dirname(os.path.abspath(__file__))
CORPUS = os.path.join(HERE, "..", "data", "corpus")
MOST_EXTRACTS = 12  # images of one file that are extracted; all are compared after saving
IDENTITY = b"FILE IDENTITY\r\nCreated or modified by\r\n\r\n".hex()
CONTROL, PLAIN_TEXT, COMMENT, APPLICATION = 0xF9, 0x01, 0xFE, 0xFF
# gifsicle gives its copy one palette for all images if it can; the file that it reads is in order.
ABOUT_ITS_OWN_OUTPUT = r"gifsicle: warning: too many colors, using local colormaps\n( +\(You may want to try .*\)\n)?"
ONE_BIT = [bytes(byte >> 7 - i & 1 for i in range(8)) for byte in range(256)]


def run(*command):
    return subprocess.run(command, capture_output=True, check=False)


class Image:
    """One image. `pixels`: one index a byte, rows from the top, or None if unknown."""

    def __init__(self, fields, palette):
        self.fields = fields  # left, top, width, height, interlaced
        self.palette = palette  # its own one, as hexadecimal digits, or "-"
        self.pixels = None

    def rows(self):
        width = self.fields[2]
        return [self.pixels[i:i + width] for i in range(0, len(self.pixels), width)] if width else []


class View:
    """A GIF file as one program sees it: what stands in it, as comparable texts, and its images."""

    def __init__(self):
        self.blocks, self.images, self.palette, self.end = [], [], "-", ""

    def add_screen(self, width, height, background, palette):
        self.palette = palette
        self.blocks.append(f"screen {width}x{height}, background {background}, palette {palette}")

    def add_image(self, fields, palette):
        self.images.append(Image(fields, palette))
        left, top, width, height, interlaced = fields
        kind = "interlaced image" if interlaced else "image"
        self.blocks.append(f"{kind} {width}x{height} at {left},{top}, palette {palette}")

    def add_extension(self, label, data):
        self.blocks.append(f"extension {label} {data}")


def giflib_view(helper, path, scratch):
    view = View()
    lines = run(helper, path, scratch).stdout.decode().splitlines()
    with open(scratch, "rb") as file:
        indices = file.read()
    for line in lines[:-1]:
        kind, *words = line.split()
        if kind == "screen":
            view.add_screen(*words)
        elif kind == "extension":
            view.add_extension(int(words[0]), words[1].replace("-", "") if words[1:] else "")
        else:
            left, top, width, height, interlaced, rows = map(int, words[:6])
            view.add_image((left, top, width, height, interlaced), words[6])
            size = width * height if rows else 0
            view.images[-1].pixels, indices = indices[:size], indices[size:]
    view.end = lines[-1]
    return view


def table_hex(block, packed):
    digits = 6 << (packed & 7) + 1
    return block.get("palette", "0" * digits)[:digits] if packed & 0x80 else "-"


def zephyr_view(zephyr, path):
    """Our view, without pixels, and the block index of each image."""
    view, indexes = View(), []
    listed = run(zephyr, "list", "--json", path)
    report = json.loads(listed.stdout)
    for block in report["blocks"]:
        bytes_ = bytes.fromhex(block["descriptor"])
        kind, data = block["kindName"].strip(), block.get("data", "")
        if kind == "HEADER":
            view.add_screen(*struct.unpack("<2H", bytes_[6:10]), bytes_[11], table_hex(block, bytes_[10]))
        elif kind == "IMAGE":
            indexes.append(block["position"])
            view.add_image((*struct.unpack("<4H", bytes_[:8]), bytes_[8] >> 6 & 1), table_hex(block, bytes_[8]))
        elif kind == "CONTROL":
            view.add_extension(CONTROL, bytes_[1:5].hex())
        elif kind == "PLAIN TEXT":
            view.add_extension(PLAIN_TEXT, bytes_[1:13].hex() + data)
        elif kind == "COMMENT":
            view.add_extension(COMMENT, data)
        elif kind == "LOOP":
            view.add_extension(APPLICATION, bytes_[1:12].hex() + bytes_[13:16].hex())
        else:
            view.add_extension(APPLICATION, bytes_[1:12].hex() + data)
    note = " before the trailer" if b"note:" in listed.stderr else ""
    view.end = {0: "fails", 1: "ends" + note, 2: "is not a GIF"}[report["result"]]
    if listed.returncode != (report["result"] != 1):
        view.end += f", exit status {listed.returncode}"
    return view, indexes


def bmp_pixels(path):
    """One index a byte, rows from the top; and the colour table as hexadecimal digits."""
    with open(path, "rb") as file:
        bmp = file.read()
    start, = struct.unpack_from("<I", bmp, 10)
    width, height, _, bits = struct.unpack_from("<2i2H", bmp, 18)
    stride = (width * bits + 31) // 32 * 4
    pixels = bmp[start:].ljust(stride * height, b"\0")
    if bits == 1:
        pixels = b"".join(map(ONE_BIT.__getitem__, pixels))
    elif bits == 4:
        pixels = bytes.fromhex("0" + "0".join(pixels.hex())) if pixels else b""
    stride = stride * 8 // bits
    rows = [pixels[y * stride:y * stride + width] for y in reversed(range(height))]
    table = bmp[54:54 + (4 << bits)]
    return b"".join(rows), b"".join(table[i + c:i + c + 1] for i in range(0, len(table), 4) for c in (2, 1, 0)).hex()


def row_differences(ours, theirs):
    """How our rows differ from theirs."""
    if not theirs.pixels:
        return ["is not empty"] if any(ours.pixels) else []
    rows = [y for y, (mine, other) in enumerate(zip(ours.rows(), theirs.rows())) if mine != other]
    return [f"{len(rows)} rows from row {rows[0]} on"] if rows else []


def normalised(block):
    """A comment as we keep it: a line feed behind each carriage return, no other control bytes."""
    if not block.startswith(f"extension {COMMENT} "):
        return block
    text = bytes.fromhex(block.split(" ", 2)[2])
    kept = b"".join(b"\r\n" if b == 13 else bytes([b]) for b in text if b == 13 or b >= 32)
    return f"extension {COMMENT} {kept.hex()}"


def short(block):
    return re.sub(r"([0-9a-f]{60})[0-9a-f]+", r"\1...", block)


def block_differences(ours, theirs):
    found = [f"block {i}: {short(mine)}, not {short(other)}"
             for i, (mine, other) in enumerate(zip(ours.blocks, theirs.blocks)) if mine != other]
    if len(ours.blocks) != len(theirs.blocks):
        found.append(f"{len(ours.blocks)} blocks, not {len(theirs.blocks)}")
    return found


class Case:
    """One file on its way through all judges; `found` collects the differences."""

    def __init__(self, tools, path, folder):
        self.zephyr, self.helper = tools
        self.path, self.name = path, os.path.basename(path)
        self.folder, self.found = folder, []

    def scratch(self, suffix):
        return os.path.join(self.folder, self.name + suffix)

    def note(self, stage, texts):
        self.found += [f"{stage}: {text}" for text in texts]

    def check(self):
        ours, indexes = zephyr_view(self.zephyr, self.path)
        theirs = giflib_view(self.helper, self.path, self.scratch(".idx"))
        theirs.blocks = [normalised(block) for block in theirs.blocks]
        self.note("load", block_differences(ours, theirs))
        if (ours.end, theirs.end) != ("ends", "end"):
            self.note("load", [f"{ours.end}; giflib: {theirs.end}"])
        if ours.end.startswith("ends"):
            self.extract(ours, indexes)
            self.compare_images("load", ours, theirs)
            self.check_saved(ours)
        return self.found

    def extract(self, ours, indexes):
        """Fills the pixels of some of our images, the first and the last among them."""
        count = len(indexes)
        steps = min(count, MOST_EXTRACTS)
        picked = sorted({i * (count - 1) // max(1, steps - 1) for i in range(steps)})
        for number in picked:
            image, bmp = ours.images[number], self.scratch(".bmp")
            done = run(self.zephyr, "extract", self.path, str(indexes[number]), bmp)
            if done.returncode:
                self.note("load", [f"image {number}: can't be extracted"])
                continue
            image.pixels, colours = bmp_pixels(bmp)
            table = image.palette if image.palette != "-" else ours.palette
            if not colours.startswith(table):
                self.note("load", [f"image {number}: colours of the BMP file"])

    def compare_images(self, stage, ours, theirs):
        for number, (mine, other) in enumerate(zip(ours.images, theirs.images)):
            if mine.pixels is None:
                mine.pixels = other.pixels
            elif mine.fields == other.fields:
                self.note(stage, [f"image {number}: {text}" for text in row_differences(mine, other)])

    def check_saved(self, ours):
        saved, again = self.scratch(".saved.gif"), self.scratch(".again.gif")
        if run(self.zephyr, "save", self.path, saved).returncode:
            return self.note("saved", ["fails"])
        judged = giflib_view(self.helper, saved, self.scratch(".idx"))
        self.check_saved_blocks(ours, judged)
        self.compare_images("saved", ours, judged)
        self.check_complaints(saved, bool(ours.images))
        run(self.zephyr, "save", saved, again)
        with open(saved, "rb") as first, open(again, "rb") as second:
            if first.read() != second.read():
                self.note("again", ["other bytes"])

    def check_saved_blocks(self, ours, judged):
        identity = f"extension {COMMENT} {IDENTITY}"
        right = max([i.fields[0] + i.fields[2] for i in ours.images], default=0)
        bottom = max([i.fields[1] + i.fields[3] for i in ours.images], default=0)
        expected = View()
        expected.blocks = ours.blocks + [identity] * (identity not in ours.blocks)
        width, height = re.match(r"screen (\d+)x(\d+)", expected.blocks[0]).groups()
        screen = f"screen {min(right, 65535) or width}x{min(bottom, 65535) or height}"
        expected.blocks[0] = expected.blocks[0].replace(f"screen {width}x{height}", screen)
        self.note("saved", block_differences(expected, judged))
        self.note("saved", [f"giflib: {judged.end}"] if judged.end != "end" else [])

    def check_complaints(self, saved, has_images):
        commands = [["giftext", saved], ["gifsicle", "-O0", "--careful", saved, "-o", self.scratch(".copy.gif")],
                    ["convert", saved, "null:"]]
        for command in commands if has_images else commands[:-1]:
            done = run(*command)
            lines = re.sub(ABOUT_ITS_OWN_OUTPUT, "", done.stderr.decode(errors="replace")).splitlines()
            if done.returncode and not lines:
                lines = ["fails"]
            lines = [re.sub(".*convert: |`.*' ", "", line) for line in lines]
            self.note("saved", [f"{command[0]}: {line.replace(saved, 'FILE')}" for line in lines[:1]])


def read_exceptions():
    """The expected differences of each file: the lists of all groups that name it, joined."""
    exceptions = {}
    with open(os.path.join(HERE, "exceptions.json"), encoding="utf-8") as file:
        for group in json.load(file):
            for name, lines in group["files"].items():
                exceptions.setdefault(name, []).extend(lines)
    return exceptions


def check_file(tools, path, exceptions):
    """The lines by which the file's differences are not the expected ones."""
    with tempfile.TemporaryDirectory() as folder:
        found = Case(tools, path, folder).check()
    expected = exceptions.get(os.path.basename(path), [])
    unexpected = [f"unexpected: {line}" for line in found if line not in expected]
    return unexpected + [f"no longer so: {line}" for line in expected if line not in found]


def main():
    missing = [tool for tool in ("giftext", "gifsicle", "convert") if not shutil.which(tool)]
    if len(sys.argv) != 3 or missing:
        sys.exit(__doc__.splitlines()[0] + (f"; not installed: {' '.join(missing)}" if missing else ""))
    tools = [os.path.abspath(path) for path in sys.argv[1:]]
    exceptions = read_exceptions()
    with ThreadPoolExecutor(os.cpu_count() or 2) as pool:
        corpus = [os.path.join(CORPUS, name) for name in sorted(os.listdir(CORPUS)) if name.endswith(".gif")]
        paths = sorted(corpus, key=os.path.getsize, reverse=True)  # the longest work first
        results = list(pool.map(lambda path: check_file(tools, path, exceptions), paths))
    failures = {os.path.basename(path): lines for path, lines in zip(paths, results) if lines}
    for name in exceptions.keys() - {os.path.basename(path) for path in paths}:
        failures[name] = ["an exception for a file that is not there"]
    for name, lines in sorted(failures.items()):
        print(name, *lines, sep="\n  ")
    print(f"peers: {len(paths) - len(failures)} passed, {len(failures)} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
