#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes one SVG per balloon symmetry kind: the phi circle with the part a file stores, seen
from in front of the loudspeaker (phi 0 up, 90 to the loudspeaker's left, the picture's right).

usage: python3 symmetry.py   (writes symmetry-<value>.svg beside itself)
"""
import math
import os

# (value, name, stored sectors as (start, end) phi in degrees, caption lines)
KINDS = [
    (0, "NoSymmetry", [(0, 360)], ["stores phi 0 … 360", "(the 360 column repeats 0)"]),
    (1, "HalfSymmetry", [(0, 180)], ["stores phi 0 … 180", "p > 180 reads 360 − p"]),
    (2, "HalfSymmetryRotated", [(270, 360), (0, 90)], ["stores phi 270 … 0 … 90", "as columns 0 … 180"]),
    (3, "QuarterSymmetry", [(0, 90)], ["stores phi 0 … 90", "mirrored at 180, then at 90"]),
    (4, "RotationalSymmetry", [], ["stores one phi column", "every phi reads column 0"]),
]

SIZE, CX, CY, R = 220, 110, 105, 62


def point(phi, radius):
    """Phi 0 at the top, growing clockwise as seen from the front."""
    a = math.radians(phi)
    return CX + radius * math.sin(a), CY - radius * math.cos(a)


def sector(start, end):
    if end - start >= 360:
        return f'<circle cx="{CX}" cy="{CY}" r="{R}" class="stored"/>'
    x1, y1 = point(start, R)
    x2, y2 = point(end, R)
    large = 1 if end - start > 180 else 0
    return f'<path d="M {CX} {CY} L {x1:.2f} {y1:.2f} A {R} {R} 0 {large} 1 {x2:.2f} {y2:.2f} Z" class="stored"/>'


def svg(value, name, sectors, caption):
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{SIZE}" height="{SIZE + 20}" viewBox="0 0 {SIZE} {SIZE + 20}">',
        '<style>.stored{fill:#7fb3e0;stroke:#1f5f99;stroke-width:1.5}.circle{fill:none;stroke:#888;stroke-dasharray:4 3}'
        'text{font-family:sans-serif;font-size:12px;fill:#222}.title{font-weight:bold}.axis{stroke:#bbb}</style>',
        f'<rect width="{SIZE}" height="{SIZE + 20}" fill="white"/>',
        f'<circle cx="{CX}" cy="{CY}" r="{R}" class="circle"/>',
    ]
    parts += [sector(s, e) for s, e in sectors]
    if value == 4:
        x, y = point(0, R)
        parts.append(f'<line x1="{CX}" y1="{CY}" x2="{x:.2f}" y2="{y:.2f}" stroke="#1f5f99" stroke-width="4"/>')
    for phi, label in ((0, "0°"), (90, "90°"), (180, "180°"), (270, "270°")):
        x, y = point(phi, R + 16)
        parts.append(f'<line x1="{CX}" y1="{CY}" x2="{point(phi, R)[0]:.2f}" y2="{point(phi, R)[1]:.2f}" class="axis"/>')
        parts.append(f'<text x="{x:.2f}" y="{y + 4:.2f}" text-anchor="middle">{label}</text>')
    parts.append(f'<text x="{CX}" y="14" text-anchor="middle" class="title">{value}: {name}</text>')
    for i, line in enumerate(caption):
        parts.append(f'<text x="{CX}" y="{CY + R + 40 + 15 * i}" text-anchor="middle">{line}</text>')
    parts.append("</svg>\n")
    return "\n".join(parts)


here = os.path.dirname(os.path.abspath(__file__))
for value, name, sectors, caption in KINDS:
    with open(os.path.join(here, f"symmetry-{value}.svg"), "w", encoding="utf-8") as f:
        f.write(svg(value, name, sectors, caption))
