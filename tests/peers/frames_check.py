#!/usr/bin/env python3
"""ImageMagick judges our frames: frames_check.py ZEPHYR FOLDER...

Of every GIF file of the folders, and of those that the environment variable ZEPHYR_CORPUS names with colons between them,
"zephyr frames --no-text" and "convert -coalesce" compose all frames; Pillow reads both. The pixels must be equal, where
transparent ones count as equal whatever colour they hide. Where they are not, Pillow composes too, and the line tells
when it agrees with us. (It is no judge of all files: it paints the canvas with the background colour.)

Each difference is one line of text. frame_exceptions.json lists, for every file that has any, exactly these lines, in
groups with the reason; a line too many or too few fails. Its "files" are those of the recipes, "elsewhere" are real ones,
which need not be there.
"""
import hashlib
import os
import re
import resource
import struct
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from PIL import Image

from judged_files import gif_files, read_exceptions

MOST_PIXELS = 4_000_000  # of the screen; damaged files claim more, and the judges take too long over them
MOST_MEMORY = 8 << 30
Image.MAX_IMAGE_PIXELS = None


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))


def run(*command):
    return subprocess.run(command, capture_output=True, check=False, preexec_fn=limit_memory)


def visible(image):
    """The pixels that can be told apart, as bytes: whatever is transparent is black."""
    image = image.convert("RGBA")
    clean = Image.new("RGBA", image.size)
    clean.paste(image, mask=image.getchannel("A").point(lambda opacity: 255 * (opacity > 0)))
    return image.size, hashlib.sha256(clean.tobytes()).digest()


def our_frames(zephyr, path, folder):
    done = run(zephyr, "frames", "--no-text", "--level", "1", path, f"{folder}/%06d.png")
    if done.returncode:
        return done.stderr.decode(errors="replace").strip().rpartition(": ")[2]
    return [visible(Image.open(file)) for file in sorted(Path(folder).glob("*.png"))]


def magick_frames(path, folder):
    done = run("convert", "-quiet", path, "+profile", "*", "-coalesce", f"PNG32:{folder}/%06d.png")
    files = sorted(Path(folder).glob("*.png"))
    return [visible(Image.open(file)) for file in files] or done.stderr.decode(errors="replace").strip() or "nothing"


def pillow_frames(path):
    frames = []
    try:
        with Image.open(path) as image:
            while True:
                image.seek(len(frames))
                frames.append(visible(image))
    except Exception:  # the end, or whatever a damaged file makes of it
        return frames


def ranges(numbers):
    """Sorted numbers as "0-3, 7"."""
    text, numbers = [], list(numbers)
    while numbers:
        count = next((i for i, number in enumerate(numbers) if number != numbers[0] + i), len(numbers))
        text.append(str(numbers[0]) if count == 1 else f"{numbers[0]}-{numbers[count - 1]}")
        numbers = numbers[count:]
    return ", ".join(text)


def shown(frames):
    """How many frames there are, or the complaint instead, without the names in it."""
    return f"{len(frames)} frames" if isinstance(frames, list) else re.sub("^convert: | [`@].*", "", frames.splitlines()[0])


def differences(path, ours, theirs):
    if isinstance(ours, str) or isinstance(theirs, str):
        both_fail = isinstance(ours, str) and isinstance(theirs, str)
        return [] if both_fail else [f"{shown(ours)}, not {shown(theirs)}"]
    found = [f"{len(ours)} frames, not {len(theirs)}"] if len(ours) != len(theirs) else []
    sizes = {(mine[0], other[0]) for mine, other in zip(ours, theirs) if mine[0] != other[0]}
    found += ["%d x %d, not %d x %d" % (*mine, *other) for mine, other in sorted(sizes)]
    differ = [i for i, (mine, other) in enumerate(zip(ours, theirs)) if mine[0] == other[0] and mine[1] != other[1]]
    pillow = pillow_frames(path) if differ else []
    agrees = len(pillow) == len(ours) and all(ours[i] == pillow[i] for i in differ)
    return found + ([f"other pixels in {ranges(differ)}" + agrees * ", as Pillow has them"] if differ else [])


def check_file(zephyr, path):
    screen = struct.unpack("<6x2H", Path(path).read_bytes()[:10].ljust(10, b"\0"))
    if screen[0] * screen[1] > MOST_PIXELS:
        return ["too large to be judged"]
    with tempfile.TemporaryDirectory() as mine, tempfile.TemporaryDirectory() as theirs:
        ours = our_frames(zephyr, path, mine)
        return differences(path, ours, magick_frames(path, theirs))


def main():
    zephyr = os.path.abspath(sys.argv[1])
    made = gif_files(sys.argv[2:])
    real = gif_files(filter(None, os.environ.get("ZEPHYR_CORPUS", "").split(":")))
    exceptions, elsewhere = (read_exceptions("frame_exceptions.json", place) for place in ("files", "elsewhere"))
    failures = 0
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        paths = made + real
        for path, found in zip(paths, pool.map(lambda path: check_file(zephyr, path), paths)):
            name = os.path.basename(path)
            expected = (exceptions.pop(name, []) if path in made else elsewhere.get(name, []))
            lines = [f"unexpected: {line}" for line in found if line not in expected]
            lines += [f"no longer so: {line}" for line in expected if line not in found]
            if lines:
                failures += 1
                print(path, *lines, sep="\n  ")
    for name in exceptions:
        failures += 1
        print(f"{name}\n  an exception for a file that is not there")
    print(f"frames: {len(paths) - failures} passed, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
