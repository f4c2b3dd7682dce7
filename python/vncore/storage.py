"""The record of a bitmap, what it owns, and its rows as arrays without a copy."""
import threading
import weakref
from contextlib import contextmanager
from typing import Any, Callable, Iterator, Optional, Type, TypeVar

import numpy as np
from numpy.typing import NDArray

from .arrays import Bytes
from .calls import call
from .colors import colors_of, table_of
from .library import ffi, lib

_Result = TypeVar("_Result")


class _Exported:
    """The rows as bytes, and what every view of them holds on to: while this lives, so do they."""

    def __init__(self, record: Any) -> None:
        self.record = record
        self.__array_interface__ = {
            "version": 3, "typestr": "|u1", "shape": (record.Height, record.BytesPerLine),
            "data": (int(ffi.cast("uintptr_t", record.Bits)), False)}


class Storage:
    """A bitmap record with pixels. Freed by close(), or with the object.

    The library lets one thread at a time use a record: a second one, and a progress callable that
    reaches for the bitmap it hears of, get a RuntimeError.
    """

    def __init__(self, record: Any) -> None:
        self._record = record
        self._busy = threading.Lock()
        self._exported: "weakref.ReferenceType[_Exported] | None" = None

    @staticmethod
    def _new_record() -> Any:
        """A record that frees what it owns when nobody refers to it any more."""
        return ffi.gc(ffi.new("Vn_BitmapHandle*"), lib.Vn_FreeBitmap, 1 << 16)

    @classmethod
    def _created(cls, width: int, height: int, bits: int, palette: Optional[Bytes]) -> Any:
        """A record with pixels, all 0; `bits` 0 stands for gray. The top line lies first, which no
        operation changes."""
        record = cls._new_record()
        if not (0 < width < 2**31 and 0 < height < 2**31):
            raise ValueError(f"expected a width and a height from 1 on; got {width} by {height}")
        colors = ffi.NULL
        if palette is not None:
            full = np.zeros((1 << bits, 3), np.uint8)
            full[:len(palette)] = palette
            colors = table_of(full)
        call("Vn_CreateBitmap", record, lib.VN_STORAGE_AUTO, width, height, bits, lib.VN_ORDER_BGR,
             colors, lib.VN_VIEW_TOP_FIRST)
        return record

    @contextmanager
    def _working(self, replaces: bool = False) -> Iterator[Any]:
        """The record for one call, which may give the bitmap other pixels."""
        if not self._busy.acquire(blocking=False):
            raise RuntimeError("the bitmap is in use by another call")
        try:
            if self.closed:
                raise ValueError("the bitmap is closed")
            if replaces and self._exported and self._exported():
                raise BufferError("the bitmap would get other pixels while a view of its rows is "
                                  "alive: delete the view, or work on a copy()")
            yield self._record
        finally:
            self._busy.release()

    def close(self) -> None:
        """Frees the pixels. A second time does nothing. Raises BufferError while a view is alive."""
        if not self.closed:
            with self._working(replaces=True) as record:
                lib.Vn_FreeBitmap(record)

    def __enter__(self) -> Any:
        return self

    def __exit__(self, kind: Optional[Type[BaseException]], *exception: object) -> None:
        try:
            self.close()
        except BufferError:  # of a view that an exception under way keeps alive
            if kind is None:
                raise

    @property
    def closed(self) -> bool:
        """Whether the pixels were freed."""
        return not self._record.Flags & lib.VN_FLAG_ALLOCATED

    @property
    def width(self) -> int:
        """Pixels in a row."""
        return self._record.Width

    @property
    def height(self) -> int:
        """Rows."""
        return self._record.Height

    @property
    def bits(self) -> int:
        """Bits of a pixel: 1, 4, 8, 16, 24 or 32."""
        return self._record.BitsPerPixel

    @property
    def rows(self) -> NDArray[Any]:
        """The pixels where they lie, top line first, to be read and written without a copy.

        Shape (height, width, 3), RGB, of uint8 at 24 and 32 bits, (height, width) of uint16 at 16 and
        of uint8 at 8, and (height, bytes) of packed pixels, the leftmost in the high bits, at 1 and
        4. The storage has blue first, so that RGB steps backwards through the channels. As long as
        such an array is alive, operations that would give the bitmap other pixels raise BufferError.
        """
        return self._shaped(self._row_bytes())

    def _shaped(self, rows: Bytes) -> NDArray[Any]:
        """Rows of bytes as `rows` shows them."""
        bits, width = self.bits, self.width
        if bits < 8:
            return rows
        if bits == 8:
            return rows[:, :width]
        if bits == 16:
            return rows.view(np.uint16)[:, :width]
        channels = rows[:, :width * bits // 8].reshape(self.height, width, bits // 8)[:, :, :3]
        return channels[:, :, ::-1]

    def _row_bytes(self) -> Bytes:
        """The view that all others are made of: shape (height, bytes from row to row)."""
        with self._working() as record:
            exported = self._exported() if self._exported else None
            if exported is None:
                exported = _Exported(record)
                self._exported = weakref.ref(exported)
            return np.asarray(exported)

    def _visit(self, visitor: Callable[[Bytes], _Result]) -> _Result:
        """Hands the rows to `visitor`, which keeps no view of them. Unlike `rows` it bars nothing
        later: a profiler may hold a frame, and with it a view, for a while."""
        with self._working() as record:
            return visitor(np.asarray(_Exported(record)))

    @property
    def palette(self) -> Optional[Bytes]:
        """The colours of the pixel values, shape (count, 3), RGB; None above 8 bits."""
        with self._working() as record:
            return colors_of(*palette_table(record)) if record.ColorCount else None


def palette_table(record: Any) -> tuple[Any, int]:
    """The active palette of a record of up to 8 bits, as the library's table, and its colours, which
    may be fewer than the depth tells apart."""
    fixed = record.Flags & lib.VN_FLAG_FIXED_PALETTE
    palette = record.PaintPalette if fixed else record.Palette
    count = lib.Vn_GetPaletteSize(palette)
    table = ffi.new("Vn_RGBQUAD[]", count)
    call("Vn_GetBitmapColors", record, 0, count, table)
    return table, count
