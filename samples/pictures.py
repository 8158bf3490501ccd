"""The smaller sample pictures: cut-out, smooth gradients, lights, displacement map."""
import numpy as np

from noise import fbm, mix, ramp, smoothstep, text_mask
from scene import ball, plane


def with_alpha(colour, alpha):
    return np.concatenate([colour, alpha[..., None]], -1)


def put(colour, alpha, new_colour, cover):
    """The operator 'over' for straight alpha: draws new_colour, weighted by cover, over colour with alpha."""
    out = cover + alpha * (1 - cover)
    share = np.where(out > 0, cover / np.maximum(out, 1e-6), 1.0)
    return mix(colour, new_colour, share), out


def cutout(width, height):
    """Paints a flower, a soft glow, a glass disc, a hard-edged R and an alpha ramp on a transparent ground."""
    x, y = plane(width, height)
    colour, alpha = np.zeros((height, width, 3), np.float32), np.zeros((height, width), np.float32)

    away = np.hypot(x - 0.45, y - 0.43)
    colour, alpha = put(colour, alpha, np.broadcast_to(np.array([1.0, 0.74, 0.25], np.float32), colour.shape),
                        0.55 * smoothstep(0.42, 0.12, away))
    stem = smoothstep(0.004, -0.004, np.abs(x - 0.45 - 0.10 * (y - 0.45) ** 2 * 3) - 0.014) * (y > 0.45) * (y < 0.95)
    colour, alpha = put(colour, alpha, mix((0.08, 0.30, 0.08), (0.36, 0.62, 0.20), np.clip((x - 0.43) * 18, 0, 1)), stem)
    leaf = 1 - np.hypot((x - 0.57) / 0.13 - 0.25 * (y - 0.72) / 0.05, (y - 0.72) / 0.05)
    colour, alpha = put(colour, alpha, mix((0.10, 0.34, 0.10), (0.50, 0.74, 0.26), np.clip(leaf * 1.4, 0, 1)),
                        smoothstep(0.0, 0.04, leaf))
    angle = np.arctan2(y - 0.43, x - 0.45)
    for turn, reach, dark, light in ((0.30, 0.31, (0.62, 0.05, 0.22), (0.98, 0.50, 0.62)),
                                     (0.0, 0.25, (0.78, 0.12, 0.30), (1.0, 0.72, 0.74))):
        petal = reach * (0.62 + 0.38 * np.abs(np.cos(3.5 * (angle + turn))) ** 0.6)
        shade = np.clip(away / petal * 0.9 + 0.25 * (fbm(angle * 9, away * 7, 3, 5) - 0.5), 0, 1)
        colour, alpha = put(colour, alpha, mix(dark, light, shade), smoothstep(0.006, -0.002, away - petal))
    seeds = np.clip(0.75 + 0.5 * np.sin(x * 260) * np.sin(y * 260) - away * 4, 0, 1)
    colour, alpha = put(colour, alpha, mix((0.40, 0.20, 0.02), (1.0, 0.84, 0.22), seeds), smoothstep(0.088, 0.082, away))

    rim = np.hypot(x - 0.99, y - 0.30)
    glass = np.where(rim < 0.2, 0.14 + 0.66 * (np.clip(rim, 0, 0.2) / 0.2) ** 5, 0.0) * smoothstep(0.2, 0.196, rim)
    spark = 0.95 * smoothstep(0.055, 0.02, np.hypot(x - 0.92, (y - 0.21) * 1.4))
    colour, alpha = put(colour, alpha, np.broadcast_to(np.array([0.30, 0.68, 0.95], np.float32), colour.shape), glass)
    colour, alpha = put(colour, alpha, np.ones_like(colour), spark)

    letter = text_mask(x, y, "R", 0.86, 0.56, 0.22)
    colour, alpha = put(colour, alpha, mix((0.10, 0.12, 0.42), (0.20, 0.52, 0.90), np.clip((y - 0.56) / 0.22, 0, 1)), letter)
    ramp_box = (x > 0.70) & (x < 1.25) & (y > 0.86) & (y < 0.94)
    rainbow = ramp((x - 0.70) / 0.55, [(0, (0.9, 0.1, 0.1)), (0.33, (0.9, 0.8, 0.1)), (0.66, (0.1, 0.7, 0.3)), (1, (0.1, 0.3, 0.9))])
    colour, alpha = put(colour, alpha, rainbow, np.where(ramp_box, np.clip((x - 0.70) / 0.55, 0, 1), 0))
    return with_alpha(colour, alpha)


def gradients(width, height):
    """Paints dusk over still water without any grain. 8 bits per channel show banding here, 16 do not."""
    x, y = plane(width, height)
    sky = ramp(y / 0.62, [(0.0, (0.030, 0.035, 0.110)), (0.45, (0.160, 0.110, 0.290)), (0.75, (0.560, 0.230, 0.310)),
                          (0.92, (0.950, 0.520, 0.250)), (1.0, (1.0, 0.760, 0.420))])
    away = np.hypot(x - 1.15, (y - 0.60) * 1.3)
    sky = sky + 0.40 * np.exp(-away * 5)[..., None] * np.array([1.0, 0.7, 0.35])
    sky = mix(sky, (1.0, 0.95, 0.80), smoothstep(0.075, 0.070, away))
    moon = smoothstep(0.042, 0.039, np.hypot(x - 0.32, y - 0.17)) * smoothstep(0.036, 0.040, np.hypot(x - 0.338, y - 0.158))
    sky = mix(sky, (0.88, 0.90, 0.96), moon)
    rows = np.clip((0.62 * 2 - y) * height, 0, height - 1).astype(int)
    water = sky[rows, np.arange(width)[None, :]] * (0.75 - 0.9 * np.clip(y - 0.62, 0, 1))[..., None] + 0.008
    picture = mix(sky, water, smoothstep(0.618, 0.622, y))
    land = 0.60 - 0.10 * np.exp(-((x - 0.35) / 0.22) ** 2) - 0.03 * np.exp(-((x - 0.72) / 0.10) ** 2)
    picture = mix(picture, np.broadcast_to(np.array([0.020, 0.020, 0.045]), picture.shape),
                  smoothstep(-0.002, 0.002, y - land) * smoothstep(0.622, 0.618, y))
    return np.clip(ball(picture, x, y, 0.50, 0.80, 0.13, (0.05, 0.05, 0.11), (0.75, 0.42, 0.34), 0.35), 0, 1)


def lights(width, height):
    """Paints lamps up to 16 times as bright as white, steps of exposure, and a transparent upper edge."""
    x, y = plane(width, height)
    colour = mix((0.015, 0.02, 0.05), (0.10, 0.07, 0.10), np.clip(y, 0, 1))
    colour = colour * (0.7 + 0.6 * fbm(x * 5, y * 5, 4, 3))[..., None]
    wall = (np.abs(np.mod(x * 7, 1) - 0.5) < 0.44) & (np.abs(np.mod(y * 9 + 0.5 * np.floor(x * 7), 1) - 0.5) < 0.42)
    colour = colour * np.where(wall, 1.0, 0.35)[..., None]
    for cx, cy, radius, tint, power in ((0.30, 0.42, 0.050, (1.0, 0.62, 0.25), 16.0), (0.78, 0.28, 0.032, (0.45, 0.75, 1.0), 10.0),
                                        (1.18, 0.50, 0.070, (1.0, 0.22, 0.30), 6.0), (1.56, 0.34, 0.022, (0.55, 1.0, 0.45), 12.0)):
        away = np.hypot(x - cx, y - cy)
        tint = np.array(tint)
        colour = colour + (0.075 * power * radius / (away + 0.06) ** 1.6)[..., None] * tint * np.where(wall, 0.16, 0.06)[..., None]
        colour = mix(colour, tint * power, smoothstep(radius, radius - 0.006, away))
    steps = np.floor(np.clip((x - 0.12) / 1.54, 0, 0.999) * 8)
    strip = (x > 0.12) & (x < 1.66) & (y > 0.80) & (y < 0.92)
    colour = np.where(strip[..., None], (0.125 * 2.0 ** steps)[..., None] * np.array([1.0, 0.96, 0.90]), colour)
    letter = text_mask(x, y, "F", 0.92, 0.60, 0.14)
    colour = np.where((letter > 0)[..., None], np.array([3.0, 2.4, 1.2]), colour)
    alpha = smoothstep(0.0, 0.18, y + 0.05 * (fbm(x * 6, x * 0, 3, 9) - 0.5))
    hole = smoothstep(0.060, 0.075, np.hypot(x - 1.50, y - 0.66))
    return with_alpha(colour, alpha * (0.25 + 0.75 * hole))


def displacement(width, height):
    """Paints a displacement map of ripples, a lens and a swirl. Red is horizontal, green vertical; 0.5 means no shift."""
    x, y = plane(width, height)
    dx, dy = np.zeros_like(x), np.zeros_like(x)
    away = np.hypot(x - 0.52, y - 0.48) + 1e-4
    wave = 0.9 * np.sin(away * 55) * smoothstep(0.46, 0.10, away) * smoothstep(0.0, 0.06, away)
    dx, dy = dx + wave * (x - 0.52) / away, dy + wave * (y - 0.48) / away
    away = np.hypot(x - 1.28, y - 0.42) + 1e-4
    turn = 1.2 * smoothstep(0.36, 0.0, away) * smoothstep(0.0, 0.08, away)
    dx, dy = dx - turn * (y - 0.42) / away, dy + turn * (x - 1.28) / away
    grain = smoothstep(0.72, 0.95, y)
    dx = dx + grain * 1.3 * (fbm(x * 7, y * 12, 3, 11) - 0.5)
    dy = dy + grain * 1.3 * (fbm(x * 7 + 30, y * 12, 3, 13) - 0.5)
    centre = 128.0 / 255.0
    return np.stack([np.clip(centre + 0.49 * dx, 0, 1), np.clip(centre + 0.49 * dy, 0, 1), np.full_like(x, centre)], -1)
