"""Calls into the library: statuses become exceptions, and progress is heard by a callable."""
from contextlib import contextmanager
from typing import Any, Callable, Iterator, Optional

from .errors import error_for
from .library import ffi, lib

#: Hears the percentage done, 0 to 100, on the calling thread. What it raises stops the operation and
#: comes out of the call. It may work on other bitmaps, of which it hears nothing.
Progress = Callable[[int], Any]

_STOP = 2  # any value but OK


def call(name: str, *arguments: Any, progress: Optional[Progress] = None) -> None:
    """Calls a function that returns a status. Raises Error, or what `progress` raised."""
    function = getattr(lib, name)
    status = function(*arguments) if progress is None else _heard(function, arguments, progress)
    if status != lib.VN_OK:
        raise error_for(status, name)


def _heard(function: Any, arguments: tuple[Any, ...], progress: Progress) -> int:
    raised: list[BaseException] = []

    @ffi.callback("Vn_StatusCallBack")
    def hear(percent: int) -> int:
        if not raised:
            try:
                with _told_to(ffi.NULL):
                    progress(percent)
                return lib.VN_OK
            except BaseException as error:  # Control-C as well: nothing may pass through C
                raised.append(error)
        # A slant to the left forgets the first stop, and asks above 100 until it hears OK.
        return lib.VN_OK if percent > 100 else _STOP

    with _told_to(hear):
        status = function(*arguments)
    if raised:
        raise raised.pop()
    return status


@contextmanager
def _told_to(callback: Any) -> Iterator[None]:
    """Who hears of this thread's operations meanwhile."""
    before = lib.Vn_SetStatusCallBack(callback)
    try:
        yield
    finally:
        lib.Vn_SetStatusCallBack(before)
