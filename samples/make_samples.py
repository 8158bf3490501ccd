#!/usr/bin/python3
"""Makes the sample pictures in this folder. Every run on every machine writes the same bytes.

    apt-get install python3-numpy python3-openimageio
    /usr/bin/python3 samples/make_samples.py [folder]

Alpha is straight (unassociated) in every picture, the float one included.
"""
import sys
from pathlib import Path

import numpy as np
import OpenImageIO as oiio

import scene
from environment import equirect
from noise import halve
from pictures import cutout, displacement, gradients, lights


def write(path, picture, kind):
    """Writes a picture. kind is the name of an OpenImageIO type; for integer types the picture is 0..1."""
    height, width, channels = picture.shape
    if kind != "float":
        top = {"uint8": 255, "uint16": 65535}[kind]
        picture = np.rint(np.clip(picture, 0, 1) * top).astype(kind)
    spec = oiio.ImageSpec(width, height, channels, kind)
    spec.attribute("oiio:UnassociatedAlpha", 1)
    spec.attribute("png:compressionLevel", 9)
    spec.attribute("compression", "zip")
    spec.attribute("DateTime", "2000:01:01 00:00:00")  # otherwise the file contains the time of writing
    out = oiio.ImageOutput.create(str(path))
    if out is None or not out.open(str(path), spec):
        sys.exit(f"{path}: cannot be written: {oiio.geterror()}")
    out.write_image(np.ascontiguousarray(picture))
    out.close()
    print(f"{path}: {width}x{height}, {channels} channels, {kind}, {path.stat().st_size // 1024} KiB")


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent
    write(folder / "photo.png", halve(scene.paint(1920, 1080)), "uint8")
    write(folder / "cutout.png", halve(cutout(1280, 960)), "uint8")
    write(folder / "photo16.png", gradients(640, 360), "uint16")
    write(folder / "light.exr", halve(lights(960, 540)).astype(np.float16).astype(np.float32), "float")
    write(folder / "equirect.png", halve(equirect(1024, 512)), "uint8")
    write(folder / "displace.png", displacement(480, 270), "uint8")


if __name__ == "__main__":
    main()
