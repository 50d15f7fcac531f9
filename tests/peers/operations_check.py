#!/usr/bin/env python3
"""ImageMagick judges operations on frames: operations_check.py ZEPHYR FOLDER...

Of every GIF file of the folders, and of those that the environment variable ZEPHYR_CORPUS names with colons between them,
the frames are reversed, thinned, cut, moved and copied. What "convert -coalesce" makes of the result must be what it
makes of the file, in the new order, and the delays must be those. Files that it composes otherwise than "zephyr frames"
does are no matter here: frames_check.py has them. Where "zephyr" says that frames lost colours these may differ a little
from what they were. Prints what fails and one closing line with the counts.
"""
import os
import re
import struct
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from PIL import Image, ImageChops, ImageStat

from frames_check import gif_files, our_frames, run, visible

MOST_PIXELS = 25_000_000  # of all frames together: the judge holds them in memory
LOST = "the nearest of them are taken"
# By file, what ImageMagick has otherwise. "zephyr frames" shows each of these frames as it was.
EXPECTED = {
    # The images behind a block of its own get the gamma that this tells. It stays; a frame goes past it.
    "application-gamma.gif": ["move: other pixels in [0, 1]"],
    # The first image now covers a part of the screen alone, and has no transparent colour: the canvas is not clear then.
    "background-colour.gif": ["reverse: other pixels in [1, 2]", "copy: other pixels in [1]"],
    "frames-259-local-palettes.gif": ["thin: other pixels in [1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11]"],
    # The same; and it takes an image without a control for one with the delay of the last control.
    "frames-of-several-images.gif": ["reverse: other delays", "thin: other pixels in [2, 3, 4, 5]", "thin: other delays",
                                     "cut: other delays", "move: other delays"],
    # The delays alone, for the same reason.
    "animation-multi-image.gif": ["thin: other delays", "move: other delays"],
    "gif87a-animation.gif": ["thin: other delays"],
    "wuffs-frame-out-of-bounds.gif": ["thin: other delays"],
    "wuffs-multiple-loop-counts.gif": ["thin: other delays"],
}
FARTHEST = 4  # root of the mean square in a channel, of 255, where colours are lost


def judged(path, folder):
    """The frames as ImageMagick composes them, and their delays."""
    if run("convert", "-quiet", path, "+profile", "*", "-coalesce", f"PNG32:{folder}/%06d.png").returncode:
        return None
    delays = run("identify", "-quiet", "-format", "%T\n", path).stdout.split()
    return sorted(Path(folder).glob("*.png")), list(map(int, delays))


def is_near(mine, other):
    """Whether both have the same transparent pixels and nearly the same colours."""
    mine, other = Image.open(mine).convert("RGBA"), Image.open(other).convert("RGBA")
    if mine.size != other.size or ImageChops.difference(mine.getchannel("A"), other.getchannel("A")).getbbox():
        return False
    shown = mine.getchannel("A").point(lambda opacity: 255 * (opacity > 0))
    difference = ImageChops.difference(mine.convert("RGB"), other.convert("RGB"))
    return not shown.getbbox() or max(ImageStat.Stat(difference, shown).rms) <= FARTHEST


def operations(count):
    """Words of the command line, and the frames that come out."""
    frames = list(range(count))
    first, last = count // 3, count - 1
    return [
        (["reverse"], frames[::-1]),
        (["thin", "--every", "3"], frames[::3]),
        (["cut", f"{first}-{last}"], frames[first:]),
        (["move", "frame:0", "--at", "image:last", "--keep-looks"], frames[1:] + frames[:1]),
        (["copy", f"frame:{last}", "--at", "0", "--keep-looks"], frames[last:] + frames),
    ]


def thinned(delays, every):
    played = [10 if delay < 2 else delay for delay in delays]
    groups = range(0, len(delays), every)
    return [sum(played[i:i + every]) if len(played[i:i + every]) > 1 else delays[i] for i in groups]


def check_operation(zephyr, path, words, order, frames, delays, folder):
    out = f"{folder}/out.gif"
    done = run(zephyr, words[0], path, out, *words[1:])
    if done.returncode:
        return [f"{words[0]}: {done.stderr.decode(errors='replace').strip()}"]
    with tempfile.TemporaryDirectory() as composed:
        result = judged(out, composed)
        if not result or len(result[0]) != len(order):
            return [f"{words[0]}: {len(result[0]) if result else 'no'} frames, not {len(order)}"]
        is_same = is_near if LOST in done.stderr.decode(errors="replace") else \
            lambda mine, other: visible(Image.open(mine)) == visible(Image.open(other))
        wrong = [i for i, frame in enumerate(order) if not is_same(result[0][i], frames[frame])]
        wanted = thinned(delays, 3) if words[0] == "thin" else [delays[frame] for frame in order]
        return [f"{words[0]}: other pixels in {wrong}"] * bool(wrong) + \
            [f"{words[0]}: other delays"] * (result[1] != wanted)


def check_file(zephyr, path):
    """What is wrong, or None for a file that can't be judged."""
    screen = struct.unpack("<6x2H", Path(path).read_bytes()[:10].ljust(10, b"\0"))
    count = len(re.findall(rb"^IMAGE", run(zephyr, "list", path).stdout, re.M))
    if count < 2 or screen[0] * screen[1] * count > MOST_PIXELS:
        return None
    with tempfile.TemporaryDirectory() as folder, tempfile.TemporaryDirectory() as ours:
        judge = judged(path, folder)
        mine = our_frames(zephyr, path, ours)
        if not judge or isinstance(mine, str) or mine != [visible(Image.open(file)) for file in judge[0]]:
            return None
        return [line for words, order in operations(count)
                for line in check_operation(zephyr, path, words, order, *judge, folder)]


def main():
    zephyr = os.path.abspath(sys.argv[1])
    paths = gif_files(sys.argv[2:]) + gif_files(filter(None, os.environ.get("ZEPHYR_CORPUS", "").split(":")))
    passed = failed = 0
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        for path, found in zip(paths, pool.map(lambda path: check_file(zephyr, path), paths)):
            is_well = found == EXPECTED.get(os.path.basename(path), [])
            passed += is_well
            failed += found is not None and not is_well
            if found is not None and not is_well:
                print(path, *found, sep="\n  ")
    if passed == 0:
        sys.exit("operations: no file that could be judged")
    print(f"operations: {passed} passed, {failed} failed, {len(paths) - passed - failed} not judged")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
