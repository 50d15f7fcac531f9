#!/usr/bin/env python3
"""Other programs judge our files: check.py ZEPHYR GIFLIB_FRAMES FOLDER...

ZEPHYR is the command line, GIFLIB_FRAMES the helper built beside it; giftext, gifsicle and ImageMagick's convert must
be installed. Every GIF file of the folders, which hold what tests/data/recipes.py makes, goes through this, and every
one of the folders of real files that the environment variable ZEPHYR_CORPUS names, with colons between them:

  load   our blocks (list --json) are those that giflib reads
  saved  the file that we save is read without a word of complaint by giflib, giftext, gifsicle and convert, and holds
         the blocks that we loaded and the pixels that giflib, and convert in colours, read in the original
  again  saving the saved file gives the same bytes

So far all is in the classic manner. In the whole one:

  whole     a file with a header is saved as it was, byte for byte
  repaired  a file that "zephyr repair" has mended is read by the same judges without complaint, and has for us
            the pictures of the file it was, for giflib, convert and Pillow those that are not told to be damaged

Each difference is one line of text: what we have, "not" what the judge has. exceptions.json lists, for every file that
has any, exactly these lines, in groups with the reason why they are as they should be; a line too many or too few
fails. Its "files" are those of the recipes, "elsewhere" are real ones, which need not be there. Prints what fails and
one closing line with the counts.
"""
import filecmp
import hashlib
import json
import os
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib
from concurrent.futures import ThreadPoolExecutor

from PIL import Image

from judged_files import gif_files, read_exceptions

IDENTITY = b"FILE IDENTITY\r\nCreated or modified by\r\n\r\n".hex()
CONTROL, PLAIN_TEXT, COMMENT, APPLICATION = 0xF9, 0x01, 0xFE, 0xFF
# gifsicle gives its copy one palette for all images if it can; the file that it reads is in order.
ABOUT_ITS_OWN_OUTPUT = r"gifsicle: warning: too many colors, using local colormaps\n( +\(You may want to try .*\)\n)?"


def run(*command):
    return subprocess.run(command, capture_output=True, check=False)


class View:
    """A GIF file as one program sees it: a line of text for each block, as giflib_frames prints them, and the images'
    rows of indices, none where they are not known."""

    def __init__(self):
        self.blocks, self.images, self.end = [], [], ""


def giflib_view(helper, path, scratch):
    view = View()
    lines = run(helper, path, scratch).stdout.decode().splitlines()
    with open(scratch, "rb") as file:
        indices = file.read()
    for kind, *words in map(str.split, lines[:-1]):
        if kind == "image":
            width, height, rows = map(int, (words[2], words[3], words.pop(5)))
            size = width * height if rows else 0
            view.images.append([indices[i:i + width] for i in range(0, size, width)] if size else [])
            indices = indices[size:]
        view.blocks.append(" ".join([kind, *words]))
    view.end = lines[-1]
    return view


def table_hex(block, packed):
    digits = 6 << (packed & 7) + 1
    return block.get("palette", "0" * digits)[:digits] if packed & 0x80 else "-"


def zephyr_view(zephyr, path):
    """Our view, without pixels."""
    view = View()
    listed = run(zephyr, "list", "--classic", "--json", path)
    report = json.loads(listed.stdout)
    for block in report["blocks"]:
        bytes_ = bytes.fromhex(block["descriptor"])
        kind, data = block["kindName"].strip(), block.get("data", "")
        if kind == "HEADER":
            line = "screen %d %d %d " % struct.unpack("<2HxB", bytes_[6:12]) + table_hex(block, bytes_[10])
        elif kind == "IMAGE":
            numbers = (*struct.unpack("<4H", bytes_[:8]), bytes_[8] >> 6 & 1)
            line = "image %d %d %d %d %d " % numbers + table_hex(block, bytes_[8])
        elif kind == "CONTROL":
            line = f"extension {CONTROL} {bytes_[1:5].hex()}"
        elif kind == "PLAIN TEXT":
            line = f"extension {PLAIN_TEXT} {bytes_[1:13].hex()}{data}"
        elif kind == "COMMENT":
            line = f"extension {COMMENT} {data or '-'}"
        else:
            line = f"extension {APPLICATION} {bytes_[1:12].hex()}{bytes_[13:16].hex() if kind == 'LOOP' else data}"
        view.blocks.append(line)
    note = " before the trailer" if b"note:" in listed.stderr else ""
    view.end = {0: "fails", 1: "ends" + note, 2: "is not a GIF"}[report["result"]]
    if listed.returncode != (report["result"] != 1):
        view.end += f", exit status {listed.returncode}"
    return view


def row_differences(ours, theirs):
    """How our rows differ from theirs."""
    if not theirs:
        return ["is not empty"] if any(map(any, ours)) else []
    rows = [y for y, pair in enumerate(zip(ours, theirs)) if pair[0] != pair[1]]
    return [f"{len(rows)} rows from row {rows[0]} on"] if rows else []


def normalised(block):
    """A comment as we keep it: a line feed behind each carriage return, no other control bytes."""
    kind, _, text = block.rpartition(" ")
    if kind != f"extension {COMMENT}" or text == "-":
        return block
    kept = bytes(b for b in bytes.fromhex(text) if b == 13 or b >= 32).replace(b"\r", b"\r\n")
    return f"{kind} {kept.hex() or '-'}"


def short(block):
    return re.sub(r"([0-9a-f]{60})[0-9a-f]+", r"\1...", block)


def block_differences(ours, theirs):
    found = [f"block {i}: {short(mine)}, not {short(other)}"
             for i, (mine, other) in enumerate(zip(ours.blocks, theirs.blocks)) if mine != other]
    if len(ours.blocks) != len(theirs.blocks):
        found.append(f"{len(ours.blocks)} blocks, not {len(theirs.blocks)}")
    return found


def colour_sums(path):
    """For each image a sum of its pixels' colours as ImageMagick reads them, as far as it can."""
    return run("identify", "-quiet", "-format", "%#\n", path).stdout.split()


def pillow_frames(path, most):
    """The first frames as Pillow composes them, until it gives up."""
    frames = []
    try:
        with Image.open(path) as image:
            for number in range(most):
                image.seek(number)
                frames.append(zlib.crc32(image.convert("RGBA").tobytes()))
    except Exception:  # of many kinds, for what is damaged  # pylint: disable=broad-except
        pass
    return frames


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
        ours = zephyr_view(self.zephyr, self.path)
        theirs = giflib_view(self.helper, self.path, self.scratch(".idx"))
        theirs.blocks = [normalised(block) for block in theirs.blocks]
        self.note("load", block_differences(ours, theirs))
        if (ours.end, theirs.end) != ("ends", "end"):
            self.note("load", [f"{ours.end}; giflib: {theirs.end}"])
        if ours.end.startswith("ends"):
            self.check_saved(ours, theirs)
        self.check_whole()
        return self.found

    def check_saved(self, ours, theirs):
        saved, again = self.scratch(".saved.gif"), self.scratch(".again.gif")
        if run(self.zephyr, "save", "--classic", self.path, saved).returncode:
            return self.note("saved", ["fails"])
        judged = giflib_view(self.helper, saved, self.scratch(".idx"))
        self.check_saved_blocks(ours, judged)
        for number, (mine, other) in enumerate(zip(judged.images, theirs.images)):
            self.note("saved", [f"image {number}: {text}" for text in row_differences(mine, other)])
        for number, (mine, other) in enumerate(zip(colour_sums(saved), colour_sums(self.path))):
            self.note("saved", [f"image {number}: other colours for ImageMagick"] if mine != other else [])
        self.check_complaints("saved", saved, bool(judged.images))
        run(self.zephyr, "save", "--classic", saved, again)
        with open(saved, "rb") as first, open(again, "rb") as second:
            if first.read() != second.read():
                self.note("again", ["other bytes"])

    def check_saved_blocks(self, ours, judged):
        identity = f"extension {COMMENT} {IDENTITY}"
        images = [[int(word) for word in block.split()[1:5]] for block in ours.blocks if block.startswith("image")]
        right = max([left + width for left, _, width, _ in images], default=0)
        bottom = max([top + height for _, top, _, height in images], default=0)
        expected = View()
        expected.blocks = ours.blocks + [identity] * (identity not in ours.blocks)
        _, width, height, rest = expected.blocks[0].split(" ", 3)
        expected.blocks[0] = f"screen {min(right, 65535) or width} {min(bottom, 65535) or height} {rest}"
        self.note("saved", block_differences(expected, judged))
        self.note("saved", [f"giflib: {judged.end}"] if judged.end != "end" else [])

    def check_whole(self):
        saved = self.scratch(".whole.gif")
        done = run(self.zephyr, "save", self.path, saved)
        if done.returncode:
            return self.note("whole", [] if b"not a GIF file" in done.stderr else ["fails"])
        self.note("whole", [] if filecmp.cmp(self.path, saved, shallow=False) else ["other bytes"])
        done = run(self.zephyr, "repair", self.path, saved)
        told = done.stdout.decode()
        if done.returncode:
            return self.note("repaired", ["fails"])
        if told == "nothing to repair\n":
            return self.note("repaired", [] if filecmp.cmp(self.path, saved, shallow=False) else ["other bytes"])
        self.check_repaired(saved, told)

    def check_repaired(self, saved, told):
        """`told` is what the repair printed."""
        blocks = json.loads(run(self.zephyr, "list", "--json", self.path).stdout)["blocks"]
        images = [block["position"] for block in blocks if block["kindName"].strip() == "IMAGE"]
        gone = {int(block) for block in re.findall(r"^block (\d+) \(IMAGE\): it (?:is|and its .* are) left out", told, re.M)}
        damaged = {int(block) for block in re.findall(r"^block (\d+) \(IMAGE\): (?!\d+ bytes? before)", told, re.M)}
        kept = [image not in damaged for image in images if image not in gone]
        mended = json.loads(run(self.zephyr, "list", "--json", saved).stdout)["blocks"]
        mended = [block["position"] for block in mended if block["kindName"].strip() == "IMAGE"]
        for old, new in zip([image for image in images if image not in gone], mended):
            same = self.picture(self.path, old) == self.picture(saved, new)
            self.note("repaired", [] if same else [f"image {old}: not as it was shown"])
        self.note("repaired", [] if len(mended) == len(kept) else ["images are missing"])
        intact = kept.index(False) if False in kept else len(kept)
        before, after = (giflib_view(self.helper, path, self.scratch(".idx")) for path in (self.path, saved))
        self.note("repaired", [f"giflib: {after.end}"] if after.end != "end" else [])
        self.check_complaints("repaired", saved, bool(after.images))
        self.check_pictures("giflib", before.images, after.images, images, gone, kept)
        self.check_pictures("ImageMagick", colour_sums(self.path), colour_sums(saved), images, gone, kept)
        before, after = pillow_frames(self.path, intact), pillow_frames(saved, intact)
        if not gone & set(images[:intact + 1]) and before != after[:len(before)]:
            self.note("repaired", ["other frames for Pillow"])

    def picture(self, path, image):
        """The picture of an image block as we show it, a BMP file; none when it can't be decoded."""
        bmp = self.scratch(".bmp")
        if run(self.zephyr, "extract", path, str(image), bmp).returncode:
            return None
        with open(bmp, "rb") as file:
            return hashlib.sha256(file.read()).digest()

    def check_pictures(self, judge, before, after, images, gone, kept):
        """A judge that gives up in the damaged file has only seen the pictures up to there."""
        before = [picture for image, picture in zip(images, before) if image not in gone]
        for number, (old, new, same) in enumerate(zip(before, after, kept)):
            if same and old and old != new:
                self.note("repaired", [f"image {number}: other pixels for {judge}"])
        if len(after) < len(before):
            self.note("repaired", [f"{len(after)} images for {judge}, not {len(before)}"])

    def check_complaints(self, stage, saved, has_images):
        commands = [["giftext", saved], ["gifsicle", "-O0", "--careful", saved, "-o", self.scratch(".copy.gif")],
                    ["convert", saved, "null:"]]
        for command in commands if has_images else commands[:-1]:
            done = run(*command)
            lines = re.sub(ABOUT_ITS_OWN_OUTPUT, "", done.stderr.decode(errors="replace")).splitlines()
            if done.returncode and not lines:
                lines = ["fails"]
            lines = [re.sub(".*convert: |`.*' ", "", line) for line in lines]
            self.note(stage, [f"{command[0]}: {line.replace(saved, 'FILE')}" for line in lines[:1]])


def check_file(tools, path, expected):
    """The lines by which the file's differences are not the expected ones."""
    with tempfile.TemporaryDirectory() as folder:
        found = Case(tools, path, folder).check()
    unexpected = [f"unexpected: {line}" for line in found if line not in expected]
    return unexpected + [f"no longer so: {line}" for line in expected if line not in found]


def main():
    missing = [tool for tool in ("giftext", "gifsicle", "convert") if not shutil.which(tool)]
    if len(sys.argv) < 4 or missing:
        sys.exit(__doc__.splitlines()[0] + (f"; not installed: {' '.join(missing)}" if missing else ""))
    tools = [os.path.abspath(path) for path in sys.argv[1:3]]
    made = gif_files(sys.argv[3:])
    real = gif_files(filter(None, os.environ.get("ZEPHYR_CORPUS", "").split(":")))
    exceptions, elsewhere = (read_exceptions("exceptions.json", place) for place in ("files", "elsewhere"))
    expected = {path: elsewhere.get(os.path.basename(path), []) for path in real}
    expected |= {path: exceptions.pop(os.path.basename(path), []) for path in made}
    paths = sorted(expected, key=os.path.getsize, reverse=True)  # the longest work first
    with ThreadPoolExecutor(os.cpu_count() or 2) as pool:
        results = list(pool.map(lambda path: check_file(tools, path, expected[path]), paths))
    failures = [(path, lines) for path, lines in zip(paths, results) if lines]
    failures += [(name, ["an exception for a file that is not there"]) for name in exceptions]
    for path, lines in sorted(failures):
        print(path, *lines, sep="\n  ")
    print(f"peers: {results.count([])} passed, {len(failures)} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
