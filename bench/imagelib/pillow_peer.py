"""Times Pillow on a picture: pillow_peer.py FILE.ppm PALETTE.ppm"""

import statistics
import sys
import time

from PIL import Image

picture = Image.open(sys.argv[1]).convert("RGB")
palette = Image.open(sys.argv[2]).convert("P", palette=Image.Palette.ADAPTIVE, colors=16)
none, floyd = Image.Dither.NONE, Image.Dither.FLOYDSTEINBERG

calls = [
    ("16 fixed, none", lambda: picture.quantize(palette=palette, dither=none)),
    ("16 fixed, Floyd-Steinberg", lambda: picture.quantize(palette=palette, dither=floyd)),
    ("256 octree, none", lambda: picture.quantize(256, method=Image.Quantize.FASTOCTREE, dither=none)),
    ("256 median cut, none", lambda: picture.quantize(256, method=Image.Quantize.MEDIANCUT, dither=none)),
]
for name, call in calls:
    times = []
    for _ in range(5):
        start = time.process_time()
        call()
        times.append(time.process_time() - start)
    print(f"peer  {'Pillow':<22}  {name:<31} {1e3 * statistics.median(times):8.2f} ms")
