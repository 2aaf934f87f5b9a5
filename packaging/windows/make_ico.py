#!/usr/bin/env python3
"""Makes a Windows icon of a drawing.

usage: make_ico.py SVG ICO

Needs rsvg-convert. Each size is drawn by itself and kept as a PNG, which Windows reads since Vista.
"""
import struct
import subprocess
import sys

SIZES = (16, 20, 24, 32, 40, 48, 64, 128, 256)
HEADER, ENTRY = struct.Struct("<HHH"), struct.Struct("<BBBBHHII")

svg, ico = sys.argv[1:]
pictures = [subprocess.run(["rsvg-convert", f"--width={size}", f"--height={size}", svg], check=True,
                           capture_output=True).stdout for size in SIZES]
at = HEADER.size + ENTRY.size * len(SIZES)
with open(ico, "wb") as file:
    file.write(HEADER.pack(0, 1, len(SIZES)))
    for size, picture in zip(SIZES, pictures):
        file.write(ENTRY.pack(size % 256, size % 256, 0, 0, 1, 32, len(picture), at))
        at += len(picture)
    file.writelines(pictures)
