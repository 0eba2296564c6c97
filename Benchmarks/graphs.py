#!/usr/bin/python3
"""Draws what grows with the number of sensors, fans and processes, beside the least program that does the same work.

    graphs.py CURVES PICTURE

CURVES is what the benchmarks append to the file that FENWHIRL_CURVES names (Curves.h): things, number, cost and bare cost in
milliseconds, separated by tabs. Of several lines for the same number the last one counts. PICTURE becomes an SVG file.
"""

import html
import math
import pathlib
import sys

TITLES = {"sensors": "A reading of the sensors", "fans": "A reading of the fans", "processes": "A sample of the processes"}
WIDTH, HEIGHT = 300, 190  # of one graph's area
LEFT, TOP, GAP, BOTTOM = 52, 40, 66, 62
COLORS = {"Fenwhirl": "#0a64d6", "bare": "#8a8a8e"}


def read_curves(text):
    """{things: [(number, cost, bare cost), …] in the order of the numbers}"""
    curves = {}
    for line in text.splitlines():
        things, number, cost, bare = line.split("\t")
        curves.setdefault(things, {})[int(number)] = (float(cost), float(bare))
    return {things: [(number, *costs) for number, costs in sorted(points.items())] for things, points in curves.items()}


def step_of(largest):
    """The distance between the lines of a scale from 0 that has three to six of them: 1, 2 or 5 times a power of ten."""
    power = 10 ** math.floor(math.log10(largest))
    return next(power * factor for factor in (0.2, 0.5, 1, 2) if largest / (power * factor) <= 6)


def scale_of(largest):
    """The values at which a scale from 0 to at least `largest` has its lines."""
    step = step_of(largest)
    return [index * step for index in range(math.ceil(largest / step - 1e-9) + 1)]


def text(x, y, words, anchor="middle", size=11, color="#3c3c43"):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}" fill="{color}">{html.escape(words)}</text>'


def graph_of(things, points, left):
    """The elements of one graph whose area begins at `left`."""
    across, up = scale_of(points[-1][0]), scale_of(max(max(point[1:]) for point in points))

    def x(number):
        return left + WIDTH * number / across[-1]

    def y(cost):
        return TOP + HEIGHT * (1 - cost / up[-1])

    drawn = [text(left + WIDTH / 2, TOP - 16, TITLES[things], size=13, color="#1c1c1e")]
    for cost in up:
        drawn.append(f'<path d="M{left} {y(cost):.1f}h{WIDTH}" stroke="#e5e5ea"/>')
        drawn.append(text(left - 6, y(cost) + 4, f"{cost:g}", "end"))
    drawn += [text(x(number), TOP + HEIGHT + 18, f"{number:g}") for number in across]
    drawn.append(text(left + WIDTH / 2, TOP + HEIGHT + 36, things))
    drawn.append(text(left - 6, TOP - 8, "ms", "end"))
    for name, column, dashes in (("bare", 2, "4 3"), ("Fenwhirl", 1, "none")):
        places = [(x(point[0]), y(point[column])) for point in points]
        line = " ".join(f"{at:.1f},{height:.1f}" for at, height in places)
        drawn.append(f'<polyline class="{name}" points="{line}" fill="none" stroke="{COLORS[name]}" stroke-width="1.8" '
                     f'stroke-dasharray="{dashes}"/>')
        drawn += [f'<circle cx="{at:.1f}" cy="{height:.1f}" r="2.6" fill="{COLORS[name]}"/>' for at, height in places]
    return drawn


def picture_of(curves):
    shown = [things for things in TITLES if curves.get(things)]
    width, height = LEFT + len(shown) * (WIDTH + GAP) - GAP + 24, TOP + HEIGHT + BOTTOM
    drawn = []
    for index, things in enumerate(shown):
        drawn += graph_of(things, curves[things], LEFT + index * (WIDTH + GAP))
    for name, words, place in (("Fenwhirl", "Fenwhirl", LEFT), ("bare", "the least program that does the same work", LEFT + 90)):
        dashes = "4 3" if name == "bare" else "none"
        drawn.append(f'<path d="M{place} {height - 16}h22" stroke="{COLORS[name]}" stroke-width="1.8" stroke-dasharray="{dashes}"/>')
        drawn.append(text(place + 28, height - 12, words, "start"))
    return "\n".join([f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}" '
                      'font-family="sans-serif">', f'<rect width="{width}" height="{height}" fill="white"/>', *drawn, "</svg>", ""])


def main(source, picture):
    curves = read_curves(pathlib.Path(source).read_text(encoding="ascii"))
    pathlib.Path(picture).write_text(picture_of(curves), encoding="utf-8")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
