#!/usr/bin/env python3
"""Changes the code at places chosen by a seed and tells which changes the tests notice.

    scripts/mutate.py --count 60 --seed 1
    scripts/mutate.py --only 7,31 --seed 1     # these again
    scripts/mutate.py --rooms tools --seed 1   # in these folders
    scripts/mutate.py --tests v1.0 --seed 1    # with the tests of another commit

Works on the last commit, in a worktree of its own under build-mutate. A mutant that does not compile
is no mutant: its number goes on to the next place. What survives is either a hole in the tests or
equal to the original in all that can be seen; that is for a reader to say.
"""

import argparse
import os
import pathlib
import random
import re
import resource
import subprocess
import sys
import time

ROOMS = ["kernel", "color", "geometry", "compose", "region", "device", "platform", "tools"]
TESTS = {  # in the order in which they run, the quick ones first
    "vncore_cases": [],
    "vncore_tests": ["--gtest_fail_fast", "--gtest_brief=1"],
    "vncore_tool_tests": ["--gtest_fail_fast", "--gtest_brief=1"],
    "vncore_window_tests": ["--gtest_fail_fast", "--gtest_brief=1"],
}
# Operators stand between spaces, which no template bracket, pointer or reference does.
SWAPS = [("<", "<="), ("<=", "<"), (">", ">="), (">=", ">"), ("==", "!="), ("!=", "=="),
         ("+", "-"), ("-", "+"), ("*", "+"), ("/", "*"), ("%", "/"), ("&&", "||"), ("||", "&&"),
         ("&", "|"), ("|", "&"), ("<<", ">>"), (">>", "<<"), ("+=", "-="), ("-=", "+="),
         ("|=", "&="), ("&=", "|=")]
WORDS = [("true", "false"), ("false", "true"), ("min", "max"), ("max", "min")]


def variants(line):
    """All ways to change one line."""
    for old, new in SWAPS:
        for found in re.finditer(r"(?<= )" + re.escape(old) + r"(?= )", line):
            yield line[:found.start()] + new + line[found.end():]
    for old, new in WORDS:
        for found in re.finditer(r"\b" + old + r"\b", line):
            yield line[:found.start()] + new + line[found.end():]
    for found in re.finditer(r"(?<![\w.'\"])\d+(?![\w.'\"])", line):
        yield line[:found.start()] + str(int(found.group()) + 1) + line[found.end():]
    condition = re.fullmatch(r"(\s*(?:\} else )?(?:if|while) \()(.*)(\)(?: \{| .*;)?)", line)
    if condition and ";" not in condition[2]:
        yield condition[1] + "!(" + condition[2] + ")" + condition[3]
    if re.fullmatch(r"\s+[\w:.>\[\]-]+(\(.*\)| [+|&-]?= .*);", line) and "return" not in line:
        yield re.match(r"\s*", line)[0] + ";"


def places(tree, rooms):
    """Every (file, line number, changed line) there is, in a stated order."""
    for room in rooms:
        for path in sorted((tree / room).rglob("*.cpp")):
            for number, line in enumerate(path.read_text().split("\n")):
                code = line.split("//")[0].rstrip()
                skipped = code.lstrip().startswith(("#", "static_assert")) or '"' in code
                if not skipped:
                    for changed in variants(code):
                        yield path, number, changed


def limit():
    resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run(command, seconds, **more):
    try:
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                              timeout=seconds, errors="replace", **more)
        return done.returncode, done.stdout
    except subprocess.TimeoutExpired:
        return "too slow", ""


class Tree:
    def __init__(self, top, tests):
        self.path = top / "build-mutate" / ("tree-" + tests.replace("/", "-"))
        self.build = self.path / "build"
        git = ["git", "-C", str(self.path)]
        if not self.path.exists():
            subprocess.run(["git", "-C", str(top), "worktree", "add", "-q", "--detach",
                            str(self.path)], check=True)
        head = subprocess.check_output(["git", "-C", str(top), "rev-parse", "HEAD"], text=True)
        subprocess.run(git + ["checkout", "-qf", head.strip()], check=True)
        if tests != "HEAD":
            subprocess.run(git + ["rm", "-rqf", "tests"], check=True)
            subprocess.run(git + ["checkout", "-q", tests, "--", "tests"], check=True)
        subprocess.run(["cmake", "-S", str(self.path), "-B", str(self.build),
                        "-DCMAKE_BUILD_TYPE=Release"], check=True, stdout=subprocess.DEVNULL)
        status, log = self.make(None)
        if status != 0:
            sys.exit(log[-3000:])
        self.seconds = {}
        for test in TESTS:
            start = time.time()
            status, log = self.test(test, 900)
            if status != 0:
                sys.exit(f"{test} fails without a mutant:\n{log[-3000:]}")
            self.seconds[test] = time.time() - start

    def make(self, seconds):
        jobs = str(os.cpu_count())
        return run(["cmake", "--build", str(self.build), "-j", jobs, "--target", *TESTS], seconds)

    def test(self, name, seconds):
        binary = next(p for p in self.build.rglob(name) if p.is_file())
        return run([str(binary), *TESTS[name]], seconds, preexec_fn=limit, cwd=binary.parent)

    def verdict(self, path):
        if self.make(900)[0] != 0:
            return None
        room, part = path.relative_to(self.path).parts[:2]
        inside = "vncore_window_tests" if part == "window" else "vncore_tool_tests"
        for name in ([inside] if room == "tools" else TESTS):
            status, log = self.test(name, 60 + 5 * self.seconds[name])
            if status != 0:
                found = re.search(r"^\[  FAILED  \] (\S+)|(\S+) +\d+ cases .*DIFFERS", log, re.M)
                which = found and (found[1] or found[2])
                return f"killed by {name} {which or status}"
        return "SURVIVED"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--count", type=int, default=60)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--tests", default="HEAD", help="the commit that the tests are taken from")
    parser.add_argument("--only", help="numbers of mutants, with commas between")
    parser.add_argument("--rooms", default=",".join(ROOMS), help="folders, with commas between")
    options = parser.parse_args()
    top = pathlib.Path(subprocess.check_output(["git", "rev-parse", "--show-toplevel"],
                                               text=True).strip())
    tree = Tree(top, options.tests)
    everywhere = list(places(tree.path, options.rooms.split(",")))
    numbers = [int(n) for n in options.only.split(",")] if options.only else range(options.count)
    killed = 0
    for number in numbers:
        chosen = random.Random(options.seed * 1000003 + number)
        verdict = None
        while not verdict:
            path, line, changed = chosen.choice(everywhere)
            sound = path.read_text()
            lines = sound.split("\n")
            before, lines[line] = lines[line], changed
            path.write_text("\n".join(lines))
            try:
                verdict = tree.verdict(path)
            finally:
                path.write_text(sound)
        killed += verdict != "SURVIVED"
        print(f"{number}: {path.relative_to(tree.path)}:{line + 1}: {verdict}\n"
              f"    {before.strip()}\n    {changed.strip()}", flush=True)
    print(f"{killed} of {len(numbers)} killed")


if __name__ == "__main__":
    main()
