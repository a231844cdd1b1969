#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
# Draws the program's icon (a phone beside a calendar sheet) as PNG files of the
# given sizes, with nothing but the standard library: python3 make-icon.py DIR
import struct, sys, zlib

def draw(n):
    px = [[(0, 0, 0, 0)] * n for _ in range(n)]
    def rect(x0, y0, x1, y1, c, r=0):
        for y in range(int(y0 * n), int(y1 * n)):
            for x in range(int(x0 * n), int(x1 * n)):
                fx, fy = (x + .5) / n, (y + .5) / n
                cx = min(max(fx, x0 + r), x1 - r)
                cy = min(max(fy, y0 + r), y1 - r)
                if (fx - cx) ** 2 + (fy - cy) ** 2 <= r * r + 1e-9:
                    px[y][x] = c
    rect(.06, .06, .94, .94, (0x2f, 0x5f, 0x8f, 255), .16)      # ground
    rect(.16, .22, .62, .84, (255, 255, 255, 255), .04)        # calendar sheet
    rect(.16, .22, .62, .36, (0xd9, 0x4f, 0x3d, 255), .04)     # its header
    for row in range(3):
        for col in range(3):
            x, y = .21 + col * .13, .42 + row * .13
            rect(x, y, x + .08, y + .08, (0x2f, 0x5f, 0x8f, 255))
    rect(.58, .40, .86, .90, (0x22, 0x22, 0x22, 255), .05)     # phone
    rect(.62, .46, .82, .74, (0x9f, 0xd4, 0xff, 255), .01)     # its screen
    rect(.69, .79, .75, .85, (0xcc, 0xcc, 0xcc, 255), .03)     # its key
    return px

def png(n):
    raw = b''.join(b'\0' + bytes(v for p in row for v in p) for row in draw(n))
    chunk = lambda t, d: struct.pack('>I', len(d)) + t + d + struct.pack('>I', zlib.crc32(t + d) & 0xffffffff)
    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', n, n, 8, 6, 0, 0, 0)) +
            chunk(b'IDAT', zlib.compress(raw, 9)) + chunk(b'IEND', b''))

for size in (16, 32, 48, 64, 128, 256):
    with open('%s/tessarine-%d.png' % (sys.argv[1], size), 'wb') as f:
        f.write(png(size))
