#!/usr/bin/env python3
"""The committed skins are what their generators write: the sheets, icons and
palettes under resource/skin are regenerated into a temporary folder from the
colour tables and templates, and every file must come out byte for byte the
same, with nothing missing or left over. Catches a colour table, template or
generator changed without regenerating, and a generated file edited by hand.

    tst_SkinsGenerated.py SOURCE_DIR
"""

import filecmp
import os
import subprocess
import sys
import tempfile


def files(root):
    found = set()
    for folder, _dirs, names in os.walk(root):
        for name in names:
            found.add(os.path.relpath(os.path.join(folder, name), root))
    return found


def main():
    source = sys.argv[1]
    tools = os.path.join(source, "resource", "tools")
    committed = os.path.join(source, "resource", "skin")
    with tempfile.TemporaryDirectory() as fresh:
        for script in ("make_sheets.py", "make_icons.py"):
            subprocess.run([sys.executable, "-B", os.path.join(tools, script), fresh], check=True)
        generated = files(fresh)
        faults = []
        for rel in sorted(generated | files(committed)):
            if rel not in generated:
                faults.append(rel + " is written by no generator")
            elif not os.path.exists(os.path.join(committed, rel)):
                faults.append(rel + " is generated but not committed")
            elif not filecmp.cmp(os.path.join(fresh, rel), os.path.join(committed, rel),
                                 shallow=False):
                faults.append(rel + " differs from what its generator writes")
    if faults:
        print("Run resource/tools/make_sheets.py and make_icons.py, and commit the result:")
        print("\n".join("  resource/skin/" + fault for fault in faults))
        return 1
    print("%d generated skin files match" % len(generated))
    return 0


if __name__ == "__main__":
    sys.exit(main())
