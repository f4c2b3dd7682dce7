"""Operations that move pixels to other places. The region goes along."""
from typing import Optional, TypeVar

from .calls import Progress, call
from .color_operations import hundredths
from .colors import Color, color_value
from .library import ffi
from .storage import Storage

Self = TypeVar("Self", bound="GeometryOperations")


class GeometryOperations(Storage):
    """What moves a bitmap's pixels. Each operation works in place and returns the bitmap."""

    def resize(self: Self, width: int, height: int, smooth: bool = True,
               progress: Optional[Progress] = None) -> Self:
        """Gives the bitmap another size: by averages and straight lines between pixels, or, with
        `smooth` false, by picking pixels. A smooth change keeps the palette and dithers to it."""
        if not (0 < width < 2**31 and 0 < height < 2**31):
            raise ValueError(f"expected a width and a height from 1 on; got {width} by {height}")
        with self._working(replaces=True) as record:
            if smooth:
                call("Vn_ResampleBitmap", record, width, height, progress=progress)
                return self
            # On a copy: a failure leaves a record whose palette and region may be gone.
            result = self._new_record()
            call("Vn_CopyBitmap", result, record)
            try:
                call("Vn_SizeBitmap", result, width, height, progress=progress)
            except BaseException:
                result.Palette = result.PaintPalette = result.Region = ffi.NULL
                raise
            self._record = result
        return self

    def rotate(self: Self, degrees: float, background: Color = (0, 0, 0), keep_size: bool = False,
               progress: Optional[Progress] = None) -> Self:
        """Turns the bitmap clockwise, by hundredths of a degree at the finest. It grows to hold the
        whole picture, or with `keep_size` loses the corners."""
        with self._working(replaces=True) as record:
            call("Vn_RotateBitmapFine", record, hundredths(degrees), not keep_size,
                 color_value(background), progress=progress)
        return self

    def shear(self: Self, degrees: float, vertical: bool = False, background: Color = (0, 0, 0),
              progress: Optional[Progress] = None) -> Self:
        """Slants the bitmap by up to 45 degrees, its top to the right. The region is dropped."""
        with self._working(replaces=True) as record:
            call("Vn_ShearBitmap", record, hundredths(degrees), not vertical,
                 color_value(background), progress=progress)
        return self

    def flip(self: Self, progress: Optional[Progress] = None) -> Self:
        """Turns the bitmap upside down: the top row goes to the bottom."""
        return self._mirrored("Vn_FlipBitmap", progress)

    def mirror(self: Self, progress: Optional[Progress] = None) -> Self:
        """Mirrors the bitmap left to right."""
        return self._mirrored("Vn_ReverseBitmap", progress)

    def _mirrored(self: Self, function: str, progress: Optional[Progress]) -> Self:
        with self._working() as record:
            call(function, record, progress=progress)
        return self
