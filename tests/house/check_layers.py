#!/usr/bin/env python3
"""Checks that every include line follows a link edge of CMake, and that the documents name the same edges.

    check_layers.py LINK_GRAPH [ROOT]

LINK_GRAPH is the file that cmake/LinkGraph.cmake writes at configure time. The rules:

1. A file includes a header of another room only when its target links that room: directly, or through links that
   are PUBLIC on the way. The same holds for the outside libraries that fx_library declares.
2. A header that other rooms include needs only PUBLIC links of its room.
3. A room links only rooms above it in the list of the root CMakeLists.txt. So there are no circles.
4. README.md lists the rooms in that order, and docs/architecture.md lists the direct links of each room.
5. The line "May see:" in a room's README names every room that its files include, and no room that it does not link.

Prints one line for each offence, and exits with 1 when there is any.
"""
import re
import sys
from collections import defaultdict
from functools import lru_cache
from pathlib import Path

INCLUDE = re.compile(r'^#\s*include\s+["<]([^">]+)[">]', re.M)


class Graph:
    """The targets, their sources and their links, as CMake knows them."""

    def __init__(self, text):
        self.rooms, self.folder, self.prefixes = [], {}, {}
        self.sources, self.public, self.links = defaultdict(list), defaultdict(set), defaultdict(set)
        for line in text.splitlines():
            kind, name, value = (line + " ").split(" ")[:3]
            if kind == "room":
                self.rooms.append(name)
            elif kind == "target":
                self.folder[name] = value
            elif kind == "source":
                self.sources[name].append(value)
            elif kind == "header":
                self.prefixes[value] = name
            elif kind == "private":
                self.links[name].add(value)
            else:
                self.public[name].add(value)
        for name, public in self.public.items():
            self.links[name] |= public

    def visible(self, target, public_only=False):
        """The targets whose headers this target may include, itself among them."""
        seen, waiting = {target}, list((self.public if public_only else self.links)[target])
        while waiting:
            name = waiting.pop()
            if name not in seen:
                seen.add(name)
                waiting.extend(self.public[name])
        return seen

    def target_of(self, room):
        """The target that compiles a room: the one of its name, or else the only one of its folder."""
        named = [name for name, folder in self.folder.items() if folder == room]
        return room if room in named else named[0]

    def room_of(self, target):
        folder = self.folder.get(target, "")
        return folder if folder in self.rooms else None

    def linked_rooms(self, room):
        """The rooms that a room links directly. An interface library within a room counts as its room."""
        return {self.room_of(link) for link in self.links[self.target_of(room)]} - {None, room}


class Tree:
    """The sources below the root, and which target provides each header that they include."""

    def __init__(self, root, graph):
        self.root, self.graph = root, graph
        self.bare_headers = {path.name for path in (root / "sdk").rglob("*.h")}
        self.libraries = {folder: name for name, folder in graph.folder.items()
                          if "/" in folder and not name.endswith("_tests")}

    @lru_cache(maxsize=None)
    def includes(self, path):
        return INCLUDE.findall((self.root / path).read_text())

    def files(self, room):
        return sorted(str(path.relative_to(self.root)) for path in (self.root / room).rglob("*")
                      if path.suffix in (".h", ".cpp"))

    def provider(self, name):
        """The target that provides the header of this name. None for standard headers and those of the tests."""
        prefix = max((p for p in self.graph.prefixes if name.startswith(p)), key=len, default=None)
        if prefix:
            return self.graph.prefixes[prefix]
        if name in self.bare_headers:
            return "sdk"
        folder = str(Path(name).parent)
        if folder in self.libraries and (self.root / name).exists():
            return self.libraries[folder]
        room = name.split("/")[0]
        return room if room in self.graph.rooms and "/" in name else None

    def with_own_headers(self, sources):
        """These files and the headers that they include and no target provides, such as tests/support."""
        seen, waiting = set(), list(sources)
        while waiting:
            path = waiting.pop()
            if path in seen or not (self.root / path).exists():
                continue
            seen.add(path)
            waiting.extend(n for n in self.includes(path) if "/" in n and self.provider(n) is None)
        return sorted(seen)


def room_offences(graph, tree, room):
    target = graph.target_of(room)
    shown = set()  # headers of this room that another room includes, directly or through another header
    waiting = [name for other in graph.rooms if other != room for path in tree.files(other)
               for name in tree.includes(path) if name.startswith(room + "/")]
    while waiting:
        name = waiting.pop()
        if name not in shown and (tree.root / name).exists():
            shown.add(name)
            waiting.extend(n for n in tree.includes(name) if n.startswith(room + "/"))
    for path in tree.files(room):
        for name in tree.includes(path):
            provider = tree.provider(name)
            if provider is None or graph.room_of(provider) == room:
                continue
            if provider not in graph.visible(target):
                yield f"{path}: includes {name}, but {room} does not link {provider}"
            elif path in shown and provider not in graph.visible(target, public_only=True):
                yield f"{path}: other rooms include it, so {room} must link {provider} as PUBLIC (for {name})"


def program_offences(graph, tree, target):
    for path in tree.with_own_headers(graph.sources[target]):
        for name in tree.includes(path):
            provider = tree.provider(name)
            if provider and provider not in graph.visible(target) and graph.folder.get(provider) != graph.folder[target]:
                yield f"{path}: includes {name}, but {target} does not link {provider}"


def order_offences(graph):
    for index, room in enumerate(graph.rooms):
        for link in sorted(graph.linked_rooms(room) - set(graph.rooms[:index])):
            yield f"{room}/CMakeLists.txt: links {link}, which is not above it in the root CMakeLists.txt"


def table_offences(graph, root):
    """The lists of rooms in the README and in the architecture page."""
    listed = []
    for line in re.findall(r"^\| (`[a-z/`, ]+`) \|", (root / "README.md").read_text(), re.M):
        listed += re.findall(r"`([a-z]+)/`", line)
    if listed != graph.rooms:
        yield f"README.md: lists the rooms {' '.join(listed)}; CMakeLists.txt adds {' '.join(graph.rooms)}"
    rows = re.findall(r"^\| `([a-z]+)/` \|[^|]*\| ([^|]*) \|", (root / "docs/architecture.md").read_text(), re.M)
    if [room for room, _ in rows] != graph.rooms:
        yield "docs/architecture.md: the rooms are not those of CMakeLists.txt, in its order"
    for room, sees in rows:
        linked = graph.linked_rooms(room)
        if {word for word in re.findall(r"[a-z]+", sees) if word in graph.rooms} != linked:
            yield f"docs/architecture.md: {room} links {', '.join(sorted(linked)) or 'nothing'}"


def readme_offences(graph, tree, room):
    text = (tree.root / room / "README.md").read_text()
    match = re.search(r"May see:\s+(.*?)(?:\.\s|$)", text, re.S)
    if not match:
        yield f"{room}/README.md: has no line 'May see:'"
        return
    named = {word for word in re.findall(r"[a-z]+", match[1]) if word in graph.rooms} - {room}
    providers = {tree.provider(name) for path in tree.files(room) for name in tree.includes(path)}
    included = {graph.room_of(provider) for provider in providers} - {None, room}
    visible = {graph.room_of(target) for target in graph.visible(graph.target_of(room))}
    for missing in sorted(included - named):
        yield f"{room}/README.md: 'May see' lacks {missing}, whose headers are included"
    for extra in sorted(named - visible):
        yield f"{room}/README.md: 'May see' names {extra}, which {room} does not link"


def offences(graph, root):
    tree = Tree(root, graph)
    yield from order_offences(graph)
    yield from table_offences(graph, root)
    for room in graph.rooms:
        yield from room_offences(graph, tree, room)
        yield from readme_offences(graph, tree, room)
    for target in graph.folder:
        if target not in graph.rooms:
            yield from program_offences(graph, tree, target)


def main():
    root = Path(sys.argv[2] if len(sys.argv) > 2 else ".")
    found = list(offences(Graph(Path(sys.argv[1]).read_text()), root))
    for line in found:
        print(line)
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
