#!/usr/bin/env python3
"""Times Pillow's reduction of a picture to 256 colours of its own, dithered by Floyd-Steinberg.

Pillow builds the palette by an undithered quantize and dithers in a second quantize to the first
one's palette; both are timed. With --nearest the second one alone is, and does not dither. Prints
megapixels per second of processor time.
"""
import argparse
import os
import time

from PIL import Image

parser = argparse.ArgumentParser(description=__doc__)
parser.add_argument("picture")
parser.add_argument("--method", choices=["fastoctree", "mediancut"], default="fastoctree")
parser.add_argument("--runs", type=int, default=3, help="the fastest of these counts")
parser.add_argument("--nearest", action="store_true", help="only look colours up")
parser.add_argument("--seconds", action="store_true", help="print seconds a run instead")
options = parser.parse_args()

# One core, as everything that it is put beside.
if hasattr(os, "sched_setaffinity"):
    os.sched_setaffinity(0, {min(os.sched_getaffinity(0))})

Image.MAX_IMAGE_PIXELS = None
picture = Image.open(options.picture).convert("RGB")
method = getattr(Image.Quantize, options.method.upper())
dither = Image.Dither.NONE if options.nearest else Image.Dither.FLOYDSTEINBERG

best = float("inf")
for _ in range(options.runs):
    start = time.process_time()
    palette = picture.quantize(256, method=method, dither=Image.Dither.NONE)
    if options.nearest:
        start = time.process_time()
    picture.quantize(palette=palette, dither=dither)
    best = min(best, time.process_time() - start)

if options.seconds:
    print(best)
else:
    print(f"{picture.width * picture.height / best / 1e6:.1f} MP/s ({options.method})")
