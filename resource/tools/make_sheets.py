#!/usr/bin/env python3
"""Writes the style sheets of every skin from the templates beside this file.

The dark and light skins share one set of rules and differ in colour only,
so each rule is written once, in templates/<path>.qss, with @name@ tokens
that are filled per skin. Sheets that the suite looks up with a scale suffix
(the view sheets) also get a "_3K" variant for QT_SCALE_FACTOR 1.5 whose
metrics are even, so that at 1.5x every border, radius and padding lands on
whole device pixels. At 2x every metric is whole already and the plain
sheet is used.

    python3 resource/tools/make_sheets.py
"""

import os
import re
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
TEMPLATES = os.path.join(HERE, "templates")
SKIN_ROOT = os.path.join(HERE, "..", "skin")

COLOURS = {
    "dark": {
        "bar": "#1e1f22",
        "panel": "#26282c",
        "field": "#16171a",
        "button": "#2b2d31",
        "video": "#000000",
        "hover": "#2f3237",
        "pressed": "#383c42",
        "selected": "#1f3a5f",
        "border": "#3a3d42",
        "borderhover": "#50545b",
        "line": "#2f3237",
        "text": "#e6e6e6",
        "text2": "#a0a4ab",
        "textoff": "#5c6068",
        "accent": "#3d8bfd",
        "accenthover": "#5c9dfd",
        "accentpressed": "#2f74dc",
        "accentoff": "#2c2e33",
        "error": "#f0616d",
        "groove": "#3a3d42",
        "grooveoff": "#2c2e32",
        "handle": "#e6e6e6",
        "handleborder": "#e6e6e6",
        "volume": "#a0a4ab",
        "tip": "#2b2d31",
        "scroll": "#45484e",
        "scrollhover": "#5a5e65",
        "close": "#e5484d",
        "closepressed": "#c93a3f",
    },
    "light": {
        "bar": "#f5f6f8",
        "panel": "#ffffff",
        "field": "#ffffff",
        "button": "#ffffff",
        "video": "#000000",
        "hover": "#e8eaee",
        "pressed": "#dcdfe4",
        "selected": "#dbe8fd",
        "border": "#d5d8de",
        "borderhover": "#b4b9c1",
        "line": "#eceef1",
        "text": "#1f2329",
        "text2": "#5f6670",
        "textoff": "#a8adb5",
        "accent": "#1a73e8",
        "accenthover": "#3b87ec",
        "accentpressed": "#1765cc",
        "accentoff": "#e3e5e9",
        "error": "#d93025",
        "groove": "#d5d8de",
        "grooveoff": "#e3e5e9",
        "handle": "#ffffff",
        "handleborder": "#b4b9c1",
        "volume": "#5f6670",
        "tip": "#ffffff",
        "scroll": "#c4c8cf",
        "scrollhover": "#a8adb5",
        "close": "#e5484d",
        "closepressed": "#c93a3f",
    },
}

# Metrics of the scaled sheets: the plain sheet, and the 1.5x one.
METRICS = {
    "": {
        "radius": "3px",
        "font": "13px",
        "btnpad": "5px 15px",
        "fieldpad": "5px 9px",
        "fieldh": "19px",
        "itempad": "3px",
        "hdrpad": "3px 9px",
    },
    "_3K": {
        "radius": "4px",
        "font": "14px",
        "btnpad": "6px 16px",
        "fieldpad": "6px 10px",
        "fieldh": "20px",
        "itempad": "4px",
        "hdrpad": "4px 10px",
    },
}

# Sheets the suite resolves with a scale suffix: the views' own sheets.
SCALED = {
    "ModuleKoPlayer/qss/CLS_DlgQuillPlayer.qss",
    "WgtMsgBox/qss/CLS_WgtMsgBox.qss",
}

TOKEN = re.compile(r"@([a-z0-9]+)@")


def fill(text, values, where):
    def repl(match):
        key = match.group(1)
        if key not in values:
            raise KeyError("%s: unknown token @%s@" % (where, key))
        return values[key]
    return TOKEN.sub(repl, text)


def templates():
    for folder, _dirs, files in os.walk(TEMPLATES):
        for name in sorted(files):
            if name.endswith(".qss"):
                path = os.path.join(folder, name)
                yield os.path.relpath(path, TEMPLATES).replace(os.sep, "/"), path


def main():
    for skin, colours in COLOURS.items():
        for rel, path in templates():
            with open(path, encoding="utf-8") as handle:
                text = handle.read()
            variants = METRICS if rel in SCALED else {"": METRICS[""]}
            for suffix, metrics in variants.items():
                values = dict(colours)
                values.update(metrics)
                values["img"] = "./resource/skin/%s/ModuleKoPlayer/image" % skin
                values["msgimg"] = "./resource/skin/%s/WgtMsgBox/image" % skin
                out_rel = rel[:-len(".qss")] + suffix + ".qss"
                out = os.path.join(SKIN_ROOT, skin, out_rel)
                os.makedirs(os.path.dirname(out), exist_ok=True)
                header = ("/* %s skin. Written by resource/tools/make_sheets.py from "
                          "resource/tools/templates/%s; edit the template. */\n" % (skin, rel))
                with open(out, "w", encoding="utf-8") as handle:
                    handle.write(header + fill(text, values, rel))
    return 0


if __name__ == "__main__":
    sys.exit(main())
