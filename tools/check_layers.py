#!/usr/bin/env python3
"""Holds every #include to the plan of the house.

- One folder under src/, one library: marlune_<folder>. Every file of the folder, headers without a .cpp too, belongs to it.
- A file may include only its own folder and what its library's LINKS name themselves, not through others; a program
  (marlune_program) likewise. LINKS name nothing that isn't included.
- No two folders and no two files include each other, over however many.
- State has one owner: only the room in OWNERS, and the file that defines it, calls write() of an Owned.
- Each function that docs/architecture.md names with a file stands in that file.
- Only the rooms that paint know Qt; no `extern` in a .cpp under src/.
"""
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SRC = ROOT / "src"
PAINTERS = {"picture", "windows", "desktop"}
OWNERS = {
    "transportState": "transport",
    "clockState": "transport",
    "songPosition": "song",
    "recordingState": "project",
    "grooveState": "panel",
    "editingState": "panel",
    "patternClipboard": "edit",
    "songClipboard": "edit",
    "barKnobClipboard": "edit",
    "laneClipboard": "edit",
}


def words_after(words, key):
    """The words behind a keyword of a CMake call, up to the next keyword."""
    if key not in words:
        return []
    rest = words[words.index(key) + 1 :]
    stops = [i for i, word in enumerate(rest) if word in ("SOURCES", "LINKS")]
    return rest[: stops[0]] if stops else rest


def units():
    """(name, files, linked folders) of each library and each program."""
    for cmake in sorted(SRC.glob("*/CMakeLists.txt")):
        folder = cmake.parent
        text = re.sub(r"#.*", "", cmake.read_text())
        programs = {}
        for body in re.findall(r"marlune_program\(([^)]*)\)", text):
            words = body.split()
            programs[words[0]] = ({folder / s for s in words_after(words, "SOURCES")}, words_after(words, "LINKS"))
        taken = set().union(*(files for files, _ in programs.values())) if programs else set()
        for body in re.findall(r"marlune_library\(([^)]*)\)", text):
            words = body.split()
            files = {f for f in folder.iterdir() if f.suffix in (".h", ".cpp")} - taken
            yield words[0], folder, files, words_after(words, "LINKS")
            built = {folder / s for s in words_after(words, "SOURCES") if "$" not in s}
            for file in files:
                if file.suffix == ".cpp" and file not in built:
                    yield f"{file.relative_to(ROOT)} is in no library", folder, set(), []
        for name, (files, links) in programs.items():
            yield name, folder, files, links


def includes(path):
    for target in re.findall(r'^#include "([^"]+)"', path.read_text(), re.M):
        file = SRC / target
        if file.exists():
            yield file


def check_units(errors):
    arrows = {}
    for name, folder, files, links in units():
        if not files:
            errors.append(name)
            continue
        is_library = name == "marlune_" + folder.name
        if not is_library and files and name.startswith("marlune_"):
            errors.append(f"src/{folder.name}: its library is called {name}")
        linked = {link.removeprefix("marlune_") for link in links if link.startswith("marlune_")}
        used = {folder.name}
        for file in sorted(files):
            for target in includes(file):
                other = target.parent.name
                used.add(other)
                if other not in linked and (other != folder.name):
                    errors.append(f"{file.relative_to(ROOT)} includes {target.relative_to(SRC)}, "
                                  f"which {name} does not link")
        errors += [f"{name} links {extra} and includes nothing of it" for extra in sorted(linked - used)]
        if is_library:
            arrows[folder.name] = linked
    check_circles(arrows, "folders in a circle: ", errors)


def check_circles(graph, words, errors):
    state = {}

    def visit(place, trail):
        state[place] = 1
        for target in sorted(graph.get(place, [])):
            if state.get(target) == 1:
                errors.append(words + " -> ".join(map(str, trail[trail.index(target):] + [target])))
            elif target not in state:
                visit(target, trail + [target])
        state[place] = 2

    for place in sorted(graph):
        if place not in state:
            visit(place, [place])


def check_words(errors):
    for file in sorted(SRC.rglob("*.h")) + sorted(SRC.rglob("*.cpp")):
        text = file.read_text()
        if file.parent.name not in PAINTERS and re.search(r"#include [<\"]Q", text):
            errors.append(f"{file.relative_to(ROOT)} knows Qt")
        if file.suffix == ".cpp" and re.search(r"^\s*extern\b(?! \"C\")", text, re.M):
            errors.append(f"{file.relative_to(ROOT)} has an extern of its own")


def check_owners(errors):
    sources = {file: file.read_text() for file in sorted(SRC.rglob("*.h")) + sorted(SRC.rglob("*.cpp"))}
    declared = {}
    for file, text in sources.items():
        for name in re.findall(r"^extern Owned<\w+> (\w+);", text, re.M):
            declared[name] = file
    errors += [f"{declared[name].relative_to(ROOT)}: {name} has no owner" for name in declared.keys() - OWNERS.keys()]
    for file, text in sources.items():
        for name in re.findall(r"\b(\w+)\.write\(\)", text):
            home = declared.get(name)
            if home and file.parent.name != OWNERS.get(name) and file.with_suffix("") != home.with_suffix(""):
                errors.append(f"{file.relative_to(ROOT)} writes {name}, which {OWNERS.get(name)} owns")


def check_roads(errors):
    for names, file in re.findall(r"((?:`[\w:]+`, )*`[\w:]+`) \(([a-z_]+/[a-z_0-9]+\.cpp)\)",
                                  (ROOT / "docs/architecture.md").read_text()):
        text = (SRC / file).read_text() if (SRC / file).exists() else ""
        for name in re.findall(r"`([\w:]+)`", names):
            if not re.search(rf"^[\w:&<>*\s]*\b{name.replace('::', '::')}\(|::{name}\(", text, re.M):
                errors.append(f"docs/architecture.md: there is no {name} in src/{file}")


def main():
    errors = []
    check_units(errors)
    check_circles({f: list(includes(f)) for f in SRC.rglob("*.h")}, "include circle: ", errors)
    check_words(errors)
    check_owners(errors)
    check_roads(errors)
    print("\n".join(errors))
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
