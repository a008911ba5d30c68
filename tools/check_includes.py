#!/usr/bin/env python3
"""Fails when an include in src/ points up: folders may include only themselves and those below."""
import pathlib
import re
import sys

BELOW = {
    "platform": [],
    "gpu": ["platform"],
    "core": ["platform", "gpu"],
    "image": ["platform", "gpu", "core"],
    "geometry": ["platform", "gpu", "core"],
    "editor": ["platform", "gpu", "core", "image", "geometry"],
    "app": ["platform", "gpu", "core", "image", "geometry", "editor"],
}


def main() -> int:
    root = pathlib.Path(sys.argv[1])
    checked = faults = 0
    for path in sorted(root.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        folder = path.relative_to(root).parts[0]
        for number, line in enumerate(path.read_text().splitlines(), 1):
            match = re.match(r'\s*#\s*include\s+"([^"/]+)/', line)
            if not match:
                continue
            checked += 1
            target = match.group(1)
            if target != folder and target not in BELOW[folder]:
                print(f"{path}:{number}: {folder} must not include {target}")
                faults += 1
    print(f"{checked} includes checked, {faults} point up")
    return 1 if faults or checked == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
