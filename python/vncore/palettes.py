"""The palettes that have names, those that the tool's `--palette` knows."""
from pathlib import Path
from typing import Dict

import numpy as np

from .arrays import Bytes


def _read(text: str) -> Dict[str, Bytes]:
    """Lines of a name and its colours, six hexadecimal digits each."""
    palettes = {}
    for line in text.splitlines():
        name, *colors = line.split()
        table = np.frombuffer(bytes.fromhex("".join(colors)), np.uint8).reshape(-1, 3)
        palettes[name] = table
    return palettes


#: Colours by name, each of shape (count, 3), RGB, read-only.
PALETTES: Dict[str, Bytes] = _read(
    Path(__file__).with_name("palettes.txt").read_text(encoding="ascii"))
