#!/usr/bin/env python3
"""The race: our time over the best peer's for every goal, as a table.

usage: race.py BUILD [--only TEXT] [--runs N] [--write README]

BUILD is a folder that `make race` has built. Every benchmark sets ours and the peer's in turns in
one process and holds the results against a definition where that is cheap; a peer that runs beside
it runs right before. The median of N runs counts. The spread is that of the turns: from the lowest
quarter to the highest of any run. With --write the table goes into README between its marks, with
the machine's description.
"""
import argparse
import datetime
import json
import os
import platform
import re
import resource
import statistics
import subprocess
import sys
import tempfile

# What is compared, the benchmarks' names, and the goal.
GOALS = [
    ("diffusion 24 to 8 bits, Floyd-Steinberg", r"Diffused24/8/zimg", 0.35),
    ("diffusion 24 to 1 bit, Floyd-Steinberg", r"Diffused24/1/zimg", 0.95),
    ("diffusion 24 to 8 bits, wider filters", r"Diffused24/8/[a-z-]+/zimg", 1.0),
    ("ordered 24 to 8 bits", r"Ordered24/8/(Qt|zimg)", 0.35),
    ("ordered 24 to 1 bit", r"Ordered24/1/(Qt|zimg)", 0.55),
    ("paint at 50 %, dithered", r"Paint/(ordered|diffused)/.*", 0.45),
    ("rows to rows", r"Rows/.*", 1.0),
    ("union of 1000 rectangles, call by call", r"Region/union/cairo.*", 0.9),
    ("the runs of all rows", r"Region/rows/Qt.*", 1.0),
    ("the runs of one row", r"Region/row/Qt.*", 0.05),
    ("nearest of 256 colours, exact", r"Nearest256/exact/Qt", 1.0),
    ("nearest of 256 colours, by cells", r"Nearest256/cells/Pillow", 0.6),
    ("fill", r"Fill/FreeImage.*", 0.5),
    ("fill of an ellipse", r"Fill/ellipse/OpenCV", 0.75),
    ("direct paint", r"Paint/direct/memcpy.*", 1.1),
    ("1-bit paint, gray and vote", r"Paint/(gray|vote)/.*", 1.0),
]
# From a 12-megapixel JPEG file to PNG: the tool's options, vips's of the result, and the goal.
TOOL_GOALS = [
    ("JPEG to PNG", [], "", 1.0),
    ("JPEG to PNG of 256 colours", ["--depth", "8"], "[palette]", 0.6),
]


def benchmarks(program, names, runs):
    """The runs' entries by benchmark name."""
    found = {}
    if not names:
        return found
    # The suffix is what manual time and iterations add to a name.
    only = "^(" + "|".join(names) + ")(/iterations:.*|/manual_time)?$"
    for _ in range(runs):
        with tempfile.NamedTemporaryFile(suffix=".json") as out:
            subprocess.run(
                [program, f"--benchmark_filter={only}", f"--benchmark_out={out.name}",
                 "--benchmark_out_format=json"], check=True, stdout=subprocess.DEVNULL)
            for entry in json.load(out)["benchmarks"]:
                name = re.sub(r"/(iterations|manual_time).*", "", entry["name"])
                found.setdefault(name, []).append(entry)
    return found


def row(text, name, entries, goal):
    failed = next((e["error_message"] for e in entries if e.get("error_occurred")), None)
    if failed:
        return [text, name, failed, "", "", f"{goal:g}", "no"]
    ratio = statistics.median(e["ours/peer"] for e in entries)
    turns = [e[side] for e in entries for side in ("low", "high") if side in e]
    turns += [e["ours/peer"] for e in entries]
    moved = entries[0].get("moved")
    return [text, name, f"{ratio:.2g}", f"{min(turns):.2g} to {max(turns):.2g}",
            f"{moved / 1e6:.3g}" if moved else "", f"{goal:g}", "yes" if ratio <= goal else "no"]


def processor_seconds(command):
    """User and system time of a process and its children."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                   env={**os.environ, "VIPS_CONCURRENCY": "1"})
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def end_to_end(tool, goals, runs):
    """The rows of TOOL_GOALS, beside vips; both sizes are told."""
    rows = []
    with tempfile.TemporaryDirectory() as folder:
        photo = os.path.join(folder, "photo.jpg")
        made, theirs = os.path.join(folder, "ours.png"), os.path.join(folder, "theirs.png")
        for seed in range(3):
            noise = ["vips", "gaussnoise", f"{folder}/n.v", "500", "375", "--mean", "128",
                     "--sigma", "60", "--seed", str(seed)]
            subprocess.run(noise, check=True)
            subprocess.run(["vips", "cast", f"{folder}/n.v", f"{folder}/{seed}.v", "uchar"],
                           check=True)
        bands = " ".join(f"{folder}/{seed}.v" for seed in range(3))
        subprocess.run(["vips", "bandjoin", bands, f"{folder}/rgb.v"], check=True)
        subprocess.run(["vips", "copy", f"{folder}/rgb.v", f"{folder}/small.v",
                        "--interpretation", "srgb"], check=True)
        subprocess.run(["vips", "resize", f"{folder}/small.v", photo + "[Q=90]", "8"], check=True)
        for text, options, peer_options, goal in goals:
            ratios, ours = [], [tool, "convert", photo, made, *options]
            for _ in range(max(runs, 3)):
                ratios.append(processor_seconds(ours) /
                              processor_seconds(["vips", "copy", photo, theirs + peer_options]))
            ratio = statistics.median(ratios)
            sizes = f"{os.path.getsize(made) / 1e6:.3g}, vips {os.path.getsize(theirs) / 1e6:.3g}"
            rows.append([text, "the tool, vips", f"{ratio:.2g}",
                         f"{min(ratios):.2g} to {max(ratios):.2g}", sizes, f"{goal:g}",
                         "yes" if ratio <= goal else "no"])
    return rows


def machine():
    with open("/proc/cpuinfo", encoding="ascii") as info:
        model = next((line.split(":")[1].strip() for line in info if "model name" in line), "")
    load = ", ".join(f"{value:.0f}" for value in os.getloadavg())
    return (f"{datetime.date.today()}, {os.cpu_count()} cores of {model or platform.machine()}, "
            f"{platform.system()} {platform.release().split('-')[0]}, load {load}, one thread:")


def table(rows):
    head = ["what", "benchmark, peer last", "ours / peer", "spread", "MB moved", "goal", "met"]
    return "\n".join("| " + " | ".join(cells) + " |" for cells in [head, ["---"] * 7, *rows])


def main():
    options = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    options.add_argument("build")
    options.add_argument("--only", default="", help="goals and benchmarks that hold this text")
    options.add_argument("--runs", type=int, default=3)
    options.add_argument("--write", help="the file that keeps the last table")
    asked = options.parse_args()
    found = benchmarks(os.path.join(asked.build, "bench", "vncore_bench"),
                       [name for text, name, _ in GOALS if asked.only in text + name], asked.runs)
    rows = []
    for text, name, goal in GOALS:
        rows += [row(text, full, found[full], goal)
                 for full in found if re.fullmatch(name, full)]
    tool = os.path.join(asked.build, "tools", "vncore")
    goals = [goal for goal in TOOL_GOALS if asked.only in goal[0]]
    if goals and os.path.exists(tool):
        try:
            rows += end_to_end(tool, goals, asked.runs)
        except (OSError, subprocess.CalledProcessError) as error:
            print(f"the tool is not compared: {error}", file=sys.stderr)
    result = machine() + "\n\n" + table(rows)
    print(result)
    if asked.write:
        with open(asked.write, encoding="utf-8") as file:
            text = file.read()
        before, rest = text.split("<!-- race -->\n", 1)
        behind = rest.split("<!-- end of race -->", 1)[1]
        with open(asked.write, "w", encoding="utf-8") as file:
            file.write(f"{before}<!-- race -->\n{result}\n<!-- end of race -->{behind}")


if __name__ == "__main__":
    main()
