#!/usr/bin/env python3
"""Writes the seeds of fuzz_project, fuzz_script and fuzz_gui below fuzz/corpus."""

import pathlib
import struct

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus"


def word(value):
    return struct.pack("<I", value & 0xFFFFFFFF)


def number(value):
    return struct.pack("<f", value)


def text(value):
    return value.encode("latin-1") + b"\0"


def strings():
    return word(0x86869000) + text("n") + text("f") + text("m") + text("d") + number(10)


def types(*pairs):
    return word(0x86869002) + word(len(pairs)) + b"".join(text(i) + text(t) for i, t in pairs)


def links(*nodes):
    data = word(0x86869003) + word(len(nodes))
    for node_id, sources in nodes:
        data += text(node_id) + word(len(sources))
        data += b"".join(word(port) + text(source) for port, source in enumerate(sources))
    return data


def track(name, owner, *keys, modes=True):
    data = text(name) + text(owner) + word(0) + word(0) + word(len(keys))
    for value, time, mode in keys:
        data += number(value) + number(time) + (word(mode) if modes else b"")
    return data


def tracks(owner, *items):
    return word(0x86869005) + word(1) + text(owner) + word(len(items)) + b"".join(items)


def values(node_id, *items):
    return word(0x86869004) + word(1) + text(node_id) + word(len(items)) + b"".join(items)


def projects():
    new, old = word(0x86875002), word(0x86875001)
    all_values = values(
        "A",
        text("B") + word(0) + b"\1",
        text("I") + word(1) + word(7),
        text("F") + word(2) + number(0.5),
        text("V") + word(3) + number(1) + number(2),
        text("C") + word(4) + number(1) * 4,
        text("S") + word(5) + text("C:\\temp\\K4409\\x"),
    )
    graph = types(("A", "Node"), ("B", "Node"), ("O", "Output")) + links(
        ("A", ["B", "A", ""]), ("B", ["A", "", ""]), ("O", ["B"])
    )
    keys = [(1, 0, 0), (2, 1, 1), (3, 2, 3)]
    switches = types(
        ("W", "Switch"), ("K", "Camera Switch"), ("C", "Camera"), ("Q", "Sequencer"), ("O", "Output")
    )
    yield "strings", new + strings()
    yield "graph", new + graph
    yield "values", new + types(("A", "Node")) + all_values
    yield "tracks", new + types(("A", "Node")) + tracks(
        "A",
        track("A.F", "A", *keys),
        track("A.V.y", "A", *keys[::-1]),
        track("A.C.g", "A"),
        track("A.Translate.X", "A", (5, 1, 2)),
        track("Gone.F", "Gone", (5, 1, 2)),
    )
    yield "old_tracks", old + types(("A", "Node")) + tracks(
        "A", track("A.F", "A", *keys, modes=False)
    )
    yield "switches", new + switches + links(
        ("O", ["W"]), ("W", ["Q"]), ("Q", ["W"] * 10), ("K", ["C"])
    ) + values("W", text("Start A") + word(5) + text("1"), text("Stop A") + word(5) + text("2"))
    yield "lost", new + types(("X", "Gone")) + links(("X", ["A"])) + values("X", text("F") + word(2))


def scripts():
    yield "all", (
        'Type Image\nName "Blur", "Filters"\nInput 0, "Source", "rgba"\n'
        'Input 1, "Mask", "geometry"\nParam 0, "Radius", float, 0, 1, 0.5\n'
        'Param 1, "Phase", floatEvolution, 0, 1, 0.5\nParam 2, "Steps", int, 0, 9, 3\n'
        'Param 3, "Mode", option, 2, "a", "b", 1\nParam 4, "D", direction, 1, 0\n'
        'Param 5, "P", position, 1, 0\nParam 6, "C", color, 1, 0, 1, 0\nSource\nvoid main() {}\n'
    ).encode()
    yield "library", b'Name "N", "C"\nSourceLib SimpleNoise\n'
    yield "no_quotes", b"Name N Input x Param y option 3 a b c"


def side_files():
    def position(node_id, x, y):
        return text(node_id) + number(x) + number(y)

    positions = position("Glow1", 10, 20) + position("Viewer1", -4.5, 300)
    names = text("Glow1") + text("My glow") + text("Viewer1") + text("Viewer1")
    boxes = word(2) + text("Glow1") + b"\1" + text("Viewer1") + b"\0"
    yield "version1", word(1) + word(2) + positions
    yield "version2", word(2) + word(2) + positions + names + boxes
    yield "empty", word(2) + word(0) + word(0)
    yield "twice", word(1) + word(2) + position("A", 1, 2) + position("A", 3, 4)
    yield "cut", word(2) + word(0xFFFFFFF) + positions[:-2]
    yield "below_zero", word(2) + word(-1) + word(-1)


def main():
    for folder, seeds in (
        ("project", projects()),
        ("script", scripts()),
        ("gui", side_files()),
    ):
        (CORPUS / folder).mkdir(parents=True, exist_ok=True)
        for name, data in seeds:
            (CORPUS / folder / name).write_bytes(data)


if __name__ == "__main__":
    main()
