"""The shared library, opened by the declarations that lie beside this module.

cffi calls it in ABI mode, which needs no compiler and lets go of the interpreter's lock for the
length of every call: other Python threads run while the library works.
"""
from pathlib import Path

from cffi import FFI

#: The major version, and so the name, of the library that this package was made for.
MAJOR = 6
_NAME = f"libvncore.so.{MAJOR}"


def _place() -> str:
    """The library to open: the one in this package, or the system's."""
    bundled = Path(__file__).with_name(_NAME)
    return str(bundled) if bundled.exists() else _NAME


ffi = FFI()
ffi.cdef(Path(__file__).with_name("declarations.h").read_text(encoding="ascii"))
try:
    lib = ffi.dlopen(_place())
except OSError as error:
    raise ImportError(f"{_NAME} is neither in this package nor on the system: {error}") from error


def version() -> str:
    """The library's version, as in "6.2"."""
    record = ffi.new("Vn_VersionRecord*")
    lib.Vn_VersionInfo(record)
    return f"{record.MajorVersion}.{record.MinorVersion}"


if not version().startswith(f"{MAJOR}."):
    raise ImportError(f"{_place()} has version {version()}, and this package is for {MAJOR}")
