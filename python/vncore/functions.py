"""The operations as functions of arrays. Pictures are C-contiguous uint8 arrays, RGB of shape
(height, width, 3) or gray of shape (height, width)."""
from typing import NamedTuple, Optional, Tuple

import numpy as np
from numpy.typing import ArrayLike

from . import arrays
from .arrays import Bytes, Mask
from .bitmap import Bitmap
from .calls import Progress
from .color_operations import Palette
from .colors import Color


class Reduced(NamedTuple):
    """A picture of few colours. A notebook shows it."""

    #: Shape (height, width): an index into the palette for each pixel.
    indices: Bytes
    #: Shape (count, 3), RGB.
    palette: Bytes

    def rgb(self) -> Bytes:
        """The picture in full colour, shape (height, width, 3)."""
        return self.palette[self.indices]

    def _repr_png_(self) -> Optional[bytes]:
        with Bitmap.from_array(self.indices, self.palette) as bitmap:
            return bitmap._repr_png_()


def reduce(array: ArrayLike, colors: Optional[int] = None, palette: Palette = "optimized",
           dither: str = "floyd-steinberg", progress: Optional[Progress] = None) -> Reduced:
    """Brings a picture down to at most `colors` colours (256, or all of the palette).

    `palette`: "optimized", computed from the picture; "fixed"; a name from `vncore.PALETTES`; or
    colours of shape (count, 3). `dither`: a name from `vncore.DITHERS`.

    >>> gray = np.full((2, 8), 128, np.uint8)
    >>> reduce(gray, palette="black-white", dither="ordered").indices
    array([[1, 0, 1, 0, 1, 0, 1, 0],
           [0, 1, 0, 1, 0, 1, 0, 1]], dtype=uint8)
    >>> reduce(gray, colors=16, dither="stucki").palette.shape
    (16, 3)
    """
    with Bitmap.from_array(arrays.picture(array)) as bitmap:
        bitmap.reduce(colors, palette, dither, progress)
        table = bitmap.palette
        assert table is not None
        return Reduced(bitmap.array(), table[:colors])


def gray(array: ArrayLike, progress: Optional[Progress] = None) -> Bytes:
    """The gray levels of a picture, (2 red + 5 green + blue + 4) / 8, shape (height, width).

    >>> gray(np.array([[[255, 0, 0], [0, 255, 0], [0, 0, 255]]], np.uint8))
    array([[ 64, 159,  32]], dtype=uint8)
    """
    with Bitmap.from_array(arrays.picture(array)) as bitmap:
        return bitmap.gray(progress).array()


def halftone(array: ArrayLike, screen: str = "clustered", angle: float = 0,
             progress: Optional[Progress] = None) -> Mask:
    """A picture in black and white, as a printer makes it: shape (height, width), true for white.
    `screen`: "clustered" or "ordered", turned clockwise by `angle` degrees.

    >>> halftone(np.full((8, 8), 128, np.uint8)).mean()
    0.5
    """
    with Bitmap.from_array(arrays.picture(array)) as bitmap:
        return bitmap.halftone(screen, angle, progress).array().view(np.bool_)


def resize(array: ArrayLike, width: int, height: int, smooth: bool = True,
           progress: Optional[Progress] = None) -> Bytes:
    """A picture at another size, by averages and straight lines between pixels, or with `smooth`
    false by picking pixels.

    >>> resize(np.array([[0, 100], [100, 200]], np.uint8), 1, 1)
    array([[100]], dtype=uint8)
    """
    with Bitmap.from_array(arrays.picture(array)) as bitmap:
        return bitmap.resize(width, height, smooth, progress).array()


def rotate(array: ArrayLike, degrees: float, background: Color = (0, 0, 0),
           keep_size: bool = False, progress: Optional[Progress] = None) -> Bytes:
    """A picture turned clockwise, by hundredths of a degree at the finest. It grows to hold the whole
    of it, on `background`, or with `keep_size` loses the corners.

    >>> rotate(np.array([[1, 2], [3, 4]], np.uint8), 90)
    array([[3, 1],
           [4, 2]], dtype=uint8)
    """
    with Bitmap.from_array(arrays.picture(array)) as bitmap:
        return bitmap.rotate(degrees, background, keep_size, progress).array()


def combine(array: ArrayLike, other: ArrayLike, operation: str = "copy",
            at: Tuple[int, int] = (0, 0), mask: Optional[ArrayLike] = None,
            progress: Optional[Progress] = None) -> Bytes:
    """A picture with `other` combined into it, its top left at column and line `at`, where `mask`,
    shape (height, width), is true. `operation`: a name from `vncore.COMBINATIONS`, with the prefixes
    of `Bitmap.combine()`.

    >>> combine(np.full((1, 3), 200, np.uint8), np.full((1, 2), 100, np.uint8), "add", at=(1, 0))
    array([[200, 255, 255]], dtype=uint8)
    """
    with Bitmap.from_array(arrays.picture(array)) as bitmap, \
            Bitmap.from_array(arrays.picture(other)) as source:
        bitmap.region = mask
        return bitmap.combine(source, operation, at, progress).array()
