#!/usr/bin/env python3
"""Writes the player's SVG icons for every skin.

Each glyph is drawn once below on a 20 x 20 grid; the skins differ only in
colour, so every skin gets the same set of files in
resource/skin/<skin>/ModuleKoPlayer/image/ (and WgtMsgBox/image/ for the
message box). The generated files are committed: the build only copies them.

    python3 resource/tools/make_icons.py [SKIN_ROOT]

Variants per glyph:
  <name>.svg           the resting look
  <name>_hover.svg     under the mouse (brighter)
  <name>_disabled.svg  the control is disabled (dimmed)
"""

import os
import sys

import skin_colours

STROKE = 'fill="none" stroke="{c}" stroke-width="1.6" stroke-linecap="round" stroke-linejoin="round"'
THIN = 'fill="none" stroke="{c}" stroke-width="1.3" stroke-linecap="round" stroke-linejoin="round"'
FILL = 'fill="{c}" stroke="{c}" stroke-width="1.2" stroke-linejoin="round"'
SOLID = 'fill="{c}"'

# Glyphs: a list of (element, attributes) drawn in order. {c} is the colour.
GLYPHS = {
    # Folder with its tab, for opening a file.
    "open": [
        ("path", 'd="M2.8 5.6 a1.6 1.6 0 0 1 1.6 -1.6 h3.1 l1.9 2 h6.2 a1.6 1.6 0 0 1 1.6 1.6 v7.2 '
                 'a1.6 1.6 0 0 1 -1.6 1.6 h-11.2 a1.6 1.6 0 0 1 -1.6 -1.6 z" ' + STROKE),
        ("path", 'd="M2.8 8.6 h14.4" ' + STROKE),
    ],
    # Bar then a triangle pointing left: one frame back.
    "stepback": [
        ("rect", 'x="4" y="5" width="2" height="10" rx="0.8" ' + SOLID),
        ("path", 'd="M15.2 5.4 v9.2 l-7.2 -4.6 z" ' + FILL),
    ],
    # Two triangles pointing left: slower.
    "slow": [
        ("path", 'd="M9.6 5.2 v9.6 l-6.6 -4.8 z" ' + FILL),
        ("path", 'd="M17 5.2 v9.6 l-6.6 -4.8 z" ' + FILL),
    ],
    "play": [
        ("path", 'd="M6.6 4.6 v10.8 l8.6 -5.4 z" ' + FILL),
    ],
    "pause": [
        ("rect", 'x="5.4" y="4.6" width="3.2" height="10.8" rx="1" ' + SOLID),
        ("rect", 'x="11.4" y="4.6" width="3.2" height="10.8" rx="1" ' + SOLID),
    ],
    "stop": [
        ("rect", 'x="5" y="5" width="10" height="10" rx="1.6" ' + SOLID),
    ],
    # Two triangles pointing right: faster.
    "fast": [
        ("path", 'd="M3 5.2 v9.6 l6.6 -4.8 z" ' + FILL),
        ("path", 'd="M10.4 5.2 v9.6 l6.6 -4.8 z" ' + FILL),
    ],
    # Triangle pointing right then a bar: one frame forward.
    "stepforward": [
        ("path", 'd="M4.8 5.4 v9.2 l7.2 -4.6 z" ' + FILL),
        ("rect", 'x="14" y="5" width="2" height="10" rx="0.8" ' + SOLID),
    ],
    # Four corners pulled outwards.
    "fullscreen": [
        ("path", 'd="M3.6 7.8 v-4.2 h4.2 M12.2 3.6 h4.2 v4.2 M16.4 12.2 v4.2 h-4.2 M7.8 16.4 h-4.2 v-4.2" '
                 + STROKE),
    ],
    "soundon": [
        ("path", 'd="M2.8 7.6 h2.9 l4 -3.4 v11.6 l-4 -3.4 h-2.9 z" ' + FILL),
        ("path", 'd="M12.9 7.4 a3.6 3.6 0 0 1 0 5.2" ' + STROKE),
        ("path", 'd="M15.2 5.2 a6.8 6.8 0 0 1 0 9.6" ' + STROKE),
    ],
    "soundoff": [
        ("path", 'd="M2.8 7.6 h2.9 l4 -3.4 v11.6 l-4 -3.4 h-2.9 z" ' + FILL),
        ("path", 'd="M13 7.6 l4.4 4.8 M17.4 7.6 l-4.4 4.8" ' + STROKE),
    ],
    # A clock face with an arrow turning back around it.
    "history": [
        ("path", 'd="M3.6 10 a6.4 6.4 0 1 0 1.9 -4.5" ' + STROKE),
        ("path", 'd="M3.2 3.6 l0.3 3.3 l3.3 -0.3" ' + STROKE),
        ("path", 'd="M10 6.6 v3.6 l2.4 1.5" ' + STROKE),
    ],
    # Window glyphs: drawn lighter and smaller, like the frame of a window.
    "minimize": [
        ("path", 'd="M5.2 10.4 h9.6" ' + THIN),
    ],
    "maximize": [
        ("rect", 'x="5.2" y="5.2" width="9.6" height="9.6" rx="1.2" ' + THIN),
    ],
    "restore": [
        ("rect", 'x="4.6" y="7.4" width="8" height="8" rx="1.2" ' + THIN),
        ("path", 'd="M7.4 7.4 v-1.6 a1.2 1.2 0 0 1 1.2 -1.2 h5.6 a1.2 1.2 0 0 1 1.2 1.2 v5.6 '
                 'a1.2 1.2 0 0 1 -1.2 1.2 h-1.6" ' + THIN),
    ],
    "close": [
        ("path", 'd="M5.4 5.4 l9.2 9.2 M14.6 5.4 l-9.2 9.2" ' + THIN),
    ],
    # Play inside a ring: continue a history entry from where it stopped.
    "continue": [
        ("circle", 'cx="10" cy="10" r="7.2" ' + STROKE),
        ("path", 'd="M8.4 6.9 v6.2 l4.8 -3.1 z" ' + FILL),
    ],
    # Double chevron to the side: fold the history panel away.
    "arrow": [
        ("path", 'd="M5.6 5.6 l4.4 4.4 l-4.4 4.4 M10.6 5.6 l4.4 4.4 l-4.4 4.4" ' + STROKE),
    ],
    # Small chevron of the speed box; its list opens upwards.
    "comboarrow": [
        ("path", 'd="M5 12.5 l5 -5 l5 5" ' + 'fill="none" stroke="{c}" stroke-width="2" '
                 'stroke-linecap="round" stroke-linejoin="round"'),
    ],
    # Open chevron of the drop-down boxes in the standard dialogs.
    "chevrondown": [
        ("path", 'd="M5 7.5 l5 5 l5 -5" ' + 'fill="none" stroke="{c}" stroke-width="2" '
                 'stroke-linecap="round" stroke-linejoin="round"'),
    ],
    # Eye, open and struck through: show or hide a typed password.
    "eye": [
        ("path", 'd="M1.8 10 c2 -3.8 4.8 -5.6 8.2 -5.6 s6.2 1.8 8.2 5.6 c-2 3.8 -4.8 5.6 -8.2 5.6 '
                 's-6.2 -1.8 -8.2 -5.6 z" ' + STROKE),
        ("circle", 'cx="10" cy="10" r="2.6" ' + STROKE),
    ],
    "eyeoff": [
        ("path", 'd="M1.8 10 c2 -3.8 4.8 -5.6 8.2 -5.6 s6.2 1.8 8.2 5.6 c-2 3.8 -4.8 5.6 -8.2 5.6 '
                 's-6.2 -1.8 -8.2 -5.6 z" ' + STROKE),
        ("circle", 'cx="10" cy="10" r="2.6" ' + STROKE),
        ("path", 'd="M3.4 3.4 l13.2 13.2" ' + STROKE),
    ],
}

# Which looks each glyph needs, and which colour of the skin's table each look
# uses. Only looks that a style sheet refers to are written. "onaccent" glyphs
# sit on the accent-filled play button, "onclose" on the red close button.
PLAYER_SET = {
    "open": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "stepback": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "slow": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "play": {"": "onaccent", "_disabled": "onaccentoff"},
    "pause": {"": "onaccent", "_disabled": "onaccentoff"},
    "stop": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "fast": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "stepforward": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "fullscreen": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "soundon": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "soundoff": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "history": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "minimize": {"": "icon", "_hover": "iconhover"},
    "maximize": {"": "icon", "_hover": "iconhover"},
    "restore": {"": "icon", "_hover": "iconhover"},
    "close": {"": "icon", "_hover": "onclose"},
    "continue": {"": "icon", "_hover": "accent", "_disabled": "iconoff"},
    "arrow": {"": "icon", "_hover": "iconhover"},
    "comboarrow": {"": "icon", "_hover": "iconhover", "_disabled": "iconoff"},
    "chevrondown": {"": "icon"},
}

MSGBOX_SET = {
    "eye": {"": "icon", "_hover": "iconhover"},
    "eyeoff": {"": "icon", "_hover": "iconhover"},
}


def svg(name, colour):
    parts = ['<svg xmlns="http://www.w3.org/2000/svg" width="20" height="20" viewBox="0 0 20 20">']
    for element, attrs in GLYPHS[name]:
        parts.append("  <%s %s/>" % (element, attrs.format(c=colour)))
    parts.append("</svg>")
    return "\n".join(parts) + "\n"


def write_set(out_dir, colours, iconset):
    os.makedirs(out_dir, exist_ok=True)
    for stale in os.listdir(out_dir):
        if stale.endswith(".svg"):
            os.remove(os.path.join(out_dir, stale))
    for name, looks in iconset.items():
        for suffix, look in looks.items():
            path = os.path.join(out_dir, name + suffix + ".svg")
            with open(path, "w", encoding="utf-8") as handle:
                handle.write(svg(name, colours[look]))


def main():
    root = skin_colours.skin_root()
    for skin, colours in skin_colours.tables().items():
        write_set(os.path.join(root, skin, "ModuleKoPlayer", "image"), colours, PLAYER_SET)
        write_set(os.path.join(root, skin, "WgtMsgBox", "image"), colours, MSGBOX_SET)
    return 0


if __name__ == "__main__":
    sys.exit(main())
