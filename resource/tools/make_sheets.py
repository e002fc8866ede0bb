#!/usr/bin/env python3
"""Writes the style sheets and the colour service's palette.json of every
skin, from the templates beside this file and the skin's colour table
(see skin_colours.py).

The skins share one set of rules and differ in colour only, so each rule is
written once, in templates/<path>.qss, with @name@ tokens that are filled
from the colour table of each skin. Sheets that the suite looks up with a scale suffix
(the view sheets) also get a "_3K" variant for QT_SCALE_FACTOR 1.5 whose
metrics are even, so that at 1.5x every border, radius and padding lands on
whole device pixels. At 2x every metric is whole already and the plain
sheet is used.

    python3 resource/tools/make_sheets.py [SKIN_ROOT]
"""

import json
import os
import re
import sys

import skin_colours

HERE = os.path.dirname(os.path.abspath(__file__))
TEMPLATES = os.path.join(HERE, "templates")

# The colour service's named colours (palette.json of each skin): section ->
# name -> the colour of the table it takes.
PALETTE = {
    "Common": {
        "<BgColor_Common>": "bar",
        "<BgColor_Panel>": "panel",
        "<BgColor_Hover>": "hover",
        "<BgColor_Pressed>": "pressed",
        "<BgColor_Selected>": "selected",
        "<BorderColor_Common>": "border",
        "<FontColor_Common>": "text",
        "<FontColor_Secondary>": "text2",
        "<FontColor_Disabled>": "textoff",
        "<AccentColor_Common>": "accent",
        "<AccentColor_Hover>": "accenthover",
        "<ErrorColor_Common>": "error",
    },
    "ModuleKoPlayer": {
        "<BgColor_Video>": "video",
        "<ProgressColor_Played>": "accent",
        "<ProgressColor_Groove>": "groove",
        "<ProgressColor_Handle>": "handle",
    },
    "ModulePassengerFlowStatistic": {
        "<FontColor_Pass>": "accent",
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
    root = skin_colours.skin_root()
    for skin, colours in skin_colours.tables().items():
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
                out = os.path.join(root, skin, out_rel)
                os.makedirs(os.path.dirname(out), exist_ok=True)
                header = ("/* %s skin. Written by resource/tools/make_sheets.py from "
                          "resource/tools/templates/%s; edit the template. */\n" % (skin, rel))
                with open(out, "w", encoding="utf-8") as handle:
                    handle.write(header + fill(text, values, rel))
        palette = {section: {name: colours[colour] for name, colour in names.items()}
                   for section, names in PALETTE.items()}
        with open(os.path.join(root, skin, "palette.json"), "w", encoding="utf-8") as handle:
            handle.write(json.dumps(palette, indent=4) + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
