#!/usr/bin/env python3
"""Holds every #include to the plan of the house.

- A library may include only what its LINKS name, directly or through them (marlune_library in CMakeLists.txt).
- No two files include each other, over however many files.
- Qt stays in src/desktop/; no `extern` in a .cpp under src/.
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SRC = ROOT / "src"


def libraries():
    """Library name -> (its files, the libraries it links)."""
    found = {}
    for cmake in SRC.rglob("CMakeLists.txt"):
        text = re.sub(r"#.*", "", cmake.read_text())
        for body in re.findall(r"marlune_library\(([^)]*)\)", text):
            words = body.split()
            sources = words[words.index("SOURCES") + 1 : words.index("LINKS") if "LINKS" in words else None]
            links = words[words.index("LINKS") + 1 :] if "LINKS" in words else []
            stems = {(cmake.parent / s).with_suffix("") for s in sources}
            found[words[0]] = (stems, links)
    return found


def reach(libs, name, seen):
    if name in seen or name not in libs:
        return seen
    seen.add(name)
    for link in libs[name][1]:
        reach(libs, link, seen)
    return seen


def includes(path):
    for target in re.findall(r'^#include "([^"]+)"', path.read_text(), re.M):
        file = SRC / target
        if file.exists():
            yield file


def check_libraries(libs, errors):
    owner = {stem: name for name, (stems, _) in libs.items() for stem in stems}
    for name, (stems, _) in libs.items():
        allowed = reach(libs, name, set())
        for stem in stems:
            for file in (stem.with_suffix(".h"), stem.with_suffix(".cpp")):
                if not file.exists():
                    continue
                for target in includes(file):
                    other = owner.get(target.with_suffix(""))
                    if other and other not in allowed:
                        errors.append(f"{file.relative_to(ROOT)} includes {target.relative_to(SRC)} of {other}, "
                                      f"which {name} does not link")


def check_circles(errors):
    graph = {f: list(includes(f)) for f in SRC.rglob("*.h")}
    state = {}

    def visit(file, trail):
        state[file] = 1
        for target in graph.get(file, []):
            if state.get(target) == 1:
                circle = trail[trail.index(target):] if target in trail else [target]
                errors.append("include circle: " + " -> ".join(str(f.relative_to(SRC)) for f in circle + [target]))
            elif target not in state:
                visit(target, trail + [target])
        state[file] = 2

    for file in graph:
        if file not in state:
            visit(file, [file])


def check_words(errors):
    for file in list(SRC.rglob("*.h")) + list(SRC.rglob("*.cpp")):
        text = file.read_text()
        if "desktop" not in file.relative_to(SRC).parts and re.search(r"#include [<\"]Q", text):
            errors.append(f"{file.relative_to(ROOT)} knows Qt")
        if file.suffix == ".cpp" and re.search(r"^\s*extern\b(?! \"C\")", text, re.M):
            errors.append(f"{file.relative_to(ROOT)} has an extern of its own")


def main():
    errors = []
    check_libraries(libraries(), errors)
    check_circles(errors)
    check_words(errors)
    print("\n".join(errors))
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
