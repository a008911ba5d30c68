#!/usr/bin/env python3
"""Writes the seeds of fuzz_capture and fuzz_bvh below fuzz/corpus."""

import pathlib
import struct

CORPUS = pathlib.Path(__file__).resolve().parent / "corpus"


def capture(extended, frames):
    data = struct.pack("<I", 0xAFFE0001) if extended else b""
    data += struct.pack("<I", len(frames))
    for time, joints in frames:
        data += struct.pack("<fI", time, len(joints))
        for number, (x, y, z) in joints:
            data += struct.pack("<IIfff", number, 0, x, y, z)
            data += struct.pack("<I", 2) if extended else b""
    return data


def body(shift):
    return [(joint, (joint * 0.1, 1 + shift, 2 - joint * 0.05)) for joint in range(25)]


def bvh(joints, frames):
    text = "HIERARCHY\nROOT Hips\n{\nOFFSET 0 0 0\n"
    text += "CHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\n"
    for name in joints:
        text += f"JOINT {name}\n{{\nOFFSET 1 -2 0.5\nCHANNELS 3 Zrotation Xrotation Yrotation\n"
        text += "End Site\n{\nOFFSET 0 3 0\n}\n}\n"
    text += f"}}\nMOTION\nFrames: {frames}\nFrame Time: 0.033333\n"
    for frame in range(frames):
        text += " ".join(str(frame + i) for i in range(6 + 3 * len(joints))) + "\n"
    return text.encode()


def main():
    seeds = {
        "capture/plain": capture(False, [(0, body(0)), (0.5, body(1))]),
        "capture/extended": capture(True, [(0, body(0)), (0.5, body(1)), (1, body(0)[:9])]),
        "capture/unsorted": capture(False, [(1, body(0)[:3]), (0, body(1)[:3])]),
        "capture/empty": capture(True, []),
        "bvh/small": bvh(["Chest"], 2),
        "bvh/figure": bvh(
            ["Neck", "Head"]
            + [side + part for side in ("Left", "Right")
               for part in ("Arm", "ForeArm", "Hand", "UpLeg", "Leg", "Foot")], 2),
        "bvh/names": b"HIERARCHY\nROOT a\n{\nCHANNELS 1 Xposition\n}\nMOTION\nFrames: 1\n"
                     b"Frame Time: 1\n1\nKneeLeft = a\n",
    }
    for name, data in seeds.items():
        path = CORPUS / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(data)


if __name__ == "__main__":
    main()
