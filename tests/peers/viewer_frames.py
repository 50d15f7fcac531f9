#!/usr/bin/env python3
"""Compares the viewer's frames with ImageMagick's: viewer_frames.py BUILD_FOLDER [FILE.gif...]

BUILD_FOLDER is that of the 64-bit Windows programs. Without files, those of tests/data/recipes.py that are named below
are compared.

ImageMagick composes over nothing, the viewer over the header's background colour (black without a global palette), so
its frames are laid over that colour first. The other differences, which files for this comparison must avoid:
plain text, which only the viewer draws; images without a control block of their own, to which the viewer applies the
last one before; images without any palette; foreign application blocks, which end the viewer's document.
"""
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
FILES = ("disposal-0", "disposal-2", "disposal-3", "disposal-mixed", "palette-mixed", "interlaced-many", "comment-four",
         "background-colour", "screen-larger-than-frames", "screen-partly-left", "control-delays")


def background(gif):
    packed, index = gif[10], gif[11]
    at = 13 + 3 * index
    if not packed & 0x80 or index >= 2 << (packed & 7):
        return "rgb(0,0,0)"
    return "rgb(%d,%d,%d)" % tuple(gif[at:at + 3])


def images(folder):
    return [path.read_bytes() for path in sorted(folder.glob("*.ppm"))]


def viewer_frames(build, path, folder):
    folder.mkdir()
    program = str(pathlib.Path(build) / "tests" / "viewer_frames.exe")
    windows_folder = "Z:" + str(folder).replace("/", "\\")
    subprocess.run([str(ROOT / "tools" / "under_wine"), program, "Z:" + str(path).replace("/", "\\"), windows_folder],
                   check=True)
    return images(folder)


def coalesced_frames(path, folder):
    folder.mkdir()
    colour = background(path.read_bytes())
    subprocess.run(["convert", str(path), "-coalesce", "-background", colour, "-alpha", "background", "-alpha", "remove",
                    "-depth", "8", "+repage", "+set", "comment", str(folder / "%03d.ppm")], check=True)
    return images(folder)


def compare(build, path):
    """The complaints about one file."""
    with tempfile.TemporaryDirectory() as temporary:
        ours = viewer_frames(build, path, pathlib.Path(temporary) / "ours")
        theirs = coalesced_frames(path, pathlib.Path(temporary) / "theirs")
    if not ours or len(ours) != len(theirs):
        return [f"{path.name}: {len(ours)} frames, ImageMagick has {len(theirs)}"]
    return [f"{path.name}: frame {i} differs" for i, pair in enumerate(zip(ours, theirs)) if pair[0] != pair[1]]


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    names = sys.argv[2:] or [pathlib.Path(sys.argv[1]) / "test-data" / f"{name}.gif" for name in FILES]
    complaints = []
    for path in (pathlib.Path(name).resolve() for name in names):
        try:
            found = compare(sys.argv[1], path)
        except subprocess.CalledProcessError as failure:
            found = [f"{path.name}: {failure.cmd[0]} failed"]
        print(f"{'FAIL' if found else 'ok  '} {path.name}", flush=True)
        complaints += found
    if complaints:
        sys.exit("\n".join(complaints))


if __name__ == "__main__":
    main()
