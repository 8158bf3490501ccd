#!/usr/bin/env python3
"""Checks generated effects that have no mistakes, and reports every diagnostic as a false alarm.

    sweep_generated_effects.py FXHOST [COUNT]

Makes COUNT effects (100 by default) from the templates of `fxhost new`, with random ranges, defaults, flags, numbers of
passes and sizes of render targets. The seed is constant, so each run makes the same effects. Takes minutes, so it is run
by hand and not by ./test.
"""
import random
import re
import subprocess
import sys
import tempfile
from pathlib import Path

TEMPLATES = ["filter", "procedural", "multipass", "palette", "transition", "generator"]


def vary_range(text, rng):
    """Scales the range and the default of each slider by the same factor."""
    def scaled(match):
        factor = rng.choice([1, 1, 2, 0.5])
        name, low, high = match.group(1), float(match.group(2)), float(match.group(3))
        value = rng.uniform(low, high) * factor
        return (f"SV_setParamMinMax({name}, {low * factor:g}, {high * factor:g});\n"
                f"    SV_setParamValue({name}, {value:.3f});")
    text = re.sub(r"SV_setParamMinMax\((\w+), ([\d.]+), ([\d.]+)\);\n    SV_setParamValue\(\w+, [\d.]+\);", scaled, text)
    return text


def vary_colour(text, rng):
    colour = [rng.randrange(2, 256) for _ in range(3)] + [255]
    return re.sub(r"\[\d+, \d+, \d+, 255\]", str(colour), text)


def vary_point(text, rng):
    x, y = rng.randrange(0, 101), rng.randrange(0, 101)
    return re.sub(r"\[50 / 65536, 50 / 65536\]", f"[{x} / 65536, {y} / 65536]", text)


def add_control(text, rng):
    """Declares one more control, which the script reads and passes to no shader."""
    kind = rng.choice(["ANGLE", "BOOL", "FLOAT", "POPUP", "POINT2D", "COLOR"])
    lines = [f'    var extra = SV_initParam("extra", SV_Type.{kind}, "Extra");']
    if kind == "POPUP":
        lines.append('    SV_setParamChoices(extra, "One|Two|Three");')
        lines.append(f"    SV_setParamValue(extra, {rng.randrange(1, 4)});")
    if kind == "FLOAT" and rng.random() < 0.5:
        lines.append("    SV_setParamMinMax(extra, 0, 1);")
        lines.append(f"    SV_setParamPrecision(extra, {rng.randrange(1, 4)});")
    return text.replace("function setup() {\n", "function setup() {\n" + "\n".join(lines) + "\n", 1)


def vary(folder, rng):
    script = folder / "fx.js"
    text = script.read_text()
    for step in (vary_range, vary_colour, vary_point):
        text = step(text, rng)
    if rng.random() < 0.6:
        text = add_control(text, rng)
    if rng.random() < 0.3:
        text += "\nfunction updateUIFlags() {}\nfunction preRender(w, h) {}\n"
    script.write_text(text)


def main():
    fxhost = str(Path(sys.argv[1]).resolve())
    count = int(sys.argv[2]) if len(sys.argv) > 2 else 100
    rng = random.Random(7)
    alarms = 0
    with tempfile.TemporaryDirectory() as folder:
        for number in range(count):
            kind = TEMPLATES[number % len(TEMPLATES)]
            effect = Path(folder) / f"{kind}{number}"
            subprocess.run([fxhost, "new", "--template", kind, str(effect)], check=True, stdout=subprocess.DEVNULL)
            vary(effect, rng)
            run = subprocess.run([fxhost, "check", "--strict", str(effect)], capture_output=True, text=True)
            if run.returncode:
                alarms += 1
                print(run.stderr, end="")
    print(f"{count} effects, {alarms} with diagnostics")
    return 1 if alarms else 0


if __name__ == "__main__":
    sys.exit(main())
