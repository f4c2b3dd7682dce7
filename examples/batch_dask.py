#!/usr/bin/env python3
"""Converts a folder of pictures on the workers of a dask cluster.

    batch_dask.py IN OUT [--scheduler ADDRESS] [--workers N]
                  [--size WxH] [--colors N] [--palette NAME] [--dither METHOD]

Without a scheduler N processes of this machine do the work. Workers on other machines see IN and OUT
under the same names. Each picture of IN becomes a PNG file of the same name in OUT; those that are
there already, and are not older than their picture, are left alone, so that a run that was broken off
is gone on with by starting it again.

A worker may be lost at any time: its pictures are given to others, those included that it had done
already, which are found and left. Whoever converts a picture writes under a name of its own and renames
when the file is whole, so that nobody ever sees half a file. One run at a time works on a folder.
"""
import argparse
import os
import sys
import uuid
from dataclasses import dataclass
from pathlib import Path
from typing import Iterator, Optional, Tuple

import numpy as np
from distributed import Client, LocalCluster, as_completed
from PIL import Image, ImageOps

import vncore

PICTURES = {".png", ".jpg", ".jpeg", ".tif", ".tiff", ".bmp"}


@dataclass(frozen=True)
class Conversion:
    """What becomes of each picture."""
    size: Optional[Tuple[int, int]] = None
    colors: int = 16
    palette: str = "optimized"
    dither: str = "floyd-steinberg"

    def apply(self, pixels: np.ndarray) -> vncore.Reduced:
        """A picture of shape (height, width, 3) after its conversion."""
        if self.size:
            pixels = vncore.resize(pixels, *self.size)
        return vncore.reduce(pixels, self.colors, self.palette, self.dither)


def is_done(source: Path, target: Path) -> bool:
    """Whether the result is there and not older than its picture."""
    return target.exists() and target.stat().st_mtime >= source.stat().st_mtime


def convert(source: Path, target: Path, conversion: Conversion) -> Path:
    """Converts one picture. The file appears under its name at once and whole, or not at all."""
    if is_done(source, target):
        return target
    with Image.open(source) as image:
        pixels = np.asarray(ImageOps.exif_transpose(image).convert("RGB"))
    part = target.with_name(f".{target.name}.{uuid.uuid4().hex}.part")
    try:
        part.write_bytes(conversion.apply(pixels)._repr_png_())
        os.replace(part, target)
    finally:
        part.unlink(missing_ok=True)
    return target


def tasks(source: Path, target: Path) -> Iterator[Tuple[Path, Path]]:
    """The pictures that are still to be converted, and what they become."""
    seen = {}
    for picture in sorted(source.iterdir()):
        if picture.suffix.lower() not in PICTURES:
            continue
        result = target / (picture.stem + ".png")
        if seen.setdefault(result, picture) != picture:
            raise ValueError(f"{seen[result].name} and {picture.name} would both become {result.name}")
        if not is_done(picture, result):
            yield picture, result


def run(client: Client, source: Path, target: Path, conversion: Conversion) -> Tuple[int, int]:
    """Converts what is to be converted; the numbers of pictures done and failed."""
    target.mkdir(parents=True, exist_ok=True)
    # Retries are for file servers that stumble. A picture that takes four workers with it is given up.
    futures = {client.submit(convert, picture, result, conversion, pure=False, retries=2): picture
               for picture, result in tasks(source, target)}
    done = failed = 0
    for future in as_completed(futures):
        if future.status == "finished":
            done += 1
        else:
            failed += 1
            print(f"{futures[future]}: {future.exception()!r}", file=sys.stderr)
    for part in target.glob(".*.part"):
        part.unlink()  # of workers that were lost
    return done, failed


def size(text: str) -> Tuple[int, int]:
    """Width and height, as in 800x480."""
    width, height = map(int, text.split("x"))
    return width, height


def arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("source", type=Path, metavar="IN")
    parser.add_argument("target", type=Path, metavar="OUT")
    parser.add_argument("--scheduler", help="where a cluster's scheduler listens")
    parser.add_argument("--workers", type=int, default=os.cpu_count(), help="processes here, without one")
    parser.add_argument("--size", type=size, metavar="WxH")
    parser.add_argument("--colors", type=int, default=16)
    parser.add_argument("--palette", default="optimized", choices=["optimized", "fixed", *vncore.PALETTES])
    parser.add_argument("--dither", default="floyd-steinberg", choices=vncore.DITHERS)
    return parser.parse_args()


def main() -> int:
    given = arguments()
    conversion = Conversion(given.size, given.colors, given.palette, given.dither)
    # One thread a process: a loss costs one picture.
    cluster = given.scheduler or LocalCluster(n_workers=given.workers, threads_per_worker=1,
                                              dashboard_address=None)
    with Client(cluster) as client:
        done, failed = run(client, given.source.resolve(), given.target.resolve(), conversion)
    print(f"{done} converted, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
