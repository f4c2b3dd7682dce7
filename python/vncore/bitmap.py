"""The bitmap, made from arrays and read as arrays."""
from typing import Optional, Type, TypeVar

import numpy as np
from numpy.typing import ArrayLike

from . import arrays, png
from .arrays import Bytes
from .calls import call
from .color_operations import ColorOperations
from .geometry_operations import GeometryOperations
from .region_operations import RegionOperations

Self = TypeVar("Self", bound="Bitmap")


class Bitmap(ColorOperations, GeometryOperations, RegionOperations):
    """A picture in the library's own storage: for several operations in a row, pictures that should
    not be copied, palettes and regions.

    >>> import numpy as np
    >>> slope = np.repeat(np.arange(256, dtype=np.uint8)[np.newaxis], 64, axis=0)
    >>> with Bitmap.from_array(slope) as bitmap:
    ...     bitmap.resize(32, 16).reduce(4, dither="none")
    ...     bitmap.palette.shape, len(np.unique(bitmap.array()))
    <Bitmap 32x16, 4 bits>
    ((16, 3), 4)
    """

    def __init__(self, width: int, height: int, bits: int = 24,
                 palette: Optional[ArrayLike] = None) -> None:
        """A bitmap of pixel values 0, of `bits` 1, 4, 8, 16, 24 or 32. Up to 8 bits it
        has `palette`, shape (count, 3), or the library's fixed one."""
        if bits not in (1, 4, 8, 16, 24, 32):
            raise ValueError(f"expected 1, 4, 8, 16, 24 or 32 bits; got {bits}")
        table = None if palette is None else arrays.palette(palette)
        if table is not None and (bits > 8 or len(table) > 1 << bits):
            raise ValueError(f"expected no more colors than {bits} bits tell apart; got {len(table)}")
        super().__init__(self._created(width, height, bits, table))

    @classmethod
    def from_array(cls: Type[Self], array: ArrayLike, palette: Optional[ArrayLike] = None) -> Self:
        """A copy of `array`: RGB of shape (height, width, 3), 8-bit gray of shape (height, width),
        a boolean mask, true for white, or with `palette` indexes into it."""
        given = np.asarray(array)
        if palette is not None:
            table = arrays.palette(palette)
            given = arrays.indexes(given, len(table))
            bits = 1 if len(table) <= 2 else 4 if len(table) <= 16 else 8
        elif given.dtype == np.bool_ and given.ndim == 2 and given.size:
            table, bits = None, 1
        else:
            given, table = arrays.picture(given), None
            bits = 24 if given.ndim == 3 else 0
        height, width = given.shape[:2]
        bitmap = cls._of(cls._created(width, height, bits, table))
        packed = _packed(given, bits)
        bitmap._visit(lambda rows: _copy(packed, bitmap._shaped(rows)[:, :packed.shape[1]]))
        return bitmap

    @classmethod
    def _of(cls: Type[Self], record: object) -> Self:
        bitmap = cls.__new__(cls)
        ColorOperations.__init__(bitmap, record)
        return bitmap

    def copy(self: Self) -> Self:
        """An independent copy, with palette and region."""
        with self._working() as record:
            result = self._new_record()
            call("Vn_CopyBitmap", result, record)
        return self._of(result)

    __copy__ = copy

    def __deepcopy__(self: Self, memo: object) -> Self:
        return self.copy()

    def crop(self: Self, left: int, top: int, width: int, height: int) -> Self:
        """An independent copy of a rectangle that lies within the bitmap."""
        if not (left >= 0 and top >= 0 and width > 0 and height > 0 and
                left + width <= self.width and top + height <= self.height):
            raise ValueError(f"expected a rectangle within {self.width} by {self.height}; got "
                             f"{width} by {height} at {left}, {top}")
        with self._working() as record:
            result = self._new_record()
            call("Vn_CopyBitmapRect", result, record, left, top, width, height)
        return self._of(result)

    def array(self) -> Bytes:
        """The pixels, copied: RGB of shape (height, width, 3), or up to 8 bits pixel values of shape
        (height, width)."""
        return self.rgb() if self.bits > 8 else self._values()

    def rgb(self) -> Bytes:
        """The colours of the pixels, copied: shape (height, width, 3)."""
        palette = self.palette
        if palette is not None:
            return palette[self._values()]
        if self.bits == 16:
            with self.copy() as deeper:
                return deeper.convert(24).rgb()
        colors = np.empty((self.height, self.width, 3), np.uint8)
        self._visit(lambda rows: _copy(self._shaped(rows), colors))
        return colors

    def _values(self) -> Bytes:
        """The pixel values of a bitmap of up to 8 bits, copied: shape (height, width)."""
        return self._visit(lambda rows: _unpacked(rows, self.width, self.bits))

    def _repr_png_(self) -> Optional[bytes]:
        """What a notebook shows, if the pixels are there."""
        if self.closed:
            return None
        if self.bits > 8:
            return png.encode(self.rgb().reshape(self.height, -1), self.width, 24, None)
        stride = (self.width * self.bits + 7) // 8
        stored = self._visit(lambda rows: np.array(rows[:, :stride]))
        return png.encode(stored, self.width, self.bits, self.palette)

    def __repr__(self) -> str:
        if self.closed:
            return "<Bitmap, closed>"
        return f"<Bitmap {self.width}x{self.height}, {self.bits} bits>"


def _copy(pixels: np.ndarray, to: np.ndarray) -> None:
    """Copies pixels, channel by channel where they have some: all three at once, blue first there and
    red first here, take NumPy five times as long."""
    for channel in np.ndindex(pixels.shape[2:]):
        to[(..., *channel)] = pixels[(..., *channel)]


def _packed(pixels: np.ndarray, bits: int) -> np.ndarray:
    """Pixel values as the rows of a bitmap hold them."""
    if bits == 1:
        return np.packbits(pixels.astype(np.bool_), axis=1)
    if bits != 4:
        return pixels
    even = pixels if pixels.shape[1] % 2 == 0 else np.pad(pixels, ((0, 0), (0, 1)))
    return even[:, ::2] << 4 | even[:, 1::2]


def _unpacked(rows: Bytes, width: int, bits: int) -> Bytes:
    """The pixel values of rows as a bitmap holds them: a copy."""
    if bits == 1:
        return np.unpackbits(rows, axis=1, count=width)
    if bits == 4:
        pairs = np.stack((rows >> 4, rows & 15), axis=2)
        return np.array(pairs.reshape(len(rows), -1)[:, :width], order="C")
    return np.array(rows[:, :width], order="C")
