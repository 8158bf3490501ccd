#!/usr/bin/env python3
"""Prints figures about the shape of the tree, to compare it with an earlier state.

    tools/measure.py [BUILD_FOLDER]

BUILD_FOLDER is a configured build (build/release when it is left out); the links between rooms are read from its
link-graph.txt. Lengths of functions need universal-ctags, which tools/install-deps.sh does not install. A figure that
cannot be measured here is printed with what is missing. "Code lines" are neither blank nor only a comment.
"""
import json
import re
import shutil
import statistics
import subprocess
import sys
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/house"))
sys.dont_write_bytecode = True
from check_layers import Graph  # noqa: E402

COMMENT = re.compile(r"^\s*(//.*)?$")
FORMAT_CODES = ("argb", "xrgb", "bgra", "ae16", "Argb", "Xrgb", "Bgra", "ae32", "ARgb", "XRgb", "BGra")


def sources():
    names = subprocess.run(["git", "ls-files", "*.cpp", "*.h"], cwd=ROOT, capture_output=True, text=True, check=True)
    return [(Path(name), (ROOT / name).read_text()) for name in names.stdout.split()]


def code_lines(text):
    return sum(not COMMENT.match(line) for line in text.splitlines())


def spread(numbers, unit):
    ordered = sorted(numbers)
    tenth = ordered[min(len(ordered) - 1, len(ordered) * 9 // 10)]
    return f"median {statistics.median(ordered):g}, 90th percentile {tenth}, longest {ordered[-1]} {unit}"


def rooms_line(files, rooms):
    sizes = Counter()
    for path, text in files:
        if path.parts[0] in rooms:
            sizes[path.parts[0]] += code_lines(text)
    room, lines = sizes.most_common(1)[0]
    total = sum(sizes.values())
    return f"{room}/ with {100 * lines / total:.1f} % of {total} code lines in {len(sizes)} rooms"


def function_lengths(files):
    names = [str(path) for path, _ in files if path.suffix == ".cpp"]
    found = subprocess.run(["ctags", "--output-format=json", "--fields=+ne", "--kinds-c++=f", "-o", "-", *names],
                           cwd=ROOT, capture_output=True, text=True, check=True)
    tags = [json.loads(line) for line in found.stdout.splitlines()]
    return [tag["end"] - tag["line"] + 1 for tag in tags if "end" in tag]


def functions_line(files):
    program = shutil.which("ctags")
    version = subprocess.run([program, "--version"], capture_output=True, text=True).stdout if program else ""
    if "Universal Ctags" not in version or "+json" not in version:
        return "not measured: install universal-ctags"
    return spread(function_lengths(files), "lines")


def type_names():
    """The enumerators of Parameter::Type that name a type, which UNKNOWN does not."""
    text = (ROOT / "parameters/Parameter.h").read_text()
    names = re.findall(r"^\s+([A-Z]\w*) = ", re.search(r"enum Type[^{]*\{(.*?)\}", text, re.S)[1], re.M)
    return [name for name in names if name != "UNKNOWN"]


def bare_format_code():
    """A pattern for a pixel format as a number or as four characters."""
    numbers = ["0x%08X" % int.from_bytes(code.encode(), "little") for code in FORMAT_CODES]
    return re.compile("|".join(numbers) + "|" + "|".join(rf"""Code\("{code}"\)""" for code in FORMAT_CODES), re.I)


def without_comments(text):
    return re.sub(r"//[^\n]*", "", text)


def users_line(files, pattern, home):
    users = [str(path) for path, text in files if pattern.search(without_comments(text)) and str(path) not in home]
    return f"{len(users)}" + "".join(f"\n    {name}" for name in users)


def main():
    build = Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/release")
    everything = sources()
    tests = [file for file in everything if file[0].parts[0] == "tests"]
    product = [file for file in everything if file[0].parts[0] not in ("tests", "bench")]
    headers = [text for path, text in product if path.suffix == ".h"]
    header_lines = [line for text in headers for line in text.splitlines() if line.strip()]
    share = 100 * sum("//" in line for line in header_lines) / len(header_lines)

    graph_file = build / "link-graph.txt"
    graph = Graph(graph_file.read_text()) if graph_file.exists() else None
    if graph:
        print("biggest room:", rooms_line(product, graph.rooms))
        print("links between rooms:", sum(len(graph.linked_rooms(room)) for room in graph.rooms))
    else:
        print(f"biggest room, links: not measured: configure {build} first (tools/build.sh release)")
    print("functions:", functions_line(product))
    print("files:", spread([code_lines(text) for _, text in product], "code lines"))
    types = re.compile(r"\bParameter::(%s)\b" % "|".join(type_names()))
    print("files that name a Parameter::Type, beside its table:",
          users_line(product, types, ("parameters/Parameter.h", "parameters/ParameterTraits.cpp")))
    print("files with bare codes of pixel formats, beside their table:",
          users_line(product, bare_format_code(), ("sdk/PixelFormats.h",)))
    print(f"headers: {share:.0f} % of {len(header_lines)} lines that are not blank have a comment")
    test_lines, other = (sum(code_lines(text) for _, text in some) for some in
                         (tests, [file for file in everything if file[0].parts[0] != "tests"]))
    print(f"tests: {test_lines} code lines, {100 * test_lines / other:.0f} % of the {other} lines outside tests/")


if __name__ == "__main__":
    main()
