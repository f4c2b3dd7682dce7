#!/usr/bin/env python3
"""Times a mirror or turn of Pillow's on a made picture: prints processor seconds of the fastest run.

usage: pillow_turn.py quarter|fine 1|8|24|32
"""
import os
import sys
import time

from PIL import Image

turn, bits = sys.argv[1], int(sys.argv[2])
mode = {1: "1", 8: "L", 24: "RGB", 32: "RGBX"}[bits]
size = (2480, 3508) if bits == 1 else (4272, 2848)
noise = os.urandom(size[0] * size[1] * (4 if bits == 32 else 3 if bits == 24 else 1))
picture = Image.frombytes("L" if bits == 1 else mode, size, noise)
if bits == 1:
    picture = picture.convert("1")

best = None
for _ in range(9):
    start = time.thread_time()
    if turn == "quarter":
        picture.transpose(Image.Transpose.ROTATE_270)
    else:
        picture.rotate(-17.3, Image.Resampling.NEAREST)
    seconds = time.thread_time() - start
    best = seconds if best is None else min(best, seconds)
print(best)
