#!/usr/bin/env python3
"""Writes the sheet of the 32 commanders' portraits, 8 by 4 cells of 96 by 120 pixels, as SVG to stdout."""

CELL_W, CELL_H, COLUMNS, ROWS = 96, 120, 8, 4
SKIN = ["#e2b890", "#d8a57c", "#c78f68", "#e8c4a0", "#b67d58", "#8d5c3e"]
HAIR = ["#2a1c12", "#5a3a1e", "#8a8a88", "#3a2a20", "#a8783c", "#d8d4cc"]
COAT = ["#16223f", "#1c2a30", "#2a2a34", "#3a3f2c"]
BACK = [("#4f6478", "#26384e"), ("#6a5a44", "#3a2e20"), ("#4a5c50", "#24342c"), ("#5c4a5c", "#302434")]


def beard(style, hair):
    """The beard or moustache of one of six styles."""
    full = f'<path d="M31,60 Q32,92 48,94 Q64,92 65,60 Q62,74 55,74 Q48,70 41,74 Q34,74 31,60Z" fill="{hair}"/>'
    moustache = f'<path d="M36,72 Q42,65 48,69 Q54,65 60,72 Q54,74 48,72 Q42,74 36,72Z" fill="{hair}"/>'
    waxed = f'<path d="M30,68 Q36,73 42,69 Q46,67 48,69 Q50,67 54,69 Q60,73 66,68 Q62,77 54,74 Q50,73 48,72 Q46,73 42,74 Q34,77 30,68Z" fill="{hair}"/>'
    whiskers = f'<path d="M30,54 Q29,78 38,84 Q36,74 35,56Z M66,54 Q67,78 58,84 Q60,74 61,56Z" fill="{hair}"/>'
    pointed = moustache + f'<path d="M42,80 Q48,84 54,80 Q52,94 48,97 Q44,94 42,80Z" fill="{hair}"/>'
    return ["", full, moustache, waxed, whiskers + moustache, pointed][style]


def portrait(index):
    """One officer; the features follow from the index, so that no two are alike."""
    skin = SKIN[(index * 5 + index // 7) % len(SKIN)]
    hair = HAIR[(index * 7 + index // 5) % len(HAIR)]
    coat = COAT[(index + index // 8) % len(COAT)]
    top, bottom = BACK[(index // 2 + index // 8) % len(BACK)]
    wide = (index * 3) % 5 - 2
    cap = index % 3 != 2
    parts = [f'<linearGradient id="b{index}" x1="0" y1="0" x2="0" y2="1"><stop offset="0" stop-color="{top}"/>'
             f'<stop offset="1" stop-color="{bottom}"/></linearGradient>',
             f'<rect width="{CELL_W}" height="{CELL_H}" fill="url(#b{index})"/>',
             f'<path d="M4,120 Q6,98 34,92 L62,92 Q90,98 92,120Z" fill="{coat}"/>',
             '<path d="M38,90 L48,104 58,90 58,84 38,84Z" fill="#e8e2d4"/><path d="M46,100 h4 l3,20 h-10Z" fill="#12141c"/>',
             f'<path d="M38,91 L46,106 40,120 28,95Z M58,91 L50,106 56,120 68,95Z" fill="{coat}" stroke="#0a0e18" stroke-width="0.8"/>',
             f'<path d="M39,72 V90 Q48,98 57,90 V72Z" fill="{skin}"/><path d="M39,82 Q48,92 57,82 L57,88 Q48,97 39,88Z" fill="#000" opacity="0.22"/>',
             f'<ellipse cx="48" cy="56" rx="{18 + wide * 0.7}" ry="25" fill="{skin}"/>',
             f'<path d="M48,31 Q{66 + wide},34 {66 + wide * 0.7},56 Q65,76 48,81 Q60,66 58,50 Q56,38 48,31Z" fill="#000" opacity="0.16"/>',
             f'<ellipse cx="{29.5 - wide * 0.7}" cy="58" rx="3" ry="6" fill="{skin}"/><ellipse cx="{66.5 + wide * 0.7}" cy="58" rx="3" ry="6" fill="{skin}"/>',
             f'<path d="M37,50 Q41,47 45,50 M51,50 Q55,47 59,50" fill="none" stroke="{hair}" stroke-width="2.200"/>',
             '<path d="M38,55 Q41,52.500 44.500,55 Q41,57.500 38,55Z M51.500,55 Q55,52.500 58,55 Q55,57.500 51.500,55Z" fill="#f0ece2"/>'
             '<circle cx="41.300" cy="55" r="1.500" fill="#1c2430"/><circle cx="54.700" cy="55" r="1.500" fill="#1c2430"/>',
             f'<path d="M48,54 Q{50 + wide % 2},62 {51 + wide % 2},65 Q48,67.500 45,65.500" fill="none" stroke="#000" stroke-opacity="0.350" stroke-width="1.300"/>',
             '<path d="M43,75.500 Q48,77.500 53,75.500" fill="none" stroke="#6a2c22" stroke-width="1.500"/>',
             beard((index * 5 + index // 4) % 6, hair)]
    if cap:
        crown = "#e8e4d8" if index % 4 == 0 else coat
        parts.append(f'<path d="M24,36 Q26,18 48,17 Q70,18 72,36 Q60,30 48,30 Q36,30 24,36Z" fill="{crown}" stroke="#0a0e18" stroke-width="0.8"/>'
                     '<path d="M29,34 Q48,27 67,34 L67,41 Q48,34 29,41Z" fill="#10131c"/>'
                     '<path d="M29,41 Q48,34 67,41 Q64,48 48,44 Q32,48 29,41Z" fill="#05070c"/>'
                     '<path d="M29,40.500 Q48,33.500 67,40.500" fill="none" stroke="#d8b060" stroke-width="1.300"/>'
                     '<path d="M48,24 l2.500,5 -2.500,5 -2.500,-5Z" fill="#e8c878"/><circle cx="48" cy="29" r="1.300" fill="#8a2418"/>')
    else:
        side = "M29,56 Q25,30 48,27 Q71,30 67,56 Q64,44 58,38 Q46,42 36,38 Q31,44 29,56Z"
        parts.append(f'<path d="{side}" fill="{hair}"/>')
    for button in range(2):
        y = 108 + button * 8
        parts.append(f'<circle cx="37" cy="{y}" r="1.800" fill="#d8b060"/><circle cx="59" cy="{y}" r="1.800" fill="#d8b060"/>')
    parts.append('<path d="M6,112 Q14,100 26,97 L28,101 Q16,104 9,115Z M90,112 Q82,100 70,97 L68,101 Q80,104 87,115Z" fill="#c89c48"/>')
    parts.append(f'<rect x="0.750" y="0.750" width="{CELL_W - 1.5}" height="{CELL_H - 1.5}" fill="none" stroke="#8a6428" stroke-width="1.500"/>')
    return "".join(parts)


print(f'<svg xmlns="http://www.w3.org/2000/svg" width="{CELL_W * COLUMNS}" height="{CELL_H * ROWS}">')
for cell in range(COLUMNS * ROWS):
    x, y = cell % COLUMNS * CELL_W, cell // COLUMNS * CELL_H
    print(f'<svg x="{x}" y="{y}" width="{CELL_W}" height="{CELL_H}">{portrait(cell)}</svg>')
print("</svg>")
