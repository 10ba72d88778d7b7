"""Names in the symbol tables of a 64-bit library."""

import struct

# Section types: all symbols, which stripping removes, and those that the loader needs.
SYMTAB = 2
DYNSYM = 11

_DATA_OR_FUNCTION = (1, 2)


def defined_names(path, table):
    """Names of the functions and variables that a library defines, in one of its tables."""
    with open(path, "rb") as library:
        data = library.read()
    (section_table,) = struct.unpack_from("<Q", data, 0x28)
    entry_size, count = struct.unpack_from("<HH", data, 0x3A)
    # name, type, flags, address, offset, size, link, info, alignment, entry size
    sections = [
        struct.unpack_from("<IIQQQQIIQQ", data, section_table + i * entry_size)
        for i in range(count)
    ]
    names = []
    for section in sections:
        if section[1] != table:
            continue
        strings = sections[section[6]][4]
        for start in range(section[4], section[4] + section[5], section[9]):
            name, info, _, index = struct.unpack_from("<IBBH", data, start)
            if index and info & 15 in _DATA_OR_FUNCTION:
                begin = strings + name
                names.append(data[begin : data.index("\0", begin)])
    return names
