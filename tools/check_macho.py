#!/usr/bin/env python3
"""Checks a plug-in module, or a bundle with one, for macOS. Prints one line for each fault, and exits with 1 on any.

    tools/check_macho.py MODULE
    tools/check_macho.py NAME.plugin [EFFECT_FOLDER]

The module must contain code for arm64 and x86_64. Each part must run on macOS 11, export _EntryPointFunc alone, define
and use no weak symbols (they would keep the module from being unloaded), need system libraries only, and have an ad-hoc
signature. In a bundle, Info.plist must name the module. With the effect folder, version and flags of the property list
(PiPL) must be those that the module computes from config.xml: After Effects compares them and refuses the plug-in
otherwise. The layouts are those of Apple's public headers mach-o/loader.h, mach-o/nlist.h and kern/cs_blobs.h.
"""
import plistlib
import re
import struct
import sys
from pathlib import Path

ARCHITECTURES = {0x0100000C: "arm64", 0x01000007: "x86_64"}
MIN_VERSION = (11, 0)
SYSTEM_LIBRARIES = ("/usr/lib/", "/System/Library/")
EXPORT = "_EntryPointFunc"
MH_BUNDLE, MH_WEAK_DEFINES, MH_BINDS_TO_WEAK = 8, 0x8000, 0x10000
LC_SYMTAB, LC_CODE_SIGNATURE, LC_VERSION_MIN, LC_BUILD_VERSION = 0x2, 0x1D, 0x24, 0x32
LC_DYLIBS = (0xC, 0x80000018, 0x8000001F, 0x80000023)  # plain, weak, re-exported, upward
CS_ADHOC = 0x2
ALWAYS_SET = 0x4008005  # the adapter sets these flags for every effect (host/GlobalSetup.cpp)


def parts(data):
    """(architecture, bytes) of each part of a file, which may be universal or not."""
    if data[:4] == b"\xca\xfe\xba\xbe":
        for i in range(struct.unpack_from(">I", data, 4)[0]):
            kind, _, offset, size = struct.unpack_from(">4I", data, 8 + 20 * i)
            yield ARCHITECTURES.get(kind, hex(kind)), data[offset:offset + size]
    elif data[:4] == b"\xcf\xfa\xed\xfe":
        kind = struct.unpack_from("<I", data, 4)[0]
        yield ARCHITECTURES.get(kind, hex(kind)), data


def commands(part):
    count = struct.unpack_from("<I", part, 16)[0]
    at = 32
    for _ in range(count):
        kind, size = struct.unpack_from("<2I", part, at)
        yield kind, at, part[at:at + size]
        at += size


def symbols(part, command):
    """(name, defined and external, weak) of each symbol that is not for debuggers."""
    table, count, texts, _ = struct.unpack_from("<4I", command, 8)
    for i in range(count):
        name, kind, _, description, _ = struct.unpack_from("<IBBHQ", part, table + 16 * i)
        if not kind & 0xE0:
            end = part.index(b"\0", texts + name)
            external = bool(kind & 1) and not kind & 0x10
            defined = kind & 0x0E != 0
            yield part[texts + name:end].decode(), external and defined, bool(description & (0x80 if defined else 0x40))


def is_adhoc(part, command):
    """True when the signature has a code directory with the flag for ad-hoc signatures."""
    start = struct.unpack_from("<I", command, 8)[0]
    if struct.unpack_from(">I", part, start)[0] != 0xFADE0CC0:
        return False
    for i in range(struct.unpack_from(">I", part, start + 8)[0]):
        kind, offset = struct.unpack_from(">2I", part, start + 12 + 8 * i)
        if kind == 0:
            return bool(struct.unpack_from(">I", part, start + offset + 12)[0] & CS_ADHOC)
    return False


def part_faults(part):
    file_type, flags = struct.unpack_from("<I", part, 12)[0], struct.unpack_from("<I", part, 24)[0]
    if file_type != MH_BUNDLE:
        yield f"has file type {file_type}, a bundle ({MH_BUNDLE}) was expected"
    if flags & (MH_WEAK_DEFINES | MH_BINDS_TO_WEAK):
        yield "defines or uses weak symbols, so it cannot be unloaded"
    version, signature, exports = None, False, []
    for kind, _, command in commands(part):
        if kind in (LC_BUILD_VERSION, LC_VERSION_MIN):
            word = struct.unpack_from("<I", command, 12 if kind == LC_BUILD_VERSION else 8)[0]
            version = (word >> 16, word >> 8 & 0xFF)
        elif kind in LC_DYLIBS:
            library = command[struct.unpack_from("<I", command, 8)[0]:].split(b"\0")[0].decode()
            if not library.startswith(SYSTEM_LIBRARIES):
                yield f"needs {library}, which is no system library"
        elif kind == LC_CODE_SIGNATURE:
            signature = is_adhoc(part, command)
        elif kind == LC_SYMTAB:
            found = list(symbols(part, command))
            exports = [name for name, exported, _ in found if exported]
            weak = [name for name, exported, is_weak in found if is_weak and exported]
            if weak:
                yield f"has weak definitions: {', '.join(weak[:3])}"
    if version != MIN_VERSION:
        yield f"is for macOS {'.'.join(map(str, version or ('?',)))} and later, 11.0 was expected"
    if exports != [EXPORT]:
        yield f"exports {', '.join(exports[:4]) or 'nothing'}; {EXPORT} alone was expected"
    if not signature:
        yield "has no ad-hoc signature"


def module_faults(path):
    found = dict(parts(path.read_bytes()))
    if set(found) != set(ARCHITECTURES.values()):
        yield f"{path}: contains {', '.join(sorted(found)) or 'no Mach-O code'}; arm64 and x86_64 were expected"
    for name, part in found.items():
        for fault in part_faults(part):
            yield f"{path} ({name}): {fault}"


def property_list(path):
    """The properties in a resource file with one PiPL, by key."""
    data = path.read_bytes()
    at = struct.unpack_from(">I", data, 0)[0] + 4 + 8  # data, length, version and count
    count = struct.unpack_from(">I", data, at - 4)[0]
    properties = {}
    for _ in range(count):
        key, size = data[at + 4:at + 8].decode(), struct.unpack_from(">I", data, at + 12)[0]
        properties[key] = data[at + 16:at + 16 + size]
        at += 16 + size
    return properties


def expected_numbers(config):
    """Version and flags, computed from config.xml by the rules of the host API."""
    def number(key):
        match = re.search(f"<{key}>\\s*(\\d+)", config)
        return int(match[1]) if match else 0
    major, minor, build, stage = (number(f"{n}_VERSION") for n in ("MAJOR", "MINOR", "BUILD", "STAGE"))
    version = (major >> 3 & 7) << 26 | (major & 7) << 19 | (minor & 15) << 15 | (stage & 3) << 9 | build & 0x1FF
    return {"eVER": version, "eGLO": number("FLAGS") | ALWAYS_SET, "eGL2": number("FLAGS2")}


def bundle_faults(bundle, effect):
    contents = bundle / "Contents"
    info = plistlib.loads((contents / "Info.plist").read_bytes())
    module = contents / "MacOS" / info["CFBundleExecutable"]
    if not module.is_file():
        yield f"{bundle}: Info.plist names {module.name}, which is not in Contents/MacOS"
        return
    yield from module_faults(module)
    resource = contents / "Resources" / (module.name + ".rsrc")
    if not resource.is_file():
        yield f"{bundle}: has no property list (Contents/Resources/{resource.name})"
        return
    properties = property_list(resource)
    for key in ("mi64", "ma64"):
        entry = properties.get(key, b"\0")
        if "_" + entry[1:1 + entry[0]].decode() != EXPORT:
            yield f"{resource}: {key} names {entry[1:1 + entry[0]].decode()!r}, not the exported function"
    if effect:
        for key, value in expected_numbers((effect / "config.xml").read_text()).items():
            has = struct.unpack(">I", properties[key])[0]
            if has != value:
                yield f"{resource}: {key} is {has:#x}, but the module computes {value:#x}"


def main():
    path = Path(sys.argv[1])
    effect = Path(sys.argv[2]) if len(sys.argv) > 2 else None
    found = list(bundle_faults(path, effect) if path.is_dir() else module_faults(path))
    for fault in found:
        print(fault)
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
