#!/usr/bin/env python3
"""Runs clang-tidy over the sources, and prints what it finds.

    tools/tidy.py BUILD_FOLDER [--all]

Without --all it looks only at sources that changed: what is not committed, and the last commit. Results are kept in
BUILD_FOLDER/tidy, so that a source is looked at again only when it, a header or a setting changed.
"""
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from functools import lru_cache
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
# GCC's own options, which clang does not know; and precompiled headers, which it cannot read.
DROPPED = re.compile(r"-fno-gnu-unique|-Winvalid-pch|-W(no-)?\S*|-fsanitize=\S*")


def git(*arguments):
    return subprocess.run(["git", *arguments], cwd=ROOT, capture_output=True, text=True).stdout.split("\n")


def changed_files():
    names = git("diff", "--name-only", "HEAD") + git("ls-files", "-o", "--exclude-standard")
    return {ROOT / name for name in names + git("diff", "--name-only", "HEAD~1", "HEAD") if name}


@lru_cache(maxsize=None)
def own_headers(path):
    """The headers of this tree that a file includes, directly."""
    names = re.findall(r'^#\s*include\s+"([^"]+)"', path.read_text(), re.M)
    places = [base / name for name in names for base in (ROOT, path.parent, ROOT / "sdk", ROOT / "sdk/premiere")]
    return [place for place in dict.fromkeys(places) if place.is_file()]


def with_headers(path):
    seen, waiting = {path}, [path]
    while waiting:
        fresh = [header for header in own_headers(waiting.pop()) if header not in seen]
        seen.update(fresh)
        waiting.extend(fresh)
    return sorted(seen)


def key(entry, settings):
    digest = hashlib.sha256(settings + json.dumps(entry["arguments"]).encode())
    for path in with_headers(Path(entry["file"])):
        digest.update(path.read_bytes())
    return digest.hexdigest()


def database(build, folder):
    """The compile commands with options that clang understands."""
    entries = []
    for entry in json.loads((build / "compile_commands.json").read_text()):
        path = Path(entry["file"])
        if path.suffix != ".cpp" or path.is_relative_to(build) or not path.exists():
            continue
        words = [word for word in shlex.split(entry["command"]) if not DROPPED.fullmatch(word)]
        for index in reversed([i for i, word in enumerate(words) if word == "-include" and "cmake_pch" in words[i + 1]]):
            del words[index:index + 2]
        while not words[0].endswith(("++", "cc")):
            del words[0]  # a compiler launcher
        entries.append({"file": entry["file"], "directory": entry["directory"], "arguments": words})
    (folder / "compile_commands.json").write_text(json.dumps(entries, indent=1))
    return entries


def main():
    build = Path(sys.argv[1]).resolve()
    folder = build / "tidy"
    folder.mkdir(exist_ok=True)
    settings = b"".join(path.read_bytes() for path in sorted(ROOT.glob("**/.clang-tidy")))
    entries = database(build, folder)
    if "--all" not in sys.argv:
        changed = changed_files()
        entries = [e for e in entries if Path(e["file"]) in changed or Path(e["file"]).with_suffix(".h") in changed]

    def look(entry):
        stamp = folder / key(entry, settings)
        if stamp.exists():
            return ""
        done = subprocess.run(["clang-tidy", "--quiet", "-p", str(folder), entry["file"]], capture_output=True, text=True)
        if done.returncode == 0 and not done.stdout:
            stamp.touch()
        return done.stdout or (done.stderr if done.returncode else "")

    found = set()  # a finding in a header appears once, although many sources include it
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        for text in pool.map(look, entries):
            for finding in re.split(r"\n(?=/)", text):
                if finding.strip() and finding not in found:
                    found.add(finding)
                    print(finding, flush=True)
    if not found:
        print(f"clang-tidy: {len(entries)} sources are clean")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
