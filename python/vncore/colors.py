"""Colours and colour tables, between Python's forms and the library's."""
from typing import Any, Sequence, Union

import numpy as np

from .arrays import Bytes
from .library import ffi

#: (red, green, blue) from 0 to 255, or "#rrggbb".
Color = Union[str, Sequence[int]]


def color_value(color: Color) -> int:
    """The colour as one number, red in the low byte.

    >>> hex(color_value("#ff8000")), hex(color_value((255, 128, 0)))
    ('0x80ff', '0x80ff')
    """
    try:
        if isinstance(color, str):
            if len(color) != 7 or color[0] != "#":
                raise ValueError
            red, green, blue = bytes.fromhex(color[1:])
        else:
            red, green, blue = bytes(list(color))
    except (TypeError, ValueError):
        raise ValueError(f"expected (red, green, blue) from 0 to 255 or '#rrggbb'; got {color!r}") \
            from None
    return red | green << 8 | blue << 16


def table_of(colors: Bytes) -> Any:
    """Colours of shape (count, 3), RGB, as the library's table."""
    entries = np.zeros((len(colors), 4), np.uint8)
    entries[:, :3] = colors[:, ::-1]
    table = ffi.new("Vn_RGBQUAD[]", len(colors))
    ffi.memmove(table, entries, entries.nbytes)
    return table


def colors_of(table: Any, count: int) -> Bytes:
    """The first `count` entries of the library's table, shape (count, 3), RGB."""
    entries = np.frombuffer(ffi.buffer(table, 4 * count), np.uint8).reshape(count, 4)
    return np.ascontiguousarray(entries[:, 2::-1])
