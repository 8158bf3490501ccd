#!/usr/bin/env python3
"""Gives check_layers.py a small tree with one fault at a time, and expects exactly the line that names it."""
import tempfile
import unittest
from pathlib import Path

from check_layers import Graph, offences

GRAPH = """room ground
room middle
room top
target ground ground
target middle middle
target top top
target top_tests tests/top
source top_tests tests/top/TopTest.cpp
header zip zip.h
private middle ground
public top middle
private top zip
private top_tests top
"""
FILES = {
    "README.md": "| `ground/` | a |\n| `middle/`, `top/` | b |\n",
    "docs/architecture.md": "| `ground/` | a | nothing |\n| `middle/` | b | ground |\n| `top/` | c | middle, libzip |\n",
    "ground/README.md": "May see: nothing. Start here.",
    "ground/Ground.h": "#include <string>\n",
    "middle/README.md": "May see: ground. Start here.",
    "middle/Middle.h": '#include "middle/Part.h"\n',
    "middle/Part.h": "",
    "middle/Middle.cpp": '#include "ground/Ground.h"\n',
    "top/README.md": "May see: middle, libzip. Start here.",
    "top/Top.cpp": '#include "middle/Middle.h"\n#include <zip.h>\n',
    "tests/top/TopTest.cpp": '#include "middle/Middle.h"\n#include "tests/support/Files.h"\n',
    "tests/support/Files.h": "",
}


def found(graph=GRAPH, **changes):
    """The offences in the sample tree when these files have other texts."""
    with tempfile.TemporaryDirectory() as folder:
        for path, text in {**FILES, **changes}.items():
            target = Path(folder) / path
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_text(text)
        return list(offences(Graph(graph), Path(folder)))


class LayersTest(unittest.TestCase):
    def test_sample_tree_has_no_offence(self):
        self.assertEqual(found(), [])

    def test_each_fault_is_reported_with_file_and_missing_edge(self):
        ground = '#include "ground/Ground.h"\n'
        rows = [
            ("private link of a linked room", {"top/Top.cpp": ground}, "top does not link ground"),
            ("header-only use of a higher room", {"ground/Ground.h": '#include "middle/Part.h"\n'},
             "ground does not link middle"),
            ("library that is not linked", {"middle/Middle.cpp": "#include <zip.h>\n"}, "middle does not link zip"),
            ("shown header behind a private link", {"middle/Part.h": ground}, "middle must link ground as PUBLIC"),
            ("test behind a private link", {"tests/top/TopTest.cpp": ground}, "top_tests does not link ground"),
            ("header of the tests", {"tests/support/Files.h": ground}, "top_tests does not link ground"),
            ("list of rooms", {"README.md": "| `middle/`, `ground/`, `top/` | b |\n"}, "README.md: lists the rooms"),
            ("edge that is not documented", {"docs/architecture.md": FILES["docs/architecture.md"].replace(
                "ground |\n| `top", "nothing |\n| `top")}, "docs/architecture.md: middle links ground"),
            ("room's README lacks a room", {"middle/README.md": "May see: nothing. Start here."}, "lacks ground"),
            ("room's README names too much", {"ground/README.md": "May see: middle. Start here."}, "names middle"),
        ]
        for name, changes, expected in rows:
            with self.subTest(name):
                self.assertTrue(any(expected in line for line in found(**changes)), found(**changes))

    def test_link_to_a_higher_room_is_reported(self):
        self.assertIn("ground/CMakeLists.txt: links top, which is not above it in the root CMakeLists.txt",
                      found(GRAPH + "private ground top\n"))


if __name__ == "__main__":
    unittest.main()
