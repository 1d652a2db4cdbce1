#!/usr/bin/env python3
"""Puts the context map of LaunchPanel.chm right, in place.

chmcmd (fp-utils 3.2.2) writes each topic of the map (#IVB, whose names stand in
#STRINGS) with the full path of the folder it compiled in before the page's name,
so that the help viewer would look for "/work/.../hid_x.htm" inside the file and
find nothing. This script appends the bare page names to a copy of #STRINGS,
points a copy of #IVB at them, stores both copies uncompressed at the end of the
file and moves the two directory entries there. The old strings stay where they
are: #TOPICS and the index point into them.

    fix-context-map.py <file.chm> <chmls>
chmls (the same package) takes the two compressed files out; the rest is the
format's own directory: the ITSF header, the ITSP directory header, and its
PMGL listing chunks, whose entries hold variable-length numbers and end with a
table of quick references.
"""
import os
import struct
import subprocess
import sys
import tempfile


def read_encint(data, at):
    value = 0
    while True:
        byte = data[at]
        at += 1
        value = (value << 7) | (byte & 0x7F)
        if not byte & 0x80:
            return value, at


def encint(value):
    out = [value & 0x7F]
    value >>= 7
    while value:
        out.append(0x80 | (value & 0x7F))
        value >>= 7
    return bytes(reversed(out))


def extract(chmls, chm, name):
    with tempfile.TemporaryDirectory() as folder:
        target = os.path.join(folder, "part")
        subprocess.run([chmls, "extract", chm, name, target], check=True, stdout=subprocess.DEVNULL)
        with open(target, "rb") as part:
            return part.read()


def new_map(ivb, strings):
    """A copy of #STRINGS with the bare names added, and #IVB pointing at them."""
    size = struct.unpack_from("<I", ivb, 0)[0]
    if size + 4 > len(ivb) or size % 8:
        raise SystemExit("fix-context-map: #IVB is not a map of pairs")
    strings = bytearray(strings)
    ivb = bytearray(ivb)
    added = {}
    for at in range(4, 4 + size, 8):
        offset = struct.unpack_from("<I", ivb, at + 4)[0]
        end = strings.index(b"\0", offset)
        name = bytes(strings[offset:end]).replace(b"\\", b"/").rsplit(b"/", 1)[-1]
        if not name:
            raise SystemExit("fix-context-map: a topic of the map has no name")
        if name not in added:
            added[name] = len(strings)
            strings += name + b"\0"
        struct.pack_into("<I", ivb, at + 4, added[name])
    return bytes(ivb), bytes(strings)


def parse_chunk(chunk, size):
    free = struct.unpack_from("<I", chunk, 4)[0]
    entries, at = [], 20
    while at < size - free:
        start = at
        length, at = read_encint(chunk, at)
        name = chunk[at:at + length].decode("utf-8")
        at += length
        section, at = read_encint(chunk, at)
        offset, at = read_encint(chunk, at)
        bytes_, at = read_encint(chunk, at)
        entries.append([start, name, section, offset, bytes_])
    return free, entries


def rewrite_chunk(chunk, size, density, moved):
    """The chunk with the moved entries' places changed, its quick references kept on their entries."""
    entries = parse_chunk(chunk, size)[1]
    count = struct.unpack_from("<H", chunk, size - 2)[0]
    if count != len(entries):
        raise SystemExit("fix-context-map: a directory chunk does not count its entries")
    references = (count - 1) // (1 + (1 << density))
    old_quick = [struct.unpack_from("<H", chunk, size - 2 - 2 * (i + 1))[0] for i in range(references)]
    starts = {entry[0] - 20: index for index, entry in enumerate(entries)}
    body = bytearray()
    new_starts = []
    for entry in entries:
        if entry[1] in moved:
            entry[2], entry[3], entry[4] = 0, *moved[entry[1]]
        new_starts.append(len(body))
        name = entry[1].encode("utf-8")
        body += encint(len(name)) + name + encint(entry[2]) + encint(entry[3]) + encint(entry[4])
    if any(q not in starts for q in old_quick):
        raise SystemExit("fix-context-map: a quick reference of the directory points between entries")
    quick = [new_starts[starts[q]] for q in old_quick]
    room = size - 20 - len(body) - 2 - 2 * len(quick)
    if room < 0:
        raise SystemExit("fix-context-map: the directory chunk has no room for the moved entries")
    out = bytearray(chunk[:20]) + body + bytes(size - 20 - len(body))
    struct.pack_into("<I", out, 4, size - 20 - len(body))
    struct.pack_into("<H", out, size - 2, len(entries))
    for i, value in enumerate(quick):
        struct.pack_into("<H", out, size - 2 - 2 * (i + 1), value)
    return bytes(out)


def main():
    chm_path, chmls = sys.argv[1], sys.argv[2]
    with open(chm_path, "rb") as chm:
        data = bytearray(chm.read())
    if data[:4] != b"ITSF" or struct.unpack_from("<I", data, 4)[0] != 3:
        raise SystemExit("fix-context-map: not a version 3 compiled help file")
    header0 = struct.unpack_from("<Q", data, 0x38)[0]
    directory = struct.unpack_from("<Q", data, 0x48)[0]
    content = struct.unpack_from("<Q", data, 0x58)[0]
    if data[directory:directory + 4] != b"ITSP":
        raise SystemExit("fix-context-map: no directory")
    header_size, _, chunk_size, density = struct.unpack_from("<IIII", data, directory + 8)
    first, last = struct.unpack_from("<II", data, directory + 0x20)
    ivb, strings = new_map(extract(chmls, chm_path, "/#IVB"), extract(chmls, chm_path, "/#STRINGS"))
    # Section 0 runs to the end of the file: the two copies are appended there.
    moved = {"/#IVB": (len(data) - content, len(ivb))}
    moved["/#STRINGS"] = (moved["/#IVB"][0] + len(ivb), len(strings))
    found = set()
    for number in range(first, last + 1):
        at = directory + header_size + number * chunk_size
        chunk = bytes(data[at:at + chunk_size])
        if chunk[:4] != b"PMGL":
            continue
        names = {entry[1] for entry in parse_chunk(chunk, chunk_size)[1]}
        mine = {name: place for name, place in moved.items() if name in names}
        if not mine:
            continue
        data[at:at + chunk_size] = rewrite_chunk(chunk, chunk_size, density, mine)
        found |= set(mine)
    if found != set(moved):
        raise SystemExit("fix-context-map: the map's files are not in the directory")
    data += ivb + strings
    struct.pack_into("<Q", data, header0 + 8, len(data))
    with open(chm_path, "wb") as chm:
        chm.write(data)


if __name__ == "__main__":
    main()
