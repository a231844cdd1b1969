#!/usr/bin/env python3
"""Fails when a file under src/ includes a folder above its own layer.

The layers, bottom up: core < tables < log < formats < spine < phone, pim < sync < roads
< main < ui < app. A file includes its own folder and those below. The base that every
layer stands on has three includes that run upwards, each allowed for one file only.
"""
import os
import re
import sys

ORDER = ["core", "tables", "log", "formats", "spine", "phone", "pim", "sync", "roads", "main", "ui", "app"]
RANK = {name: i for i, name in enumerate(ORDER)}
RANK["pim"] = RANK["phone"]

# (file, included folder): the context holds the tables, the error path writes the
# log, and the tables' set-up makes the log's tables.
ALLOWED = {
    ("src/core/Context.h", "tables"),
    ("src/core/ErrorReport.cpp", "log"),
    ("src/tables/TSRADODB.cpp", "log"),
}

# The engine stands beside the two sides, not on them: of the PIM it knows the object
# model only, of the phone nothing.
ENGINE_MAY_INCLUDE = {"pim/Pim.h"}

INCLUDE = re.compile(r'\s*#\s*include\s+"(([a-z_]+)/[^"]*)"')


def violations(root):
    found = []
    for folder, _, files in os.walk(os.path.join(root, "src")):
        for name in sorted(files):
            if not name.endswith((".cpp", ".h")):
                continue
            path = os.path.join(folder, name)
            rel = os.path.relpath(path, root)
            layer = rel.split(os.sep)[1]
            if layer not in RANK:
                continue
            with open(path, errors="replace") as source:
                for number, line in enumerate(source, 1):
                    match = INCLUDE.match(line)
                    if not match or match.group(2) not in RANK:
                        continue
                    header, target = match.group(1), match.group(2)
                    if target != layer and RANK[target] >= RANK[layer] and (rel, target) not in ALLOWED:
                        found.append(f"{rel}:{number}: {layer}/ includes {target}/")
                    elif layer == "sync" and target in ("phone", "pim") and header not in ENGINE_MAY_INCLUDE:
                        found.append(f"{rel}:{number}: the engine includes {header}")
    return found


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..")
    found = violations(os.path.abspath(root))
    for line in found:
        print(line)
    if found:
        print(f"{len(found)} includes run against the layers of src/", file=sys.stderr)
        return 1
    print("layers: every include of src/ runs downwards")
    return 0


if __name__ == "__main__":
    sys.exit(main())
