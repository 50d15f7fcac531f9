#!/usr/bin/env python3
"""Pillow judges what `zephyr build` reads: tests/peers/pictures_check.py ZEPHYR   (the system's Python)

Pillow writes a picture in each kind that it knows, zephyr makes an animation of it twice, and the first frame must show
what Pillow reads from the same file. Pictures have fewer than 256 pixels, so that no colour has to give way. Prints what
differs and fails then.
"""
import pathlib
import subprocess
import sys
import tempfile

from PIL import Image, ImageCms, ImageOps

SIDE = 15
FEWEST = 30


def source():
    """Colours of all kinds, with opacity of 0 to 255."""
    pixels = bytes(part for y in range(SIDE) for x in range(SIDE)
                   for part in (x * 17, y * 17, (x * y * 7) % 256, min(255, (x + y) * 10)))
    return Image.frombytes("RGBA", (SIDE, SIDE), pixels)


def files(folder):
    """Writes the pictures and yields their paths."""
    whole = source()
    opaque = whole.convert("RGB")
    few = opaque.quantize(9)
    clear = few.copy()
    clear.info["transparency"] = bytes([0, 127, 128, 255])
    deep = Image.new("I;16", (SIDE, SIDE))
    for y in range(SIDE):
        for x in range(SIDE):
            deep.putpixel((x, y), (x * SIDE + y) * 257)
    pictures = {"one-bit": opaque.convert("1"), "grey": opaque.convert("L"), "grey-opacity": whole.convert("LA"),
                "few": few, "many": opaque.quantize(200), "colours": opaque, "opacity": whole}
    for name, picture in {**pictures, "deep": deep, "clear": clear}.items():
        picture.save(folder / f"{name}.png")
    # Pillow, Windows and the browsers take no opacity from the fourth byte of a plain BMP file.
    for name in ("one-bit", "grey", "few", "many", "colours", "opacity"):
        pictures[name].save(folder / f"{name}.bmp")
    inks = opaque.convert("CMYK")
    for name, picture, settings in (
            ("grey", opaque.convert("L"), {}), ("plain", opaque, {"subsampling": 0, "quality": 95}),
            ("subsampled", opaque, {"subsampling": 2, "quality": 60}), ("wide", opaque, {"subsampling": 1}),
            ("progressive", opaque, {"progressive": True}), ("optimized", opaque, {"optimize": True}),
            ("inks", inks, {"quality": 95}), ("profile", opaque, {
                "icc_profile": ImageCms.ImageCmsProfile(ImageCms.createProfile("sRGB")).tobytes()})):
        picture.save(folder / f"{name}.jpg", **settings)
    for orientation in range(1, 9):
        exif = Image.Exif()
        exif[0x112] = orientation
        opaque.resize((SIDE, SIDE - 4)).save(folder / f"orientation-{orientation}.jpg", exif=exif)
    for command in ("-interlace PNG interlaced.png", "-type Palette -colors 4 four.png", "-compress RLE -type Palette runs.bmp",
                    "-sampling-factor 4:1:1 -interlace JPEG magick.jpg"):
        words = command.split()
        subprocess.run(["convert", folder / "colours.png", *words[:-1], folder / words[-1]], check=True)
    return sorted(path for path in folder.iterdir() if path.suffix in (".png", ".bmp", ".jpg"))


def expected(path):
    picture = Image.open(path)
    if picture.mode.startswith("I"):
        picture = picture.point(lambda sample: sample / 257).convert("L")
    return ImageOps.exif_transpose(picture).convert("RGBA")


def shown(zephyr, path, folder):
    out, frame = folder / "out.gif", folder / "frame.png"
    subprocess.run([zephyr, "build", "-o", out, path, path], check=True)
    subprocess.run([zephyr, "frames", out, frame, "0"], check=True)
    return Image.open(frame).convert("RGBA")


def furthest(wanted, found):
    """By how much a sample is off at most; transparent pixels have no colour."""
    if wanted.size != found.size:
        return 256
    return max(abs(a - b) if wanted_pixel[3] >= 128 else found_pixel[3]
               for wanted_pixel, found_pixel in zip(wanted.getdata(), found.getdata())
               for a, b in zip((*wanted_pixel[:3], 255), found_pixel))


def main():
    zephyr = pathlib.Path(sys.argv[1]).resolve()
    faults = 0
    with tempfile.TemporaryDirectory() as name:
        folder, work = pathlib.Path(name) / "pictures", pathlib.Path(name) / "work"
        folder.mkdir()
        work.mkdir()
        paths = files(folder)
        for path in paths:
            off = furthest(expected(path), shown(zephyr, path, work))
            # Of inks and of 16 bits everybody rounds in his own way.
            if off > (2 if path.stem in ("inks", "deep") else 0):
                print(f"{path.name}: samples are off by up to {off}")
                faults += 1
    print(f"pictures: {len(paths)} files, {faults} faults")
    sys.exit(faults > 0 or len(paths) < FEWEST)


main()
