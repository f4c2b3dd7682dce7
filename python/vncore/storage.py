"""The record of a bitmap, what it owns, and its rows as arrays without a copy."""
import threading
import weakref
from contextlib import contextmanager
from typing import Any, Callable, Iterator, Optional, TypeVar

import numpy as np
from numpy.typing import NDArray

from .arrays import Bytes
from .calls import call
from .colors import colors_of, table_of
from .errors import error_for
from .library import ffi, lib

_Result = TypeVar("_Result")


class _Exported:
    """The rows as bytes, and what every view of them holds on to: while this lives, so do they."""

    def __init__(self, record: Any) -> None:
        if record.Bits == ffi.NULL:
            raise BufferError("the pixels lie in a temporary file: read_row() and write_row()")
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
        """A record with pixels, all 0, top line first; `bits` 0 stands for gray."""
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

    def __exit__(self, *exception: object) -> None:
        self.close()

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
        Pixels in a temporary file have no address: BufferError, and read_row() is the way to them.
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

    @property
    def in_memory(self) -> bool:
        """Whether the pixels have an address; else they lie in a temporary file."""
        return bool(self._record.Flags & lib.VN_FLAG_IN_MEMORY) and self._record.Bits != ffi.NULL

    def _row_bytes(self) -> Bytes:
        """The view that all others are made of: shape (height, bytes from row to row)."""
        with self._working() as record:
            exported = self._exported() if self._exported else None
            if exported is None:
                exported = _Exported(record)
                self._exported = weakref.ref(exported)
            return _from_top(exported)

    def _visit(self, visitor: Callable[[Bytes], _Result]) -> _Result:
        """Hands the rows of a bitmap in memory to `visitor`, which keeps no view of them. Unlike
        `rows` it bars nothing later: a profiler may hold a frame, and with it a view, for a while."""
        with self._working() as record:
            return visitor(_from_top(_Exported(record)))

    def read_row(self, line: int) -> Bytes:
        """The bytes of picture line `line`, 0 at the top: a copy, wherever the pixels lie."""
        row = np.empty(self._record.BytesPerLine, np.uint8)
        self._move_row("Vn_GetBitmapRow", line, ffi.from_buffer(row, require_writable=True))
        return row

    def write_row(self, line: int, row: Bytes) -> None:
        """Writes picture line `line` from the bytes of a whole row, wherever the pixels lie."""
        data = np.ascontiguousarray(row, np.uint8)
        if data.size != self._record.BytesPerLine:
            raise ValueError(f"expected a row of {self._record.BytesPerLine} bytes; got {data.size}")
        self._move_row("Vn_PutBitmapRow", line, ffi.from_buffer(data))

    def _move_row(self, function: str, line: int, data: Any) -> None:
        if not 0 <= line < self.height:
            raise IndexError(f"expected a line from 0 to {self.height - 1}; got {line}")
        with self._working() as record:
            row = record.Height - 1 - line if bottom_first(record) else line
            state = lib.Vn_LockBitmap(record)
            moved = getattr(lib, function)(record, data, row, record.BytesPerLine)
            lib.Vn_UnlockBitmap(record, state)
        if moved != len(data):  # a temporary file takes less at the end of its disk
            raise error_for(moved if moved < 0 else lib.VN_ERR_FILE_WRITE, function)

    @property
    def palette(self) -> Optional[Bytes]:
        """The colours of the pixel values, shape (count, 3), RGB; None above 8 bits."""
        with self._working() as record:
            return colors_of(*palette_table(record)) if record.ColorCount else None


def _from_top(exported: _Exported) -> Bytes:
    """The rows as bytes, top line first."""
    rows = np.asarray(exported)
    return rows[::-1] if bottom_first(exported.record) else rows


def bottom_first(record: Any) -> bool:
    """Whether the first row of the storage is the picture's bottom line."""
    return record.ViewOrigin == lib.VN_VIEW_BOTTOM_FIRST


def palette_table(record: Any) -> tuple[Any, int]:
    """The active palette of a record of up to 8 bits, as the library's table, and its colours, which
    may be fewer than the depth tells apart."""
    fixed = record.Flags & lib.VN_FLAG_FIXED_PALETTE
    palette = record.PaintPalette if fixed else record.Palette
    count = lib.Vn_GetPaletteSize(palette)
    table = ffi.new("Vn_RGBQUAD[]", count)
    call("Vn_GetBitmapColors", record, 0, count, table)
    return table, count
