"""A PNG file in memory, for notebooks."""
import struct
import zlib
from typing import Optional

import numpy as np

from .arrays import Bytes


def encode(rows: Bytes, width: int, bits: int, palette: Optional[Bytes]) -> bytes:
    """A PNG file. `rows` has shape (height, bytes): RGB at 24 `bits`, else packed indexes of 1, 4 or
    8 bits into `palette`, shape (count, 3)."""
    def chunk(kind: bytes, data: bytes) -> bytes:
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    depth, kind = (8, 2) if palette is None else (bits, 3)
    header = struct.pack(">2I5B", width, len(rows), depth, kind, 0, 0, 0)
    filtered = np.zeros((len(rows), rows.shape[1] + 1), np.uint8)  # each row unfiltered: a 0 first
    filtered[:, 1:] = rows
    table = b"" if palette is None else chunk(b"PLTE", palette.tobytes())
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + table +
            chunk(b"IDAT", zlib.compress(filtered.tobytes(), 6)) + chunk(b"IEND", b""))
