"""The Python package against the tool and against itself. $VNCORE_TOOL is the tool, and the package
is the one that this interpreter finds."""
import contextlib
import copy
import doctest
import gc
import importlib
import io
import os
import pkgutil
import re
import subprocess
import tempfile
import threading
import time
import unittest
from pathlib import Path

import numpy as np
from PIL import Image

import vncore
from vncore import Bitmap

TOOL = os.environ["VNCORE_TOOL"]
RANDOM = np.random.default_rng(15)
NOISE = RANDOM.integers(0, 256, (41, 67, 3), np.uint8)


def tool(array, *options, files=()):
    """What `vncore convert` makes of a picture: its pixels as they lie in the file, and its colours."""
    with tempfile.TemporaryDirectory() as folder:
        for name, other in (("in", array), *files):
            Image.fromarray(other).save(f"{folder}/{name}.png")
        subprocess.run([TOOL, "convert", "in.png", "out.png", *map(str, options)], cwd=folder, check=True)
        with Image.open(f"{folder}/out.png") as image:
            colors = image.palette and np.frombuffer(image.palette.palette, np.uint8).reshape(-1, 3)
            return np.asarray(image), colors


class AgainstTool(unittest.TestCase):
    def setUp(self):
        slopes = np.add.outer(np.arange(90), np.arange(131))[..., np.newaxis] * (1, 2, 3)
        self.picture = (slopes % 256).astype(np.uint8)

    def check_reduced(self, reduced, *options):
        pixels, colors = tool(self.picture, *options)
        np.testing.assert_array_equal(reduced.indices, pixels)
        np.testing.assert_array_equal(reduced.palette, colors[:len(reduced.palette)])

    def test_reduce(self):
        for colors in (2, 7, 16, 200):
            for dither in vncore.DITHERS:
                self.check_reduced(vncore.reduce(self.picture, colors, dither=dither),
                                   "--colors", colors, "--dither", dither)
        self.check_reduced(vncore.reduce(self.picture, palette="fixed"), "--depth", 8, "--palette", "fixed")

    def test_named_palettes(self):
        listed = subprocess.run([TOOL, "palettes"], capture_output=True, text=True, check=True)
        self.assertEqual([line.split()[0] for line in listed.stdout.splitlines()], list(vncore.PALETTES))
        for name in vncore.PALETTES:
            self.check_reduced(vncore.reduce(self.picture, palette=name), "--palette", name)

    def test_the_others(self):
        gray = vncore.gray(self.picture)
        np.testing.assert_array_equal(gray, tool(self.picture, "--gray")[0])
        for array in (self.picture, gray):
            for result, *options in (
                    (vncore.halftone(array, "ordered", 30), "--halftone", "ordered,30"),
                    (vncore.resize(array, 50, 140), "--resample", "50x140"),
                    (vncore.resize(array, 200, 17, smooth=False), "--scale", "200x17"),
                    (vncore.rotate(array, 12.34, "#102030"), "--background", "#102030", "--rotate", 12.34),
                    (vncore.rotate(array, 90, keep_size=True), "--rotate", 90, "--keep-size", "--background", "#000000"),
                    (Bitmap.from_array(array).shear(-20).flip().mirror().rgb(),
                     "--shear", -20, "--flip", "--mirror", "--background", "#000000")):
                np.testing.assert_array_equal(seen(result), seen(*tool(array, *options)), str(options))

    def test_combine(self):
        for operation in vncore.COMBINATIONS:
            for name in (operation, "not-" + operation, "not-file-" + operation):
                expected = tool(self.picture, "--combine", f"other.png,{name},30,-5", files=[("other", NOISE)])
                np.testing.assert_array_equal(vncore.combine(self.picture, NOISE, name, (30, -5)), expected[0])


def seen(pixels, colors=None):
    """Indexes, gray and black and white as colours."""
    if colors is not None:
        return colors[pixels]
    if pixels.dtype == np.bool_:
        pixels = pixels * np.uint8(255)
    return pixels if pixels.ndim == 3 else np.repeat(pixels[..., np.newaxis], 3, axis=2)


class AgainstItself(unittest.TestCase):
    def test_depths_keep_what_they_are_given_and_notebooks_show_it(self):
        for count in (2, 3, 16, 17, 256):
            palette = RANDOM.integers(0, 256, (count, 3), np.uint8)
            for width in range(1, 10):
                values = RANDOM.integers(0, count, (5, width), np.uint8)
                bitmap = Bitmap.from_array(values, palette)
                np.testing.assert_array_equal(bitmap.array(), values)
                np.testing.assert_array_equal(bitmap.rgb(), palette[values])
                png = Image.open(io.BytesIO(bitmap._repr_png_())).convert("RGB")
                np.testing.assert_array_equal(np.asarray(png), palette[values])
        with Bitmap.from_array(NOISE) as bitmap:
            for bits in (32, 24, 16):
                png = Image.open(io.BytesIO(bitmap.convert(bits)._repr_png_()))
                np.testing.assert_array_equal(np.asarray(png) & 0xF8, NOISE & 0xF8)

    def test_regions_are_masks(self):
        mask, paper = RANDOM.random(NOISE.shape[:2]) < 0.5, np.zeros_like(NOISE)
        np.testing.assert_array_equal(vncore.combine(paper, NOISE, mask=mask), NOISE * mask[..., np.newaxis])
        with Bitmap.from_array(NOISE) as bitmap:
            for cells in (mask, np.zeros_like(mask)):
                bitmap.region = cells
                np.testing.assert_array_equal(bitmap.region, cells)
            bitmap.region = None
            self.assertIsNone(bitmap.region)

    def test_views_are_no_copies_and_keep_pixels_alive(self):
        bitmap = Bitmap.from_array(NOISE)
        view = bitmap.rows
        view[3, 5] = 1, 2, 3
        np.testing.assert_array_equal(bitmap.rgb()[3, 5], (1, 2, 3))
        for replacing in (bitmap.gray, bitmap.close):
            self.assertRaises(BufferError, replacing)
        copy.copy(bitmap).gray()
        part = view[2:, ::2]
        del bitmap, view, replacing
        gc.collect()
        self.assertEqual(part[1, 0, 0], NOISE[3, 0, 0])
        with self.assertRaises(IndexError), Bitmap.from_array(NOISE) as bitmap:
            rows = bitmap.rows
            rows[100] = 0

    def test_what_progress_raises_comes_out_and_the_bitmap_stands(self):
        for name, arguments in (("reduce", (16,)), ("gray", ()), ("halftone", ()), ("rotate", (5,)),
                                ("resize", (30, 30)), ("resize", (30, 30, False)), ("shear", (-20,))):
            bitmap = Bitmap.from_array(NOISE[..., 0].copy(), NOISE.reshape(-1, 3)[:256])
            bitmap.region = NOISE[..., 1] < 128
            before, region = bitmap.rgb(), bitmap.region

            def stop(percent):
                self.assertRaises(RuntimeError, bitmap.array)
                vncore.gray(NOISE)
                raise KeyError(percent)

            with self.assertRaises(KeyError):
                getattr(bitmap, name)(*arguments, progress=stop)
            if name != "shear":
                np.testing.assert_array_equal(bitmap.rgb(), before)
                np.testing.assert_array_equal(bitmap.region, region)
            bitmap.gray()

    def test_wrong_arguments_are_told_what_was_expected(self):
        reduce = vncore.reduce
        for kind, message, call in (
                (ValueError, "leaves the fourth", lambda: reduce(np.zeros((4, 4, 4), np.uint8))),
                (ValueError, "empty", lambda: reduce(np.zeros((0, 4, 3), np.uint8))),
                (ValueError, "ascontiguousarray", lambda: vncore.gray(NOISE[:, ::2])),
                (TypeError, "expected .* got float64", lambda: vncore.gray(NOISE / 255)),
                (TypeError, "expected .* list of int", lambda: vncore.gray([[1, 2]])),
                (ValueError, "expected .* stucki", lambda: reduce(NOISE, dither="best")),
                (ValueError, "expected .* epaper-7", lambda: reduce(NOISE, palette="paper")),
                (ValueError, "an index of 9", lambda: Bitmap.from_array(np.full((1, 1), 9, np.uint8), [(0, 0, 0)] * 9)),
                (ValueError, r"expected .*\(41, 67\)", lambda: vncore.combine(NOISE, NOISE, mask=np.ones((1, 1), bool))),
                (ValueError, "own values", lambda: vncore.combine(NOISE, NOISE, "not-picture-copy")),
                (TypeError, "expected a Bitmap", lambda: Bitmap(1, 1).combine(NOISE)),
                (ValueError, "expected .*#rrggbb", lambda: Bitmap(1, 1).fill(3)),
                (vncore.OutOfMemory, "Vn_CreateBitmap: ERR_NO_MEMORY", lambda: Bitmap(100000, 100000))):
            with self.assertRaisesRegex(kind, message):
                call()

    def test_other_threads_run_while_the_library_works(self):
        large = np.zeros((3000, 3000, 3), np.uint8)
        for _ in range(5):  # a busy machine may keep this thread waiting as well
            worker = threading.Thread(target=lambda: vncore.rotate(large, 45))
            begin = last = time.perf_counter()
            longest = 0.0
            worker.start()
            while worker.is_alive():
                longest, last = max(longest, time.perf_counter() - last), time.perf_counter()
            if longest < (last - begin) / 3:
                return
        self.fail(f"{longest} s without this thread, of {last - begin}")


class Guide(unittest.TestCase):
    def test_its_lines_run(self):
        guide = Path(__file__).parents[2] / "docs" / "python.md"
        with tempfile.TemporaryDirectory() as folder, contextlib.chdir(folder):
            Image.fromarray(NOISE).save("photo.jpg")
            exec("\n".join(re.findall("```python\n(.*?)```", guide.read_text(), re.S)), {})
            self.assertEqual(os.path.getsize("panel.bin"), 800 * 480)


def load_tests(loader, tests, pattern):
    for module in pkgutil.iter_modules(vncore.__path__, "vncore."):
        tests.addTests(doctest.DocTestSuite(importlib.import_module(module.name)))
    return tests


if __name__ == "__main__":
    unittest.main()
