"""The colour table of each skin, colours_<skin>.json beside this file: the
only place a skin's colours are written. make_sheets.py fills the style sheet
templates and the colour service's palette.json from it, make_icons.py the
icons; a new colours_<skin>.json is a new skin.

Both scripts write into resource/skin, or into the folder given as their one
argument (the skin test compares such a fresh copy with the committed tree).
"""

import glob
import json
import os
import sys

HERE = os.path.dirname(os.path.abspath(__file__))


def tables():
    """{skin: {colour name: "#rrggbb"}}, skins in name order."""
    result = {}
    for path in sorted(glob.glob(os.path.join(HERE, "colours_*.json"))):
        skin = os.path.basename(path)[len("colours_"):-len(".json")]
        with open(path, encoding="utf-8") as handle:
            result[skin] = json.load(handle)
    return result


def skin_root():
    if len(sys.argv) > 1:
        return sys.argv[1]
    return os.path.normpath(os.path.join(HERE, "..", "skin"))
