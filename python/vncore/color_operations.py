"""Operations on colours: fewer of them, gray, black and white."""
from typing import Optional, Sequence, TypeVar, Union

from . import arrays
from .arrays import Bytes
from .calls import Progress, call
from .colors import table_of
from .library import ffi, lib
from .palettes import PALETTES
from .storage import Storage

Self = TypeVar("Self", bound="ColorOperations")

#: Dithering methods by number, as the tool names them.
DITHERS = ("none", "floyd-steinberg", "stucki", "burkes", "sierra", "stevenson-arce", "jarvis",
           "ordered", "clustered")
#: Threshold matrices of halftones by number.
SCREENS = ("clustered", "ordered")

#: "optimized", "fixed", the name of a palette, or colours of shape (count, 3), RGB.
Palette = Union[str, Bytes, Sequence[Sequence[int]]]


def number_of(name: str, names: Sequence[str], what: str) -> int:
    """The place of `name` among `names`."""
    if name not in names:
        raise ValueError(f"expected {what} from {', '.join(names)}; got {name!r}")
    return names.index(name)


class ColorOperations(Storage):
    """What a bitmap does to its colours. Each operation works in place and returns the bitmap."""

    def reduce(self: Self, colors: Optional[int] = None, palette: Palette = "optimized",
               dither: str = "floyd-steinberg", progress: Optional[Progress] = None) -> Self:
        """Gives the bitmap at most `colors` colours, at 1, 4 or 8 bits, whatever has room for them.

        `palette` is "optimized", computed from the picture; "fixed", the 2, 16 or 256 colours that
        the library has for a depth; a name from `vncore.PALETTES`; or colours. `colors` is 256, or
        all that the palette has, where nothing is said.
        """
        method = number_of(dither, DITHERS, "a dithering")
        table, flags = ffi.NULL, lib.VN_RES_OPTIMIZED_PALETTE
        computed = isinstance(palette, str) and palette in ("optimized", "fixed")
        if not computed:
            chosen = _chosen(palette)
            table, flags = table_of(chosen), lib.VN_RES_USER_PALETTE
            colors = len(chosen) if colors is None else min(colors, len(chosen))
        colors = 256 if colors is None else colors
        if not 2 <= colors <= 256:
            raise ValueError(f"expected colors from 2 to 256; got {colors}")
        bits = 1 if colors <= 2 else 4 if colors <= 16 else 8
        if computed and palette == "fixed":
            if colors != 1 << bits:
                raise ValueError(f"expected 2, 16 or 256 colors of the fixed palette; got {colors}")
            flags, colors = lib.VN_RES_FIXED_PALETTE, 0
        self._color_res(bits, flags | method << 16, table, colors, progress)
        return self

    def convert(self: Self, bits: int, progress: Optional[Progress] = None) -> Self:
        """Gives the bitmap 16, 24 or 32 bits a pixel."""
        if bits not in (16, 24, 32):
            raise ValueError(f"expected 16, 24 or 32 bits (reduce() makes fewer); got {bits}")
        self._color_res(bits, lib.VN_RES_ORDER_BGR, ffi.NULL, 0, progress)
        return self

    def gray(self: Self, progress: Optional[Progress] = None) -> Self:
        """Turns the bitmap to 8-bit gray, (2 red + 5 green + blue + 4) / 8."""
        with self._working(replaces=True) as record:
            call("Vn_GrayScaleBitmap", record, progress=progress)
        return self

    def halftone(self: Self, screen: str = "clustered", angle: float = 0,
                 progress: Optional[Progress] = None) -> Self:
        """Turns the bitmap to black and white through a `screen`, "clustered" for printers or
        "ordered", turned clockwise by `angle` degrees."""
        kind = number_of(screen, SCREENS, "a screen")
        with self._working(replaces=True) as record:
            call("Vn_HalfToneBitmapExt", record, kind, hundredths(angle), progress=progress)
        return self

    def _color_res(self, bits: int, flags: int, table: object, colors: int,
                   progress: Optional[Progress]) -> None:
        with self._working(replaces=True) as record:
            # Into another record: a stop would leave half a picture in this one.
            result = self._new_record()
            call("Vn_ColorResBitmap", record, result, bits, flags, table, colors, ffi.NULL, 0,
                 progress=progress)
            self._record = result


def hundredths(degrees: float) -> int:
    """An angle as the library counts it."""
    value = round(degrees * 100)
    if abs(value) >= 2**31:
        raise ValueError(f"expected an angle in degrees; got {degrees}")
    return value


def _chosen(palette: Palette) -> Bytes:
    if isinstance(palette, str):
        if palette not in PALETTES:
            names = ", ".join(("optimized", "fixed", *PALETTES))
            raise ValueError(f"expected a palette from {names}; got {palette!r}")
        return PALETTES[palette]
    return arrays.palette(palette)
