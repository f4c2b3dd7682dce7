"""Arrays that come from callers, told apart from those that are no pictures."""
from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

Bytes = NDArray[np.uint8]
Mask = NDArray[np.bool_]

_PICTURE = "a C-contiguous uint8 array of shape (height, width, 3), RGB, or (height, width), gray"


def picture(array: ArrayLike, expected: str = _PICTURE) -> Bytes:
    """`array` itself when it is a picture. Raises TypeError or ValueError that say what is wanted.

    >>> picture(np.zeros((4, 5, 4), np.uint8))
    Traceback (most recent call last):
    ValueError: expected a C-contiguous uint8 array of shape (height, width, 3), RGB, or (height, \
width), gray; got shape (4, 5, 4): array[..., :3] leaves the fourth channel out
    """
    pixels = np.asarray(array)
    if pixels.dtype != np.uint8:
        raise TypeError(f"expected {expected}; got {_kind(array, pixels)}")
    if pixels.ndim not in (2, 3) or (pixels.ndim == 3 and pixels.shape[2] != 3):
        advice = ""
        if pixels.ndim == 3 and pixels.shape[2] == 4:
            advice = ": array[..., :3] leaves the fourth channel out"
        raise ValueError(f"expected {expected}; got shape {pixels.shape}{advice}")
    return _laid_out(pixels, expected)


def indexes(array: ArrayLike, colors: int) -> Bytes:
    """`array` itself when it holds an index below `colors` for each pixel."""
    expected = f"a C-contiguous uint8 array of shape (height, width) with indexes below {colors}"
    pixels = picture(array, expected)
    if pixels.ndim != 2:
        raise ValueError(f"expected {expected}; got shape {pixels.shape}")
    if int(pixels.max()) >= colors:
        raise ValueError(f"expected {expected}; got an index of {int(pixels.max())}")
    return pixels


def mask(array: ArrayLike, height: int, width: int) -> Mask:
    """`array` itself when it is a mask over a picture of that size."""
    expected = f"a boolean array of shape ({height}, {width})"
    cells = np.asarray(array)
    if cells.dtype != np.bool_:
        raise TypeError(f"expected {expected}; got {_kind(array, cells)}")
    if cells.shape != (height, width):
        raise ValueError(f"expected {expected}; got shape {cells.shape}")
    return cells


def palette(array: ArrayLike) -> Bytes:
    """A table of colours, shape (count, 3), RGB, 2 to 256 of them, as bytes."""
    expected = "a palette of shape (count, 3), RGB from 0 to 255, with 2 to 256 colours"
    table = np.asarray(array)
    if table.dtype.kind not in "iu":
        raise TypeError(f"expected {expected}; got {_kind(array, table)}")
    if table.ndim != 2 or table.shape[1] != 3 or not 2 <= len(table) <= 256:
        raise ValueError(f"expected {expected}; got shape {table.shape}")
    if table.min() < 0 or table.max() > 255:
        raise ValueError(f"expected {expected}; got values from {table.min()} to {table.max()}")
    return np.ascontiguousarray(table, np.uint8)


def _laid_out(pixels: NDArray[Any], expected: str) -> NDArray[Any]:
    if pixels.size == 0:
        raise ValueError(f"expected {expected}; got an empty one of shape {pixels.shape}")
    if not pixels.flags.c_contiguous:
        raise ValueError(f"expected {expected}; got one that is not contiguous: "
                         "numpy.ascontiguousarray(array) copies it")
    return pixels


def _kind(given: Any, array: NDArray[Any]) -> str:
    return array.dtype.name if isinstance(given, np.ndarray) else \
        f"{type(given).__name__} of {array.dtype.name}"
