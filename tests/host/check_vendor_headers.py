"""Compiles each source that sees the host API alone against headers that are laid out and guarded like the vendor's SDK.

Usage: check_vendor_headers.py COMPILER SOURCE_FOLDER

The headers of sdk/ are copied into a stand-in for the SDK. Each copy loses its #include lines of other headers of the
host API, because the published headers cannot be relied on to include each other, and refuses to compile unless
AEConfig.h came first. A source that compiles here includes every header that it needs, in a working order.
"""

import concurrent.futures
import os
import pathlib
import re
import subprocess
import sys
import tempfile

# Folders of the SDKs, and the headers that are not in the first one.
FOLDERS = ["Headers", "Headers/SP", "Util", "Premiere"]
FOLDER_OF = {
    "SPBasic.h": "Headers/SP",
    "SPErrorCodes.h": "Headers/SP",
    "SPTypes.h": "Headers/SP",
    "AEGP_SuiteHandler.h": "Util",
    "PrSDKTypes.h": "Premiere",
    "PrSDKSequenceInfoSuite.h": "Premiere",
}
# The suite handler is the only header that brings what its own functions need.
KEPT_INCLUDES = {"AEGP_SuiteHandler.h": ["SPBasic.h", "SPErrorCodes.h"]}
ROOMS = ["host", "plugin", "stricthost", "traceprobe"]
OWN_HEADERS = ["PixelFormats.h", "HostApi.h", "SuitesApi.h", "PremiereApi.h"]  # of the project, in use with either SDK

GUARDED = """#ifndef STANDIN_{name}
#define STANDIN_{name}
#include <adobesdk/config/PreConfig.h>
#ifndef STANDIN_PLATFORM
#error "AEConfig.h selects the platform and must be included first"
#endif
{text}
#include <adobesdk/config/PostConfig.h>
#endif
"""
CONFIG = "#ifndef STANDIN_PLATFORM\n#define STANDIN_PLATFORM\n#endif\n"

# Sources that must be rejected; otherwise the stand-in checks nothing.
REJECTED = {
    "no AEConfig.h": '#include "AE_Effect.h"\n',
    "no AE_EffectCB.h": '#include "host/CommandCall.h"\n#include "AE_EffectSuites.h"\n'
    "auto size = sizeof(PF_EffectUISuite1) + sizeof(PF_ParamUtilsSuite3) + sizeof(PF_HandleSuite1);\n",
    "no PrSDKPixelFormat.h": '#include "sdk/HostApi.h"\n#include "PrSDKAESupport.h"\n',
}


def strip(name, text):
    """The text of a header without its guard and without includes of other headers of the API."""
    kept = KEPT_INCLUDES.get(name, [])
    lines = []
    for line in text.splitlines():
        include = re.match(r'#include "(.*)"', line)
        if line == "#pragma once" or include and include.group(1) not in kept:
            continue
        lines.append(line)
    return "\n".join(lines)


def later_names(text):
    """The text of AE_Effect.h as it is from 25.6 on, where macros hide the names of parameters."""
    definition = text.index("typedef struct PF_ParamDef")
    name = text.index("A_char name[32];", definition)
    return (
        text[:name]
        + text[name:].replace("name[32]", "name_do_not_use_directly[32]", 1)
        + "\n#define PF_DEF_NAME name_do_not_use_directly"
        + "\n#define PF_DEF_NAMEPTR nameptr\n#define PF_DEF_NAMESPTR namesptr"
    )


def write_sdk(root, sources, later):
    for folder in FOLDERS + ["Headers/adobesdk/config"]:
        (root / folder).mkdir(parents=True, exist_ok=True)
    (root / "Headers/adobesdk/config/PreConfig.h").write_text("#pragma pack(push, AdobeSDKExternalAlign, 8)\n")
    (root / "Headers/adobesdk/config/PostConfig.h").write_text("#pragma pack(pop, AdobeSDKExternalAlign)\n")
    for header in sources:
        if header.name in OWN_HEADERS:
            continue
        text = strip(header.name, header.read_text())
        if later and header.name == "AE_Effect.h":
            text = later_names(text)
        if header.name == "AEConfig.h":
            text = CONFIG + text
        else:
            text = GUARDED.format(name=header.stem, text=text)
        (root / FOLDER_OF.get(header.name, "Headers") / header.name).write_text(text)


def main(compiler, source_folder):
    source_folder = pathlib.Path(source_folder)
    sources = [source for room in ROOMS for source in sorted((source_folder / room).glob("*.cpp"))]
    headers = sorted((source_folder / "sdk").glob("*.h")) + sorted((source_folder / "sdk/premiere").glob("*.h"))
    assert sources and headers
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        write_sdk(folder / "earlier", headers, later=False)
        write_sdk(folder / "later", headers, later=True)

        def errors(source, sdk):
            command = [compiler, "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", "-I", source_folder]
            command.append('-DFX_MODULE_FOLDER=""')
            for part in FOLDERS:
                command += ["-isystem", folder / sdk / part]
            result = subprocess.run(command + [source], capture_output=True, text=True)
            return result.stderr if result.returncode else ""

        jobs = [(source, "earlier") for source in sources]
        jobs += [(source, "later") for source in sources if "PF_DEF_NAME" in source.read_text()]
        expected_failures = []
        for number, (name, text) in enumerate(REJECTED.items()):
            source = folder / f"rejected{number}.cpp"
            source.write_text(text)
            expected_failures.append((name, source))
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            results = list(pool.map(lambda job: errors(*job), jobs))
            accepted = [name for name, source in expected_failures if not errors(source, "earlier")]
    failures = [f"{source.name}, {sdk} headers:\n{text}" for (source, sdk), text in zip(jobs, results) if text]
    failures += [f"the stand-in accepts a source with {name}" for name in accepted]
    print("\n".join(failures) or f"{len(jobs)} compilations passed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
