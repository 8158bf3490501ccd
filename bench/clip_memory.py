#!/usr/bin/env python3
"""Measures the peak memory of clips, all processes together.

    clip_memory.py FXHOST [CASE...]

Prints one line for each case: the peak of the proportional set sizes of the tool and all of its descendants, and the
aim. Exits with 1 when a case exceeds its aim. The cases need the programs ffmpeg and the effects of this repository.
"""
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
EFFECT = str(ROOT / "effects" / "mirror")
PERIOD = 0.02  # seconds between two samples


def descendants(root):
    """The process and everything that it started, from /proc."""
    children = {}
    for entry in os.listdir("/proc"):
        if entry.isdigit():
            try:
                parent = int(Path(f"/proc/{entry}/stat").read_text().rsplit(")", 1)[1].split()[1])
            except (OSError, IndexError):
                continue
            children.setdefault(parent, []).append(int(entry))
    found, waiting = [], [root]
    while waiting:
        found.append(waiting.pop())
        waiting.extend(children.get(found[-1], []))
    return found


def memory(process):
    """Bytes of the process; memory that is shared counts for each of its users in part."""
    try:
        for line in Path(f"/proc/{process}/smaps_rollup").read_text().splitlines():
            if line.startswith("Pss:"):
                return int(line.split()[1]) * 1024
    except OSError:
        pass
    return 0


def peak(command):
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    highest = 0
    while process.poll() is None:
        highest = max(highest, sum(memory(p) for p in descendants(process.pid)))
        time.sleep(PERIOD)
    if process.returncode:
        sys.exit(f"{' '.join(command)}: exit status {process.returncode}")
    return highest


def video(folder, size, frames):
    path = f"{folder}/{size}_{frames}.mp4"
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", f"testsrc2=size={size}:rate=25", "-frames:v",
                    str(frames), "-c:v", "libx264", "-preset", "ultrafast", path], check=True)
    return path


def clip(tool, folder, size, frames):
    return peak([tool, "render", EFFECT, "-i", video(folder, size, frames), "-o", f"{folder}/out.mp4", "--quiet"])


def still(tool, folder):
    layer = f"{folder}/half.exr"
    subprocess.run([tool, "render", str(ROOT / "effects" / "plasma"), "--size", "8192x4320", "--depth", "32", "--bits",
                    "half", "-o", layer, "--quiet"], check=True)
    return peak([tool, "render", EFFECT, "-i", layer, "-o", f"{folder}/out.exr", "--quiet"])


def main():
    tool, names = sys.argv[1], sys.argv[2:]
    worst = 0
    with tempfile.TemporaryDirectory() as folder:
        cases = {
            "4k": (lambda: clip(tool, folder, "3840x2160", 60), 1.0e9),
            "8k-still": (lambda: still(tool, folder), 2.0e9),
        }
        for name, (measure, aim) in cases.items():
            if names and name not in names:
                continue
            bytes_used = measure()
            worst = max(worst, bytes_used / aim)
            print(f"{name}: {bytes_used / 1e9:.2f} GB, aim {aim / 1e9:.1f} GB", flush=True)
        if not names or "long" in names:
            short, long = (clip(tool, folder, "320x180", frames) for frames in (200, 2000))
            worst = max(worst, long / short / 1.1)
            print(f"long: 2000 frames need {long / short:.2f} times as much as 200, aim 1.1", flush=True)
    return 1 if worst > 1 else 0


if __name__ == "__main__":
    sys.exit(main())
