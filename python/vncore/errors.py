"""Failures of the library as exceptions."""
from .library import lib

_NAMES = {getattr(lib, name): name[len("VN_"):] for name in dir(lib) if name.startswith("VN_ERR_")}


class Error(Exception):
    """A call that the library refused or could not finish.

    >>> raise Error(-13, "Vn_SizeBitmap")
    Traceback (most recent call last):
    vncore.errors.Error: Vn_SizeBitmap: ERR_INVALID_PARAMETER
    """

    #: The status, negative.
    code: int
    #: The status by name, as in "ERR_NO_MEMORY".
    name: str

    def __init__(self, code: int, function: str) -> None:
        self.code = code
        self.name = _NAMES.get(code, f"status {code}")
        super().__init__(f"{function}: {self.name}")


class OutOfMemory(Error, MemoryError):
    """ERR_NO_MEMORY, which is a MemoryError as well."""


def error_for(code: int, function: str) -> Error:
    """The exception for a status other than OK."""
    return (OutOfMemory if code == lib.VN_ERR_NO_MEMORY else Error)(code, function)
