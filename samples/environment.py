"""Paints a coast in the evening as an equirectangular panorama, which effects use for reflections.

Column 0 is the direction back (-z), the middle column is ahead (+z), row 0 is up (+y).
"""
import numpy as np

from noise import fbm, mix, ramp, smoothstep

SUN = np.array([0.55, 0.30, 0.78]) / np.linalg.norm([0.55, 0.30, 0.78])


def directions(width, height):
    v, u = np.mgrid[0:height, 0:width].astype(np.float32)
    longitude = (u + 0.5) / width * 2 * np.pi - np.pi
    latitude = (v + 0.5) / height * np.pi
    return np.sin(latitude) * np.sin(longitude), np.cos(latitude), np.sin(latitude) * np.cos(longitude), longitude


def around(longitude, scale, octaves, seed):
    """Returns a profile along the horizon that is continuous at the seam."""
    return fbm(scale * np.sin(longitude) + 9.0, scale * np.cos(longitude) + 5.0, octaves, seed)


def equirect_light(width, height):
    """Returns the panorama in linear brightness; the sun is far above 1."""
    x, y, z, longitude = directions(width, height)
    sun = np.clip(x * SUN[0] + y * SUN[1] + z * SUN[2], -1, 1)
    away = np.arccos(sun)
    colour = ramp(y, [(-0.02, (1.0, 0.72, 0.48)), (0.10, (0.92, 0.76, 0.66)),
                      (0.35, (0.45, 0.62, 0.84)), (1.0, (0.10, 0.22, 0.50))])
    colour = mix(colour, (1.0, 0.78, 0.42), 0.8 * np.exp(-away * 2.6))
    high = np.maximum(y, 0.04)
    body = fbm(1.3 * x / (high + 0.16) + 4, 1.3 * z / (high + 0.16) + 2, 6, 7)
    lit = body - fbm(1.3 * (x + 0.04) / (high + 0.16) + 4, 1.3 * (z + 0.05) / (high + 0.16) + 2, 6, 7)
    cover = smoothstep(0.50, 0.68, body) * smoothstep(0.02, 0.25, y)
    colour = mix(colour, np.clip(0.78 + 2.4 * lit, 0.4, 1.1)[..., None] * np.array([1.0, 0.95, 0.91]), 0.9 * cover)

    hills = 0.02 + 0.30 * smoothstep(0.42, 0.75, around(longitude, 1.6, 5, 21)) * smoothstep(0.7, 1.3, np.abs(longitude - 0.61))
    body = mix((0.16, 0.20, 0.30), (0.52, 0.44, 0.44), np.clip(2.2 * fbm(x * 9 + 20, y * 12 + z * 9, 5, 23) - 0.6, 0, 1))
    colour = mix(colour, body, smoothstep(0.004, -0.004, y - hills))

    towers = np.floor(longitude * 17)
    tall = 0.04 + 0.20 * np.abs(np.sin(towers * 12.9898) * 0.9)
    city = (np.abs(np.abs(longitude) - 2.55) < 0.50) & (y < tall) & (y > 0)
    window = (np.floor(longitude * 119) % 2 == 0) & (np.floor(y * 90) % 2 == 0) & (np.sin(np.floor(longitude * 59) * 7.1 + np.floor(y * 45) * 3.3) > -0.2)
    colour = np.where(city[..., None], np.array([0.13, 0.13, 0.20]), colour)
    colour = np.where((city & window)[..., None], np.array([1.0, 0.78, 0.40]), colour)

    down = np.maximum(-y, 0.015)
    gx, gz = x / down, z / down
    water = mix((0.85, 0.66, 0.52), (0.04, 0.19, 0.27), smoothstep(0.0, 0.55, down))
    ripple = fbm(gx * 3, gz * 3, 4, 51)
    water = water * (0.82 + 0.5 * (ripple - 0.4))[..., None]
    glint = smoothstep(0.52, 0.66, ripple) * np.exp(-((longitude - np.arctan2(SUN[0], SUN[2])) / 0.22) ** 2)
    water = mix(water, (1.0, 0.86, 0.60), 0.9 * glint * smoothstep(0.02, 0.06, down))
    sand = (0.72 + 0.4 * (fbm(gx * 9, gz * 9, 4, 57) - 0.5))[..., None] * np.array([0.86, 0.70, 0.50])
    tiles = (np.floor(gx * 1.2) + np.floor(gz * 1.2)) % 2
    sand = mix(sand, (0.42, 0.22, 0.18), 0.75 * tiles * smoothstep(2.2, 1.4, np.hypot(gx, gz)))
    beach = smoothstep(-0.3, 0.1, -gz * 0.5 - 0.2 + 0.5 * (fbm(gx * 0.7, gz * 0.7, 3, 59) - 0.5) + smoothstep(2.4, 1.2, np.hypot(gx, gz)))
    colour = mix(colour, mix(water, sand, beach), smoothstep(0.003, -0.003, y))
    return mix(colour, (24.0, 21.0, 15.0), smoothstep(0.075, 0.06, away))


def equirect(width, height):
    return np.clip(equirect_light(width, height), 0, 1)
