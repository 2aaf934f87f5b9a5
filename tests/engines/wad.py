"""Lumps of the game that the engines run."""
import struct
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "system"))
from driven import Failed, IWAD  # noqa: E402

LUMPS_OF_LEVEL = 11


def lumps():
    """Name and bytes of each lump of the IWAD, in order."""
    data = Path(IWAD).read_bytes()
    count, directory = struct.unpack_from("<4xii", data)
    return [(name.rstrip(b"\0").decode(), data[offset:offset + size])
            for offset, size, name in struct.iter_unpack("<ii8s", data[directory:directory + 16 * count])]


def lump(name):
    """The bytes of the last lump of that name."""
    for each, data in reversed(lumps()):
        if each == name:
            return data
    raise Failed(f"there is no lump {name}")


def level_with(things):
    """The bytes of a WAD in which the first level has only these things: x, y, angle in degrees and "ID #"."""
    everything, body, directory = lumps(), b"", b""
    first = [name for name, _ in everything].index("MAP01")
    for name, data in everything[first:first + LUMPS_OF_LEVEL]:
        if name == "THINGS":
            data = b"".join(struct.pack("<5h", *thing, 7) for thing in things)
        directory += struct.pack("<ii8s", 12 + len(body), len(data), name.encode())
        body += data
    return struct.pack("<4sii", b"PWAD", LUMPS_OF_LEVEL, 12 + len(body)) + body + directory
