#!/usr/bin/python3
"""Makes the pictures that belong to the effects. Every run writes the same bytes.

    apt-get install python3-numpy python3-openimageio
    /usr/bin/python3 effects/make_textures.py
"""
import sys
from pathlib import Path

import numpy as np
import OpenImageIO as oiio

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "samples"))

from environment import equirect_light  # noqa: E402
from noise import halve, smoothstep, white_noise  # noqa: E402


def write(path, picture, kind):
    height, width, channels = picture.shape
    if kind == "uint8":
        picture = np.rint(np.clip(picture, 0, 1) * 255).astype(np.uint8)
    spec = oiio.ImageSpec(width, height, channels, kind)
    spec.attribute("png:compressionLevel", 9)
    out = oiio.ImageOutput.create(str(path))
    if out is None or not out.open(str(path), spec):
        sys.exit(f"{path}: cannot be written: {oiio.geterror()}")
    out.write_image(np.ascontiguousarray(picture))
    out.close()
    print(f"{path}: {width}x{height}, {path.stat().st_size // 1024} KiB")


def tiling_noise(size, slope, seed, stretch=1.0, turn=0.0, widest=6.0):
    """Returns noise that repeats without a seam: white noise, filtered in the frequency domain. The amplitude falls with
    the exponent `slope` above `widest` waves per side."""
    v, u = np.meshgrid(np.fft.fftfreq(size) * size, np.fft.fftfreq(size) * size, indexing="ij")
    across, along = u * np.cos(turn) + v * np.sin(turn), (v * np.cos(turn) - u * np.sin(turn)) * stretch
    away = np.hypot(across, along)
    shape = smoothstep(0.0, widest, away) / np.maximum(away, widest) ** slope
    shape[0, 0] = 0.0
    field = np.fft.ifft2(np.fft.fft2(white_noise(size, size, seed)) * shape).real
    return field / field.std()


def paper(size):
    """Returns the height of rough paper: grain, felt marks, and fibres in several directions."""
    height = 0.50 * tiling_noise(size, 1.0, 1, widest=40.0) + 0.35 * tiling_noise(size, 1.8, 2, widest=14.0)
    for i, turn in enumerate((0.3, 1.2, 2.0, 2.8)):
        fibres = tiling_noise(size, 1.0, 10 + i, 7.0, turn)
        height += 0.30 * np.maximum(fibres - 1.1, 0)
    height = (height - height.mean()) / height.std()
    return (0.5 + 0.15 * height)[..., None]


def canvas(size):
    """Returns woven cloth with sixteen threads per side."""
    y, x = (np.mgrid[0:size, 0:size] + 0.5) / size * 16
    over = (np.floor(x) + np.floor(y)) % 2
    across = np.sin(np.pi * (x % 1)) ** 0.7
    down = np.sin(np.pi * (y % 1)) ** 0.7
    thread = np.where(over > 0, across * (0.55 + 0.45 * down), down * (0.55 + 0.45 * across))
    worn = 0.06 * tiling_noise(size, 0.6, 31)
    return smoothstep(-0.1, 1.1, thread + worn)[..., None]


def main():
    write(HERE / "paper" / "paper.png", paper(512), "uint8")
    write(HERE / "controls" / "canvas.png", canvas(256), "uint8")
    write(HERE / "environment" / "surroundings.hdr", halve(equirect_light(1024, 512)).astype(np.float32), "float")


if __name__ == "__main__":
    main()
