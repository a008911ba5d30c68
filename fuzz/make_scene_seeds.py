#!/usr/bin/env python3
"""Writes the seeds of fuzz_scn below fuzz/corpus/scn."""

import pathlib
import struct

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus" / "scn"


def record(name, mode, keys, count=None):
    data = name.ljust(512, b"\0") + struct.pack("<ii", mode, len(keys) if count is None else count)
    for frame, (time, rect, opacity) in enumerate(keys):
        data += struct.pack("<I6f", frame, time, *rect, opacity)
    return data


def track(count, step=1 / 60):
    return [(i * step, (i, 2 * i, 100 + i, 200), 1 - i / 100) for i in range(count)]


def main():
    whole = record(b"Neon sign.png", 7, track(5)) + record(b"sky.png", 2, track(1))
    seeds = {
        "whole": whole,
        "cut": whole[:-9],
        "keyless": record(b"a.png", 2, []) + record(b"b.png", 27, track(2)),
        "below": record(b"a.png", 2, [], -1) + record(b"b.png", 2, track(2)),
        "huge": record(b"a.png", 2, track(3), 2000000000),
        "endless_name": record(b"x" * 512, 2, track(2)),
        "swing": record(b"a.png", 2, [(t, (0, 0, 1, 1), 1) for t in (0, 0, 9, 0, 10, 11)]),
        "equal": record(b"a.png", 2, [(0.03, (0, 0, 1, 1), 1)] * 4),
        "no_numbers": record(b"a.png", 2, [(float("nan"), (float("inf"), 0, 1, 1), 1)] * 4),
        "text": b'{"length": 0.1, "camera": [{"time": 0, "z": 0.5}, {"time": 1, "x": 9, '
                b'"ease": "inOut"}], "layers": [{"name": "a.png", "mode": "screen", "depth": 2, '
                b'"keys": [{"time": 0, "rect": [0, 0, 9, 9], "opacity": 0.5}]}, '
                b'{"nameHex": "ff", "rect": [0, 0, 1, 1]}]}',
        "printed": b'{"layers": [{"name": "a", "mode": 31, "sampled": '
                   b'[[1, 0.05, 1, 2, 3, "0x7fc00000", 1]]}]}',
    }
    CORPUS.mkdir(parents=True, exist_ok=True)
    for name, data in seeds.items():
        (CORPUS / name).write_bytes(data)


if __name__ == "__main__":
    main()
