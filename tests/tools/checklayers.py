#!/usr/bin/env python3
"""Runs tools/check-layers over small trees: right ones pass, and each wrong one says why."""

import pathlib
import subprocess
import sys
import tempfile

TOOL = pathlib.Path(__file__).resolve().parents[2] / "tools" / "check-layers"

RIGHT = {"shell/window.cpp": '"sheet/scene.h"', "sheet/scene.h": '"chart/item.h"',
         "chart/item.cpp": '"chart/item.h"', "chart/item.h": "<QObject>",
         "form/formview.h": "<QWebView>"}

# name of the case, what stands otherwise in the tree, what the tool says
CASES = [
    ("a right tree", {}, ""),
    ("an arrow upwards", {"chart/item.cpp": '"sheet/scene.h"'}, "may not include sheet/scene.h"),
    ("an arrow aside", {"form/formview.cpp": '"project/file.h"'}, "may not include project/file.h"),
    ("a circle", {"chart/item.h": '"chart/line.h"', "chart/line.h": '"chart/item.h"'},
     "chart/item -> chart/line -> chart/item"),
    ("a circle through a second .cpp",
     {"chart/item_edges.cpp": '"chart/line.h"', "chart/line.h": '"chart/item.h"'},
     "chart/item -> chart/line -> chart/item"),
    ("a web engine outside", {"sheet/scene.h": "<QWebFrame>"}, "belongs in the web seam"),
    ("a file outside", {"main.cpp": '"sheet/scene.h"'}, "belongs in a room"),
]

for name, changes, expected in CASES:
    with tempfile.TemporaryDirectory() as folder:
        for file, include in {**RIGHT, **changes}.items():
            path = pathlib.Path(folder, file)
            path.parent.mkdir(exist_ok=True)
            path.write_text(f"#include {include}\n")
        result = subprocess.run([TOOL, folder], capture_output=True, text=True)
    said = result.stderr.strip()
    if expected not in said or {bool(said), bool(result.returncode)} != {bool(expected)}:
        sys.exit(f"{name}: {said or 'nothing said'}")
