"""The painted landscape behind samples/photo.png: sky, mountains, lake, table with objects.

Coordinates: x runs right, y down, both in units of the picture's height (y 0..1).
"""
import numpy as np

from noise import fbm, gradient_noise, mix, ramp, smoothstep, text_mask, white_noise

HORIZON = 0.55
SUN = (1.36, 0.30)
TABLE = 0.80


def plane(width, height):
    """Returns the x and y of every pixel centre."""
    y, x = np.mgrid[0:height, 0:width].astype(np.float32)
    return (x + 0.5) / height, (y + 0.5) / height


def clouds(u, v, seed):
    """Returns the cover and the brightness of a cloud layer, at coordinates in that layer."""
    warp = 0.6 * fbm(u * 0.7, v * 0.7, 3, seed + 40)
    body = fbm(u + warp, v + warp, 6, seed)
    lit = body - fbm(u + warp + 0.10, v + warp - 0.06, 6, seed)
    cover = smoothstep(0.47, 0.66, body)
    return cover, np.clip(0.80 + 2.2 * lit, 0.45, 1.08)


def sky(x, y):
    """Paints the sky with the glow of the sun and clouds. Its colours continue below the horizon."""
    colour = ramp(y / HORIZON, [(0.0, (0.13, 0.32, 0.68)), (0.45, (0.38, 0.62, 0.90)),
                                (0.80, (0.80, 0.84, 0.86)), (1.0, (1.0, 0.83, 0.62))])
    away = np.hypot(x - SUN[0], (y - SUN[1]))
    colour = mix(colour, (1.0, 0.80, 0.46), 0.85 * np.exp(-away * 4.2))
    depth = np.maximum(HORIZON + 0.02 - y, 0.02)
    cover, light = clouds((x - 0.9) / depth * 0.42 + 3.0, 0.75 / depth, 7)
    cover = cover * smoothstep(0.03, 0.20, depth) * (0.92 - 0.35 * np.exp(-away * 9))
    tint = np.array([1.0, 0.96, 0.92]) + np.exp(-away * 4)[..., None] * np.array([0.05, -0.02, -0.12])
    colour = mix(colour, tint * light[..., None], cover)
    disc = smoothstep(0.050, 0.044, away)
    return mix(colour, (1.0, 0.98, 0.88), np.maximum(disc, 0.70 * np.exp(-((away / 0.085) ** 2))))


def mountains(picture, x, y):
    """Paints a range with snow that falls from left to right, and two lines of wooded hills before it."""
    ridge = HORIZON - 0.03 - 0.30 * np.exp(-(((x - 0.52) / 0.42) ** 2)) - 0.10 * (fbm(x * 5.0, x * 0 + 3.1, 6, 21) - 0.4)
    lean = (x - 0.52) * np.where(x < 0.52, 0.7, -0.9)

    def relief(dx, dy):
        wide = np.abs(fbm((x + dx) * 7 + 3 * (y + dy) * np.sign(lean), (y + dy) * 3.2 + lean, 5, 23) - 0.5)
        return -wide - 0.25 * fbm((x + dx) * 26, (y + dy) * 20, 3, 24)

    fold = relief(0.0, 0.0) - relief(0.006, -0.004)
    slope = np.clip(0.62 + 16 * fold, 0.12, 1.0)
    rock = mix((0.27, 0.31, 0.45), (0.66, 0.62, 0.66), slope)
    snow = mix((0.55, 0.65, 0.83), (1.0, 0.98, 0.95), slope)
    above = (0.345 + 0.12 * (fbm(x * 14, y * 14, 4, 25) - 0.5)) - y
    body = mix(rock, snow, smoothstep(-0.01, 0.02, above + 0.9 * fold))
    body = mix(body, (0.80, 0.80, 0.82), 0.55 * smoothstep(0.30, HORIZON, y))
    picture = mix(picture, body, smoothstep(-0.002, 0.002, y - ridge))
    for base, high, scale, seed, dark, light in (
            (HORIZON - 0.020, 0.075, 3.0, 31, (0.24, 0.38, 0.36), (0.50, 0.62, 0.46)),
            (HORIZON + 0.005, 0.085, 2.2, 37, (0.09, 0.22, 0.12), (0.38, 0.50, 0.18))):
        tops = 0.012 * fbm(x * 60, x * 0 + seed, 2, seed + 1)
        top = base - high * fbm(x * scale, x * 0 + seed, 4, seed) - tops
        shade = np.clip(0.35 + 1.7 * (fbm(x * 45, y * 70, 4, seed + 2) - 0.45), 0, 1)
        picture = mix(picture, mix(dark, light, shade), smoothstep(-0.002, 0.002, y - top))
    return picture


def lake(picture, x, y):
    """Paints the lake: below the horizon, the picture so far is mirrored, rippled and darkened."""
    height, width = x.shape
    down = np.clip((y - HORIZON) / (TABLE - HORIZON), 0, 1)
    ripple = fbm(x * 10 / (0.25 + down), y * 90 / (0.35 + down), 4, 51) - 0.5
    source_y = 2 * HORIZON - y + ripple * 0.16 * down - 0.004
    source_x = x + ripple * 0.10 * down
    rows = np.clip((source_y * height).astype(np.int64), 0, height - 1)
    columns = np.clip((source_x * height).astype(np.int64), 0, width - 1)
    water = picture[rows, columns] * (0.86 - 0.22 * down)[..., None] * np.array([0.80, 0.93, 1.0])
    water = water + (0.06 + 0.10 * down)[..., None] * np.array([0.02, 0.20, 0.26])
    path = np.exp(-(((x - SUN[0]) / (0.035 + 0.10 * down)) ** 2))
    sparkle = smoothstep(0.57, 0.70, fbm(x * 26, y * 170, 3, 53)) * path
    water = mix(water, (1.0, 0.93, 0.74), 0.95 * sparkle)
    shore = smoothstep(HORIZON - 0.003, HORIZON + 0.003, y + 0.004 * gradient_noise(x * 30, x * 0, 55))
    return mix(picture, water, shore)


def tree(picture, x, y):
    """Paints an old tree at the left edge only, so that a mirrored picture is easy to recognise."""
    trunk_x = 0.150 + 0.018 * np.sin(y * 9) + 0.02 * (y - 0.5)
    half = 0.020 + 0.035 * smoothstep(0.60, 0.84, y)
    trunk = smoothstep(0.003, -0.003, np.abs(x - trunk_x) - half) * (y > 0.25) * (y < 0.83)
    bark = mix((0.14, 0.09, 0.06), (0.46, 0.33, 0.22), np.clip(
        fbm(x * 120, y * 22, 4, 61) * 0.7 + 0.5 * (x - trunk_x) / half, 0, 1))
    picture = mix(picture, bark, trunk)
    clumps = ((0.10, 0.13, 0.17, 0.12), (0.27, 0.21, 0.13, 0.09), (0.02, 0.27, 0.13, 0.10), (0.20, 0.31, 0.12, 0.07))
    for i, (cx, cy, rx, ry) in enumerate(clumps):
        inside = 1 - np.hypot((x - cx) / rx, (y - cy) / ry)
        leaf = fbm(x * 34, y * 34, 4, 63 + i)
        mask = smoothstep(0.0, 0.05, inside + 1.5 * (leaf - 0.52))
        light = np.clip(0.42 - 1.4 * (y - cy) / ry * 0.30 + 0.9 * (x - cx) / rx * 0.25 + 1.9 * (leaf - 0.5), 0, 1)
        picture = mix(picture, mix((0.04, 0.12, 0.04), (0.55, 0.66, 0.20), light), mask)
    return picture


def table(picture, x, y):
    """Paints wooden boards in perspective."""
    depth = 1.0 / (y - TABLE + 0.22)
    u, v = (x - 0.9) * depth, depth * 1.6
    board = np.floor(u * 1.6)
    grain = fbm(u * 26 + board * 7.7, v * 2.2 + board * 3.1, 5, 71)
    rings = 0.5 + 0.5 * np.sin(28 * (u + 0.35 * fbm(u * 4, v * 0.8, 3, 73)) + board * 2.3)
    tone = np.clip(0.25 + 0.8 * (grain - 0.3) + 0.22 * rings + 0.16 * (np.sin(board * 12.9) * 0.5), 0, 1)
    wood = mix((0.27, 0.14, 0.07), (0.80, 0.56, 0.33), tone)
    gap = np.abs(u * 1.6 - board - 0.5)
    wood = wood * (1 - 0.7 * smoothstep(0.478, 0.496, gap))[..., None]
    wood = wood * (0.72 + 0.35 * smoothstep(TABLE, 1.0, y) * np.clip(0.6 + 0.3 * x, 0, 1.2))[..., None]
    edge = smoothstep(TABLE - 0.0015, TABLE + 0.0015, y)
    return mix(picture, wood, edge)


def shadow(picture, x, y, cx, cy, rx, ry, strength=0.62):
    away = np.hypot((x - cx) / rx, (y - cy) / ry)
    return picture * (1 - strength * smoothstep(1.25, 0.25, away))[..., None]


def ball(picture, x, y, cx, cy, radius, dark, light, gloss):
    """Paints a shaded sphere that is lit from the side of the sun, with a soft contact shadow and a rim light."""
    picture = shadow(picture, x, y, cx - 0.5 * radius, cy + 0.93 * radius, 1.5 * radius, 0.26 * radius)
    nx, ny = (x - cx) / radius, (y - cy) / radius
    r2 = nx * nx + ny * ny
    nz = np.sqrt(np.clip(1 - r2, 0, 1))
    lamp = np.array([0.58, -0.60, 0.55])
    diffuse = np.clip((nx * lamp[0] + ny * lamp[1] + nz * lamp[2]) * 0.62 + 0.38, 0, 1)
    pores = 0.035 * (gradient_noise(nx * 42, ny * 42, 81) - 0.5)
    body = mix(dark, light, np.clip(diffuse + pores, 0, 1))
    body = body + (0.20 * np.clip(ny, 0, 1) * (1 - nz))[..., None] * np.array([0.7, 0.42, 0.22])
    half = lamp + np.array([0.0, 0.0, 1.0])
    half = half / np.linalg.norm(half)
    shine = np.clip(nx * half[0] + ny * half[1] + nz * half[2], 0, 1) ** 60
    body = body + (gloss * shine)[..., None] * np.array([1.0, 0.97, 0.90])
    return mix(picture, body, smoothstep(0.004, -0.004, np.sqrt(r2) * radius - radius))


def page(picture, x, y):
    """Paints a sheet with lines of print (a fine texture with high contrast) and a decorated initial."""
    u = (x - 1.20 - 0.26 * (0.955 - y)) / 0.36
    v = (y - 0.865) / 0.115
    picture = shadow(picture, x, y, 1.37, 0.945, 0.30, 0.075, 0.35)
    sheet = (u > 0) & (u < 1) & (v > 0) & (v < 1)
    paper = mix((0.97, 0.95, 0.88), (0.86, 0.83, 0.74), np.clip(0.5 * v + 0.3 * u, 0, 1))
    line = v * 11 - np.floor(v * 11)
    words = gradient_noise(u * 44, np.floor(v * 11) * 5.3, 91)
    strokes = white_noise_at(np.floor(u * 150), np.floor(v * 11), 93) > 0.34
    margin = (u > 0.08) & (u < 0.90 - 0.16 * (np.floor(v * 11) % 4 == 3)) & (v > 0.09) & (v < 0.91)
    ink = margin & (line > 0.30) & (line < 0.78) & (words > 0.36) & strokes & ~((u < 0.27) & (v < 0.36))
    initial = (u > 0.09) & (u < 0.25) & (v > 0.09) & (v < 0.36)
    paper = np.where(initial[..., None], np.array([0.72, 0.12, 0.10]), paper)
    paper = np.where(ink[..., None], np.array([0.13, 0.12, 0.16]), paper)
    return np.where(sheet[..., None], paper, picture)


def white_noise_at(ix, iy, seed):
    return gradient_noise(ix * 0.73 + 0.31, iy * 1.37 + 0.17, seed)


CHART = ((0.45, 0.32, 0.27), (0.76, 0.58, 0.51), (0.94, 0.78, 0.66), (0.22, 0.24, 0.59), (0.27, 0.58, 0.29),
         (0.69, 0.19, 0.22), (0.93, 0.78, 0.12), (0.73, 0.34, 0.58), (0.0, 0.53, 0.63), (0.96, 0.96, 0.95),
         (0.48, 0.48, 0.47), (0.08, 0.08, 0.08))


def chart(picture, x, y):
    """Paints a small colour chart: six by two patches of flat colour with straight edges."""
    u, v = (x - 0.80) / 0.30, (y - 0.885) / 0.088
    picture = shadow(picture, x, y, 0.95, 0.965, 0.20, 0.03, 0.45)
    inside = (u > 0) & (u < 1) & (v > 0) & (v < 1)
    column = np.clip(np.floor(u * 6), 0, 5).astype(int)
    row = np.clip(np.floor(v * 2), 0, 1).astype(int)
    patches = np.array(CHART, np.float32)[row * 6 + column]
    border = (np.abs(u * 6 - column - 0.5) > 0.43) | (np.abs(v * 2 - row - 0.5) > 0.43)
    patches = np.where(border[..., None], 0.10, patches)
    return np.where(inside[..., None], patches, picture)


def signpost(picture, x, y):
    """Paints a board with an arrow and the word UP, so that a flipped picture is easy to recognise."""
    post = (np.abs(x - 1.615) < 0.012) & (y > 0.50) & (y < 0.86)
    grain = fbm(x * 160, y * 14, 3, 95)
    wood = mix((0.30, 0.20, 0.12), (0.58, 0.42, 0.26), np.clip(grain + (x - 1.61) * 12, 0, 1))
    picture = shadow(picture, x, y, 1.58, 0.862, 0.06, 0.014)
    picture = np.where(post[..., None], wood, picture)
    u, v = (x - 1.515) / 0.20, (y - 0.475) / 0.20
    board = smoothstep(0.004, -0.004, np.maximum(np.abs(u - 0.5), np.abs(v - 0.5)) * 0.20 - 0.10)
    plank = mix((0.86, 0.82, 0.70), (0.98, 0.95, 0.86), np.clip(fbm(u * 4, v * 30, 3, 97), 0, 1))
    picture = mix(picture, plank, board)
    letters = text_mask(u, v, "UP", 0.22, 0.56, 0.33)
    head = (v > 0.08) & (v < 0.30) & (np.abs(u - 0.5) < (v - 0.08) * 1.0)
    shaft = (v >= 0.30) & (v < 0.48) & (np.abs(u - 0.5) < 0.075)
    picture = np.where((letters > 0)[..., None], np.array([0.10, 0.12, 0.20]), picture)
    return np.where((head | shaft)[..., None], np.array([0.80, 0.13, 0.11]), picture)


def paint(width, height):
    """Paints the whole landscape at width x height, in colours 0..1."""
    x, y = plane(width, height)
    picture = sky(x, y)
    picture = mountains(picture, x, y)
    picture = lake(picture, x, y)
    picture = table(picture, x, y)
    picture = tree(picture, x, y)
    picture = signpost(picture, x, y)
    picture = page(picture, x, y)
    picture = ball(picture, x, y, 0.700, 0.765, 0.075, (0.20, 0.10, 0.07), (0.58, 0.36, 0.26), 0.55)
    picture = ball(picture, x, y, 0.345, 0.800, 0.100, (0.42, 0.20, 0.15), (1.0, 0.80, 0.70), 0.35)
    picture = ball(picture, x, y, 0.535, 0.860, 0.062, (0.32, 0.15, 0.09), (0.88, 0.62, 0.47), 0.45)
    picture = ball(picture, x, y, 1.075, 0.800, 0.060, (0.30, 0.01, 0.03), (0.92, 0.16, 0.12), 0.90)
    picture = chart(picture, x, y)
    film = 0.018 * (white_noise(width, height, 99) - 0.5)
    return np.clip(picture + film[..., None], 0, 1)
