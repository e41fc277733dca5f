#!/usr/bin/env python3
"""Turns src/picture/panel.json into src/picture/layout_table.cpp, and src/score/windows.json into
src/score/windows_table.cpp.

usage: tools/make_layout.py      (from anywhere; rewrites the checked-in tables)
"""
import json
import pathlib

SOURCES = pathlib.Path(__file__).resolve().parent.parent / "src"
HERE = SOURCES / "picture"
SCORE = SOURCES / "score"
MODULES = {"103A": 0, "103B": 1, "109": 2, "strip": 3}


def rect(box):
    return "{%d, %d, %d, %d}" % (box["x"], box["y"], box["width"], box["height"])


def control_row(c):
    return "    {Control::%s, %d, %s, %d, %s, %d, %d, %d}," % (
        c["name"], c["index"], rect(c), c["layer"], str(c["interactive"]).lower(), MODULES[c["module"]],
        c.get("strip", c.get("matrixPitch", 0)), c.get("matrixSlots", 0))


def glyph_row(char, rows):
    return "    {'%s', {%s}}," % (char, ", ".join("0b" + row for row in rows))


def number(value):
    """What follows from the state of the window counts as 0 here."""
    return "%g" % value if isinstance(value, (int, float)) else "0"


RENAMED = {"delete": "remove"}  # what the language keeps for itself


def grid_row(part, c):
    box = ", ".join(number(c[k]) for k in ("x", "y", "width", "height"))
    hit = ", ".join(number(v) for v in c.get("hit", (0, 0, 0, 0)))
    return "    {%s::%s, {{%s}, %d, %d, %s, %s, %d, %s, {%s}}, %s}," % (
        part, RENAMED.get(c["name"], c["name"]), box, c.get("columns", 1), c.get("rows", 1), number(c.get("pitchX", 0)),
        number(c.get("pitchY", 0)), c.get("groupEvery", 0), number(c.get("groupGap", 0)), hit,
        str("perModule" in c).lower())


def grid_table(name, part, groups):
    rows = [grid_row(part, c) for group in groups for c in group]
    return ["constexpr Placed<%s> %s[] = {" % (part, name)] + rows + ["};"]


def make_windows():
    windows = json.loads((SCORE / "windows.json").read_text())
    sheet, compact, song = windows["sheet"], windows["sheetCompact"], windows["map"]
    lines = ["// Made by tools/make_layout.py from windows.json: change that file, then run the script.", "",
             '#include "score/map_layout.h"', '#include "score/sheet_layout.h"', "", "namespace marlune {", "",
             "namespace {", "", "// clang-format off"]
    lines += grid_table("kWide", "SheetPart", [sheet[k] for k in ("controls", "module", "bass", "drums")]) + [""]
    lines += grid_table("kCompact", "SheetPart", [compact["controls"]]) + [""]
    lines += grid_table("kMap", "MapPart", [song["controls"]])
    lines += ["// clang-format on", "", "} // namespace", "",
              "std::span<const Placed<SheetPart>> sheetTable(SheetForm form) {",
              "    if (form == SheetForm::compact) return kCompact;", "    return kWide;", "}", "",
              "std::span<const Placed<MapPart>> mapTable() {", "    return kMap;", "}", "",
              "} // namespace marlune", ""]
    (SCORE / "windows_table.cpp").write_text("\n".join(lines))


def main():
    make_windows()
    panel = json.loads((HERE / "panel.json").read_text())
    regions = panel["regions"]
    lines = ["// Made by tools/make_layout.py from panel.json: change that file, then run the script.", "",
             '#include "picture/layout.h"', "", "namespace marlune {", "", "namespace {", "",
             "// clang-format off",
             "constexpr PlacedControl kControlTable[] = {"]
    lines += [control_row(c) for c in panel["controls"]]
    lines += ["};", "", "constexpr MatrixGlyph kGlyphTable[] = {"]
    lines += [glyph_row(*g) for g in panel["matrixFont"]["glyphs"].items()]
    lines += ["};", "// clang-format on", "", "} // namespace", "",
              "std::span<const PlacedControl> designedControls() {", "    return kControlTable;", "}", "",
              "std::span<const MatrixGlyph> matrixGlyphs() {", "    return kGlyphTable;", "}", "",
              "// clang-format off",
              "const PanelRegions kRegions{",
              "    %s," % rect(regions["strip"]), "    %s," % rect(regions["brand"]),
              "    %s," % rect(regions["songBox"]),
              "    {{%s}}," % ", ".join("{%s}" % rect(regions["module" + m])[1:-1] for m in ("103A", "103B", "109")),
              "    {{%s}}," % ",\n      ".join(rect(r) for r in regions["drumChannels"]),
              "};", "// clang-format on", "", "} // namespace marlune", ""]
    (HERE / "layout_table.cpp").write_text("\n".join(lines))


if __name__ == "__main__":
    main()
