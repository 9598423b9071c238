#!/usr/bin/env python3
"""Checks that a receipt printer's bytes are one picture printed as GS v 0 raster, then a cut.

    escpos-picture.py FILE WIDTH-DOTS

Accepts an ESC @ in front, any number of GS v 0 blocks (normal mode) whose rows are WIDTH-DOTS
wide, and a GS V cut after the last block, with nothing after the cut.  The picture must hold
at least one black dot.  Prints what is wrong and exits 1 otherwise, so that it also serves to
wait until the printer has received the whole job.
"""

import sys


def check(data, width_bytes):
    position = 2 if data.startswith(b"\x1b@") else 0
    blocks = 0
    black = False
    while data.startswith(b"\x1dv0", position):
        header = data[position + 3:position + 8]
        if len(header) < 5:
            return "a GS v 0 header is cut short"
        mode, x_low, x_high, y_low, y_high = header
        if mode != 0:
            return "GS v 0 mode %d, not the normal mode" % mode
        if x_low + 256 * x_high != width_bytes:
            return "rows of %d bytes, not %d" % (x_low + 256 * x_high, width_bytes)
        size = width_bytes * (y_low + 256 * y_high)
        dots = data[position + 8:position + 8 + size]
        if len(dots) < size:
            return "a GS v 0 block is cut short"
        black = black or any(dots)
        position += 8 + size
        blocks += 1
    if blocks == 0:
        return "no GS v 0 picture (the bytes start %r)" % data[:16]
    if not black:
        return "the picture is blank"
    cut = data[position:]
    if not cut.startswith(b"\x1dV") or len(cut) > 4:
        return "no cut after the picture, but %r" % cut[:16]
    return None


def main():
    try:
        with open(sys.argv[1], "rb") as received:
            data = received.read()
    except FileNotFoundError:
        data = b""
    problem = check(data, int(sys.argv[2]) // 8)
    if problem:
        print(problem)
        sys.exit(1)


if __name__ == "__main__":
    main()
