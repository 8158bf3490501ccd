#!/usr/bin/env python3
"""Gives tools/check_macho.py modules and bundles that are wrong on purpose, and expects the line that names the fault.

The right module is a small program that the cross compiler of tools/macos makes; each fault is made by the compiler, or
by changing bytes of it. Needs `tools/install-deps.sh --cross`.
"""
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "tools"))
from check_macho import bundle_faults, module_faults  # noqa: E402

SOURCE = 'extern "C" __attribute__((visibility("default"))) int EntryPointFunc() { return 0; }\n'
FOLDER = tempfile.TemporaryDirectory()


def compiled(name, source=SOURCE, options=("-Wl,-exported_symbol,_EntryPointFunc",), archs=("arm64", "x86_64")):
    base = Path(FOLDER.name) / name
    base.with_suffix(".cpp").write_text(source)
    slices = []
    for arch in archs:
        slices.append(f"{base}-{arch}")
        subprocess.run([ROOT / "tools/macos/c++", "-arch", arch, "-fvisibility=hidden", "-bundle", *options,
                        base.with_suffix(".cpp"), "-o", slices[-1]], check=True)
    subprocess.run(f"PATH=$PATH:$(ls -d /usr/lib/llvm-*/bin | tail -1) llvm-lipo -create {' '.join(slices)} -output {base}",
                   shell=True, check=True)
    return base


def faults(module, change=lambda data: data):
    wrong = module.with_name(module.name + "-wrong")
    wrong.write_bytes(change(module.read_bytes()))
    return "\n".join(module_faults(wrong))


def replaced(old, new):
    def change(data):
        assert old in data
        return data.replace(old, new)
    return change


class CheckMachOTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.right = compiled("right")

    def test_right_module_has_no_fault(self):
        self.assertEqual(faults(self.right), "")

    def test_faults_of_the_build_are_reported(self):
        second = SOURCE + SOURCE.replace("EntryPointFunc", "Second")
        weak = SOURCE + 'extern "C" __attribute__((visibility("default"), weak)) int Weak() { return 1; }\n'
        rows = [
            ("second export", compiled("second", second, ()), "exports _EntryPointFunc, _Second"),
            ("weak definition", compiled("weak", weak, ()), "weak"),
            ("one processor", compiled("thin", archs=("arm64",)), "contains arm64; arm64 and x86_64"),
        ]
        for name, module, expected in rows:
            with self.subTest(name):
                self.assertIn(expected, faults(module))

    def test_changed_bytes_are_reported(self):
        build_version = struct.pack("<4I", 0x32, 32, 1, 11 << 16)
        rows = [
            ("newer system", replaced(build_version, build_version[:-4] + struct.pack("<I", 12 << 16)), "for macOS 12.0"),
            ("own library", replaced(b"/usr/lib/libSystem.B.dylib", b"/opt/lib/libSystem.B.dylib"), "/opt/lib"),
            ("signature", replaced(b"\xfa\xde\x0c\xc0", b"\xfa\xde\x0c\xc1"), "no ad-hoc signature"),
            ("no Mach-O file", lambda data: b"\x7fELF" + data[4:], "no Mach-O code"),
        ]
        for name, change, expected in rows:
            with self.subTest(name):
                self.assertIn(expected, faults(self.right, change))


class BundleTest(unittest.TestCase):
    """Bundles that the built fxhost makes, around the small module."""

    def bundle(self, name):
        path = Path(FOLDER.name) / f"{name}.plugin"
        subprocess.run([ROOT / "build/release/tool/fxhost", "bundle", ROOT / "effects/blur", "-o", path, "--target", "macos",
                        "--module", compiled("module")], check=True, stdout=subprocess.DEVNULL)
        return path, path / f"Contents/Resources/{name}.rsrc"

    def faults(self, path):
        return "\n".join(bundle_faults(path, ROOT / "effects/blur"))

    def test_bundle_of_an_effect_has_no_fault(self):
        self.assertEqual(self.faults(self.bundle("Right")[0]), "")

    def test_changed_flag_in_the_property_list_is_reported(self):
        path, resource = self.bundle("Flags")
        data = bytearray(resource.read_bytes())
        data[data.index(b"8BIMeGLO") + 19] ^= 1
        resource.write_bytes(data)
        self.assertIn("eGLO is 0x6008004, but the module computes 0x6008005", self.faults(path))

    def test_missing_parts_are_reported(self):
        path, resource = self.bundle("Parts")
        resource.unlink()
        self.assertIn("has no property list", self.faults(path))
        (path / "Contents/MacOS/Parts").unlink()
        self.assertIn("is not in Contents/MacOS", self.faults(path))


if __name__ == "__main__":
    unittest.main()
