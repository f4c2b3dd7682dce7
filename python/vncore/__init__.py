"""VNCORE32 for NumPy: fewer colours with dithering, halftones, gray, scaling, turns, combinations.

Functions take pictures as arrays and return arrays; `Bitmap` keeps a picture in the library for
several operations in a row. Failures are exceptions: `Error`, with the code and its name, for what
the library refuses, and TypeError or ValueError for arguments that are none.
"""
from .bitmap import Bitmap
from .calls import Progress
from .color_operations import DITHERS, SCREENS
from .errors import Error, OutOfMemory
from .functions import Reduced, combine, gray, halftone, reduce, resize, rotate
from .library import version
from .palettes import PALETTES
from .region_operations import COMBINATIONS

__all__ = ["Bitmap", "COMBINATIONS", "DITHERS", "Error", "OutOfMemory", "PALETTES", "Progress",
           "Reduced", "SCREENS", "combine", "gray", "halftone", "reduce", "resize", "rotate",
           "version"]
