"""The region of a bitmap as a boolean mask, and what is written through it."""
from contextlib import ExitStack
from typing import Any, Optional, Tuple, TypeVar

import numpy as np
from numpy.typing import ArrayLike

from . import arrays
from .arrays import Mask
from .calls import Progress, call
from .colors import Color, color_value
from .library import ffi, lib
from .storage import Storage, palette_table

Self = TypeVar("Self", bound="RegionOperations")

#: Combinations of a picture's value d and another's s, as the tool names them.
COMBINATIONS = {"and": lib.VN_COMBINE_AND, "or": lib.VN_COMBINE_OR, "xor": lib.VN_COMBINE_XOR,
                "copy": lib.VN_COMBINE_AND | lib.VN_COMBINE_DST_1, "add": lib.VN_COMBINE_ADD,
                "subtract": lib.VN_COMBINE_SUB_SRC, "subtract-from": lib.VN_COMBINE_SUB_DST,
                "multiply": lib.VN_COMBINE_MUL, "divide": lib.VN_COMBINE_DIV_SRC,
                "divide-into": lib.VN_COMBINE_DIV_DST, "average": lib.VN_COMBINE_AVERAGE,
                "min": lib.VN_COMBINE_MIN, "max": lib.VN_COMBINE_MAX}
_WHITE = 0xFFFFFF


class RegionOperations(Storage):
    """The pixels that a bitmap's writers keep to. Operations work in place and return the bitmap."""

    @property
    def region(self) -> Optional[Mask]:
        """The region: shape (height, width), true where pixels are written; None for all of them.

        >>> from vncore import Bitmap
        >>> with Bitmap(4, 3) as bitmap:
        ...     bitmap.region = np.eye(3, 4, dtype=bool)
        ...     bitmap.fill("#ffffff").rgb()[:, :, 0]
        array([[255,   0,   0,   0],
               [  0, 255,   0,   0],
               [  0,   0, 255,   0]], dtype=uint8)
        """
        with self._working() as record:
            if record.Region == ffi.NULL:
                return None
            with _BorrowedMask(record.Width, record.Height) as cells:
                cells._record.Region = record.Region
                try:
                    call("Vn_FillBitmap", cells._record, _WHITE)
                finally:
                    cells._record.Region = ffi.NULL
                return cells._visit(
                    lambda rows: np.unpackbits(rows, axis=1, count=record.Width).view(np.bool_))

    @region.setter
    def region(self, cells: Optional[ArrayLike]) -> None:
        with self._working() as record:
            if cells is None:
                lib.Vn_FreeBitmapRgn(record)
                return
            mask = arrays.mask(cells, record.Height, record.Width)
            with _BorrowedMask(record.Width, record.Height) as picture:
                other = picture._record
                packed = np.packbits(mask, axis=1)
                picture._visit(lambda rows: np.copyto(rows[:, :packed.shape[1]], packed))
                call("Vn_SetBitmapRgnColor", other, _WHITE, lib.VN_REGION_COMBINE_REPLACE)
                # Of two records of one size either may own the region.
                lib.Vn_FreeBitmapRgn(record)
                record.Region, other.Region = other.Region, ffi.NULL

    def fill(self: Self, color: Color, progress: Optional[Progress] = None) -> Self:
        """Fills the region, or the whole bitmap, with a colour."""
        with self._working() as record:
            call("Vn_FillBitmap", record, color_value(color), progress=progress)
        return self

    def combine(self: Self, other: "RegionOperations", operation: str = "copy",
                at: Tuple[int, int] = (0, 0), progress: Optional[Progress] = None) -> Self:
        """Combines `other` into the region, its top left at column and line `at`.

        `operation` is a name from `COMBINATIONS`; before it "not-" complements the result,
        "not-file-" the other's values and "not-picture-" the bitmap's own. A bitmap of another depth
        is brought to this one's depth and palette first; `other` itself stays as it is.
        """
        flags = _combination(operation)
        if not isinstance(other, Storage):
            raise TypeError(f"expected a Bitmap; got {type(other).__name__}")
        with ExitStack() as held:
            target = held.enter_context(self._working())
            source = target if other is self else held.enter_context(other._working())
            source = _at_depth_of(target, source)
            x, y = at
            call("Vn_CombineBitmap", target, x, y, source.Width, source.Height, source, 0, 0, flags,
                 progress=progress)
        return self


class _BorrowedMask(Storage):
    """A picture of 1 bit, black, in which a region is drawn."""

    def __init__(self, width: int, height: int) -> None:
        super().__init__(self._created(width, height, 1, None))


_PREFIXES = {"not-file-": lib.VN_COMBINE_SRC_NOT, "not-picture-": lib.VN_COMBINE_DST_NOT,
             "not-": lib.VN_COMBINE_RES_NOT}  # the last is where the others begin


def _combination(name: str) -> int:
    flags, rest = 0, name
    while rest not in COMBINATIONS:
        prefix = next((p for p in _PREFIXES if rest.startswith(p) and not flags & _PREFIXES[p]), None)
        if prefix is None:
            raise ValueError(f"expected an operation from {', '.join(COMBINATIONS)}; got {name!r}")
        flags, rest = flags | _PREFIXES[prefix], rest[len(prefix):]
    if rest == "copy" and flags & lib.VN_COMBINE_DST_NOT:
        raise ValueError(f"expected an operation with the bitmap's own values; got {name!r}")
    return flags | COMBINATIONS[rest]


def _at_depth_of(target: Any, source: Any) -> Any:
    """`source`, or a copy of it at the depth of `target` and in its palette."""
    bits = target.BitsPerPixel
    if source.BitsPerPixel == bits:
        return source
    if bits > 8:
        flags, colors, count = lib.VN_RES_ORDER_BGR, ffi.NULL, 0
    else:
        flags = lib.VN_RES_USER_PALETTE | lib.VN_DITHER_FLOYD_STEINBERG << 16
        colors, count = palette_table(target)
    result = Storage._new_record()
    call("Vn_ColorResBitmap", source, result, bits, flags, colors, count, ffi.NULL, 0)
    return result
