"""Writes the library's public interface, as the package loads it, to standard output.

    declare.py HEADERS... >vncore/declarations.h

HEADERS are the folders that <vncore/vncore.h> is found in. Whoever builds the package runs this, so
that it knows of the library what the headers say. The compiler is $CC, or cc.
"""
import os
import re
import subprocess
import sys


def declarations(folders: list[str]) -> str:
    """What cffi is to read: the library's own headers, preprocessed, without attributes."""
    compiler = [os.environ.get("CC", "cc"), "-E", "-x", "c", "-"]
    source = "#define VNCORE_PREFIXED\n#include <vncore/vncore.h>\n"
    output = subprocess.run(compiler + [f"-I{folder}" for folder in folders], input=source,
                            stdout=subprocess.PIPE, text=True, check=True).stdout
    lines, own = [], False
    for line in output.splitlines():
        marker = re.match(r'# \d+ "(.*?)"', line)
        if marker:
            own = "/vncore/" in marker.group(1)
        elif own and line.strip():
            lines.append(re.sub(r'__attribute__\s*\(\(visibility\("default"\)\)\)\s*', "", line))
    return "\n".join(lines)


if __name__ == "__main__":
    print(declarations(sys.argv[1:]))
