#!/usr/bin/env bash
# Test code against all other code: lines of sources, scripts and CMake files without blanks and
# comments, those under tests/ and fuzz/ divided by those of everything else.
set -eu
cd "$(dirname "$0")/.."
git ls-files '*.cpp' '*.h' '*.c' '*.sh' '*.py' '*.cmake' '*CMakeLists.txt' | xargs awk '
  FNR == 1 { cpp = FILENAME ~ /\.(cpp|h|c)$/; docstring = block = 0 }
  cpp && /^[ \t]*\/\*/ { block = 1 }
  block { if (/\*\//) block = 0; next }
  /^[ \t]*"""/ && !cpp { docstring = !docstring; if (/""".*"""/) docstring = 0; next }
  docstring || /^[ \t]*$/ || (cpp ? /^[ \t]*\/\// : /^[ \t]*#/) { next }
  { ++lines[FILENAME ~ /^(tests|fuzz)\//] }
  END { printf "%d lines of tests, %d others: %.3f\n", lines[1], lines[0], lines[1] / lines[0] }'
