#!/usr/bin/env python3
"""Turns src/picture/panel.json into src/picture/layout_table.cpp.

usage: tools/make_layout.py      (from anywhere; rewrites the checked-in table)
"""
import json
import pathlib

HERE = pathlib.Path(__file__).resolve().parent.parent / "src" / "picture"
MODULES = {"103A": 0, "103B": 1, "109": 2, "strip": 3}


def rect(box):
    return "{%d, %d, %d, %d}" % (box["x"], box["y"], box["width"], box["height"])


def control_row(c):
    return "    {Control::%s, %d, %s, %d, %s, %d, %d, %d}," % (
        c["name"], c["index"], rect(c), c["layer"], str(c["interactive"]).lower(), MODULES[c["module"]],
        c.get("strip", c.get("matrixPitch", 0)), c.get("matrixSlots", 0))


def glyph_row(char, rows):
    return "    {'%s', {%s}}," % (char, ", ".join("0b" + row for row in rows))


def main():
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
