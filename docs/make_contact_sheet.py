#!/usr/bin/python3
"""Makes docs/palettes.png and docs/dithers.png: the Home Computer effect with every palette and every dither.

    apt-get install python3-numpy python3-openimageio fonts-dejavu-core
    /usr/bin/python3 docs/make_contact_sheet.py

The pictures are rendered by ./fxhost; FXHOST names another one.
"""
import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

import numpy as np
import OpenImageIO as oiio

ROOT = Path(__file__).resolve().parent.parent
FXHOST = os.environ.get("FXHOST", str(ROOT / "fxhost"))
EFFECT = ROOT / "effects" / "homecomputer"
PHOTO = ROOT / "samples" / "photo.png"
FONT = "DejaVuSans"

BLOCK = 3  # pixels of the photo that make one of the effect's
GAP, LABEL = 10, 24


def fxhost(*arguments):
    done = subprocess.run([FXHOST, *map(str, arguments)], capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"{FXHOST} {' '.join(map(str, arguments))}\n{done.stderr}")
    return done.stdout


def read(path):
    picture = oiio.ImageInput.open(str(path))
    if picture is None:
        sys.exit(f"{path}: {oiio.geterror()}")
    return np.array(picture.read_image("uint8"))[..., :3]


def rendered(folder, **values):
    """The photo through the effect, one pixel for each of the effect's blocks."""
    out = Path(folder) / "cell.png"
    options = [text for name, value in values.items() for text in ("--param", f"{name}={value}")]
    fxhost("render", EFFECT, "-i", PHOTO, "-o", out, "--param", f"pixelSize={BLOCK}", *options)
    return read(out)[BLOCK // 2 :: BLOCK, BLOCK // 2 :: BLOCK]


def sheet(path, cells, columns):
    """cells are (label, picture) pairs of one size, set out row by row."""
    height, width = cells[0][1].shape[:2]
    rows = -(-len(cells) // columns)
    page = np.full((GAP + rows * (height + LABEL + GAP), GAP + columns * (width + GAP), 3), 24, np.uint8)
    places = []
    for i, (label, picture) in enumerate(cells):
        top = GAP + (i // columns) * (height + LABEL + GAP)
        left = GAP + (i % columns) * (width + GAP)
        page[top : top + height, left : left + width] = picture
        places.append((label, left, top + height + 17))

    buffer = oiio.ImageBuf(oiio.ImageSpec(page.shape[1], page.shape[0], 3, "uint8"))
    buffer.set_pixels(oiio.ROI(), page)
    for label, x, y in places:
        if not oiio.ImageBufAlgo.render_text(buffer, x, y, label, 14, FONT, (0.88, 0.88, 0.88)):
            sys.exit(f"font {FONT}: {buffer.geterror()}")
    buffer.specmod().attribute("png:compressionLevel", 9)
    if not buffer.write(str(path)):
        sys.exit(f"{path}: {buffer.geterror()}")
    print(f"{path}: {page.shape[1]}x{page.shape[0]}, {Path(path).stat().st_size // 1024} KiB")


def main():
    parameters = {p["name"]: p for p in json.loads(fxhost("info", EFFECT, "--json"))["parameters"]}
    photo = read(PHOTO)[BLOCK // 2 :: BLOCK, BLOCK // 2 :: BLOCK]
    with tempfile.TemporaryDirectory() as folder:
        cells = [(name, rendered(folder, palette=name, dither="Atkinson"))
                 for name in parameters["palette"]["choices"]]
        sheet(ROOT / "docs" / "palettes.png", [("Photo", photo)] + cells, 3)

        # A part of the picture, each pixel shown as two by two.
        def detail(picture):
            return picture[92:180, 30:190].repeat(2, 0).repeat(2, 1)

        cells = [(name, detail(rendered(folder, palette="EGA", dither=name)))
                 for name in parameters["dither"]["choices"]]
        sheet(ROOT / "docs" / "dithers.png", [("Photo", detail(photo))] + cells, 3)


if __name__ == "__main__":
    main()
