"""Reads the binary reference files with a CBOR library that knows nothing of the kit.

Usage: check_binary_archives.py FOLDER
"""

import pathlib
import sys

import cbor2


def fail(path, text):
    sys.exit(f"{path}: {text}")


def check(path, is_shared):
    """Checks the frame of an archive. Returns the one object in it."""
    content = path.read_bytes()
    if not content.startswith(b"\xd9\xd9\xf7"):
        fail(path, "no tag 55799")
    # The tags of identity stand in the bytes; the decoder resolves them.
    if is_shared and b"\xd8\x1c\x9f" not in content:
        fail(path, "no shareable array of indefinite length")
    with path.open("rb") as stream:
        decoder = cbor2.CBORDecoder(stream)
        header = decoder.decode()
        if header != ["ORVEL", 1, "little"]:
            fail(path, f"header {header}")
        items = []
        while True:
            position = stream.tell()
            item = decoder.decode()
            if stream.tell() == len(content):
                break
            items.append(item)
    if not isinstance(item, list) or len(item) != 3 or item[0] != "end":
        fail(path, f"end mark {item}")
    if item[1] != position:
        fail(path, f"the end mark counts {item[1]} bytes, there are {position}")
    if not isinstance(item[2], int) or not 0 <= item[2] < 2**64:
        fail(path, f"hash {item[2]}")
    if len(items) != 1:
        fail(path, f"{len(items)} items instead of one object")
    return items[0]


def main():
    folder = pathlib.Path(sys.argv[1])
    paths = sorted(folder.glob("*/*.bin"))
    objects = {}
    for path in paths:
        name = f"{path.parent.name}/{path.stem}"
        # The file of one pass holds an object in place, without its class.
        is_pass = path.stem.endswith((".skeleton", ".data"))
        objects[name] = check(path, not is_pass)
        class_name = objects[name][0]
        if not is_pass and (not isinstance(class_name, str) or not class_name.startswith("orvel::")):
            fail(path, f"class {class_name}")

    expected = {
        "ElementsRange/1": ["orvel::ElementsRange", [1], 3, 4000000000],
        "ElementsRange/2": ["orvel::ElementsRange", [2], 3, 5000000000],
        "PlanIndex/1": ["orvel::PlanIndex", [1], 3, 4000000000, 70000],
        "PlanIndex/2": ["orvel::PlanIndex", [2], 3, 5000000000, 70000],
        # scales, unit; origin, rotation
        "GeometricCalibration/1": ["orvel::GeometricCalibration", [1], 0.5, 0.25, 2.0, "mm"],
        "GeometricCalibration/2": ["orvel::GeometricCalibration", [2], 0.5, 0.25, 2.0, "mm",
                                   -1.5, 2.25, 1000.0, 0.5, -0.5, 0.25, 0.75],
        "OffsetXY/1": ["orvel::OffsetXY", [1], 7, -300],
        "OffsetXYZ/1": ["orvel::OffsetXYZ", [1], 7, -300, 70000],
        # versions of base and class; [[size, key, value ...]]; box; sums
        "KernelXY/2": ["orvel::KernelXY", [1], [2],
                       [[3, [[1], 0, 0], 0.5, [3, 0], 2.0, [-1, 2], -1.25]],
                       -1, 0, 5, 3, 1.25, 3.75],
        "KernelXY/1": ["orvel::KernelXY", [1], [1],
                       [[2, [[1], 0, 0], 1.5, [1, 0], -0.5]], 0, 0, 2, 1, 1.0],
        # version of the base; whether there is something, size, type, block; version of the class
        "TypedOwnBuffer/1": ["orvel::TypedOwnBuffer", [1], True, 5, 4, b"AAAAAAAAAA", [1]],
        "TypedOwnBuffer/1.skeleton": [[1], True, 5, 4, [1]],
        "TypedOwnBuffer/1.data": [[1], b"AAAAAAAAAA", [1]],
        "TOwnBuffer_orvel__ipUInt16_/1": ["orvel::TOwnBuffer<orvel::ipUInt16>", [1], True, 3, 5,
                                          b"\x01\x00\x00\x00\xfe\xff", [1]],
        "HybridBuffer/1": ["orvel::HybridBuffer", [1], True, 2, 7, b"\x70\x11\x01\x00" * 2],
        "ExternalBuffer/unversioned": ["orvel::ExternalBuffer"],
        # type, number and size of the fragments, a block each
        "FragHybridBuffer/1": ["orvel::FragHybridBuffer", [1], True, 4, 3, 2, b"\xc8\x00\x2c\x01",
                               b"\x90\x01\xf4\x01", b"\x00\x00\x64\x00"],
    }
    for name, value in expected.items():
        if objects.get(name) != value:
            fail(name, f"holds {objects.get(name)}, not {value}")
    print(f"{len(paths)} archives are sound")


main()
