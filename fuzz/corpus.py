#!/usr/bin/env python3
"""The seed corpus of the fuzz targets: a file for each target, a line of hexadecimal digits for each input.

corpus.py unpack DIR             writes each input to a file of its own, DIR/TARGET/HASH
corpus.py pack DIR FILE          the way back, the shortest inputs first
corpus.py seed STORE STORE_LATER IMAGE DIR
                                 makes inputs of the store file of two inventories, and a flash module's image
"""

import hashlib
import pathlib
import struct
import sys

# The steps of a story, as fuzz/host/target.cpp numbers them.
PATCH_STORE, RESIZE_STORE, SWITCH_ON, CALL, HELP = 1, 2, 5, 10, 11
FULL, DELTA = 0, 1


def unpack(directory):
    for packed in pathlib.Path(__file__).parent.glob("corpus/*.hex"):
        target = directory / packed.stem
        target.mkdir(parents=True)
        for line in packed.read_text().split():
            content = bytes.fromhex(line)
            (target / hashlib.sha1(content).hexdigest()).write_bytes(content)


def pack(directory, file):
    inputs = sorted((path.read_bytes() for path in directory.iterdir()), key=lambda content: (len(content), content))
    pathlib.Path(file).write_text("".join(content.hex() + "\n" for content in inputs))


def patches(before, after):
    """The steps that make one store file of the other: a patch wherever they differ."""
    story = bytes([RESIZE_STORE]) + struct.pack("<H", len(after))
    before = before.ljust(len(after), b"\0")[: len(after)]
    at = 0
    while at < len(after):
        if before[at] == after[at]:
            at += 1
            continue
        # Two bytes of silence end a patch, and 255 bytes fill it.
        end = at + 1
        while end < min(len(after), at + 255) and before[end : end + 2] != after[end : end + 2]:
            end += 1
        story += bytes([PATCH_STORE]) + struct.pack("<HB", at, end - at) + after[at:end]
        at = end
    return story


def call(which):
    return bytes([CALL, which]) + struct.pack("<HB", 0xFFFF, 0)


def seed(store, store_later, image, directory):
    """The host asks for the inventory, and later for what has changed. Likewise with dumps, and with a flash module's
    image; two platforms without a device; last, the store file is decoded."""
    before, after = store.read_bytes(), store_later.read_bytes()
    ask = patches(b"", before) + call(FULL) + patches(before, after) + call(DELTA)
    (directory / "delta").write_bytes(ask)
    (directory / "dumps").write_bytes(bytes([SWITCH_ON, 1, 0, SWITCH_ON, 2, 0]) + ask)
    (directory / "image").write_bytes(bytes([SWITCH_ON, 3, 128]) + image.read_bytes() + ask)
    for name in (b"kestrano", b"morvik"):
        empty = patches(b"\0", before[:1]) + call(FULL)
        (directory / name.decode()).write_bytes(bytes([SWITCH_ON, 3, len(name)]) + name + empty)
    (directory / "decode").write_bytes(patches(b"", before) + bytes([HELP]).ljust(10, b"\0"))


commands = {"unpack": unpack, "pack": pack, "seed": seed}
commands[sys.argv[1]](*map(pathlib.Path, sys.argv[2:]))
