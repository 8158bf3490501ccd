"""Noise and small painting functions for the sample pictures (needs python3-numpy).

All noise is computed from integer hashes, so a picture is the same on every machine. A picture is a float array of
height x width x 3 in display values, with row 0 at the top.
"""
import numpy as np


def _hash(ix, iy, seed):
    """Returns a number in 0..1 for each integer lattice point."""
    h = (ix.astype(np.int64) * 374761393 + iy.astype(np.int64) * 668265263 + seed * 2246822519)
    h = (h & 0xFFFFFFFF).astype(np.uint32)
    h ^= h >> np.uint32(15)
    h *= np.uint32(2654435761)
    h ^= h >> np.uint32(13)
    h *= np.uint32(3266489917)
    h ^= h >> np.uint32(16)
    return h.astype(np.float32) * np.float32(1.0 / 4294967296.0)


def gradient_noise(x, y, seed=0):
    """Returns gradient noise, about 0..1 with mean 0.5; its features are one unit wide."""
    x, y = np.broadcast_arrays(np.asarray(x, np.float32), np.asarray(y, np.float32))
    x0, y0 = np.floor(x), np.floor(y)
    fx, fy = x - x0, y - y0
    u = fx * fx * fx * (fx * (fx * 6 - 15) + 10)
    v = fy * fy * fy * (fy * (fy * 6 - 15) + 10)

    def corner(dx, dy):
        angle = _hash(x0 + dx, y0 + dy, seed) * np.float32(2 * np.pi)
        return np.cos(angle) * (fx - dx) + np.sin(angle) * (fy - dy)

    top = corner(0, 0) * (1 - u) + corner(1, 0) * u
    bottom = corner(0, 1) * (1 - u) + corner(1, 1) * u
    return 0.5 + 0.72 * (top * (1 - v) + bottom * v)


def fbm(x, y, octaves=5, seed=0, gain=0.5):
    """Returns the sum of octaves of gradient noise. Each is half as wide as the one before and `gain` times as strong."""
    total, weight, scale, result = 0.0, 1.0, 1.0, 0.0
    for octave in range(octaves):
        result = result + weight * gradient_noise(x * scale + 17.3 * octave, y * scale, seed + octave)
        total += weight
        weight *= gain
        scale *= 2.03
    return result / total


def white_noise(width, height, seed=0):
    """Returns independent numbers in 0..1."""
    iy, ix = np.mgrid[0:height, 0:width]
    return _hash(ix, iy, seed)


def smoothstep(low, high, value):
    t = np.clip((value - low) / (high - low), 0.0, 1.0)
    return t * t * (3.0 - 2.0 * t)


def mix(a, b, t):
    """Interpolates from a (where t is 0) to b (where t is 1). t is a plane; a and b are planes, pictures or colours."""
    t = np.asarray(t)[..., None]
    return np.asarray(a, np.float32) * (1 - t) + np.asarray(b, np.float32) * t


def ramp(t, stops):
    """Returns the colours of a gradient at t; stops are (position, (red, green, blue)) in rising order."""
    positions = [p for p, _ in stops]
    return np.stack([np.interp(t, positions, [c[i] for _, c in stops]) for i in range(3)], -1)


def halve(picture):
    """Averages 2 x 2 pixels. The pictures are painted at twice their size, so their edges become smooth."""
    h, w = picture.shape[0] // 2, picture.shape[1] // 2
    return picture.reshape(h, 2, w, 2, -1).mean((1, 3))


# Five-by-seven letters, one string per row.
_GLYPHS = {
    "U": ("X...X", "X...X", "X...X", "X...X", "X...X", "X...X", ".XXX."),
    "P": ("XXXX.", "X...X", "X...X", "XXXX.", "X....", "X....", "X...."),
    "R": ("XXXX.", "X...X", "X...X", "XXXX.", "X.X..", "X..X.", "X...X"),
    "G": (".XXX.", "X...X", "X....", "X.XXX", "X...X", "X...X", ".XXX."),
    "B": ("XXXX.", "X...X", "X...X", "XXXX.", "X...X", "X...X", "XXXX."),
    "F": ("XXXXX", "X....", "X....", "XXXX.", "X....", "X....", "X...."),
}


def text_mask(x, y, text, left, top, height):
    """Returns 1 inside the letters of `text`. Its box starts at (left, top), in the units of x and y."""
    cell = height / 7.0
    column = np.floor((x - left) / cell).astype(np.int64)
    row = np.floor((y - top) / cell).astype(np.int64)
    mask = np.zeros(np.broadcast(x, y).shape, np.float32)
    for i, letter in enumerate(text):
        bits = np.array([[c == "X" for c in line] for line in _GLYPHS[letter]], np.float32)
        local = column - 6 * i
        inside = (local >= 0) & (local < 5) & (row >= 0) & (row < 7)
        mask += np.where(inside, bits[np.clip(row, 0, 6), np.clip(local, 0, 4)], 0.0)
    return mask
