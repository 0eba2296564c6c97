#!/usr/bin/python3
"""The architecture's picture: every target of the program and what it links, as the build knows them.

    architecture_picture.py TARGET_GRAPH PICTURE           ends with 1 when the picture shows another build
    architecture_picture.py --write TARGET_GRAPH PICTURE   draws it (needs Graphviz)

TARGET_GRAPH is written by the build (cmake/WriteTargetGraph.cmake). A link that other links imply is left out, so that the picture
shows the layers.
"""

import html
import re
import subprocess
import sys

from check_structure import read_graph

PROGRAMS = {"Fenwhirl": "Fenwhirl\\nexecutable and helper", "FenwhirlApp": "libFenwhirlApp", "fenwhirl-guard": "fenwhirl-guard",
            "simulated-mac": "simulated-mac"}
LEFT_OUT = {"FenwhirlFlags"}  # compiler settings only
EDGE = re.compile(r"<title>([^<]+)</title>")
# Loaded at run time or run as a process, which no target links.
BY_HAND = {("Fenwhirl", "FenwhirlApp"): "loads", ("FenwhirlHelperClient", "fenwhirl-guard"): "starts",
           ("FenwhirlHelperClient", "Fenwhirl"): "runs as root"}


def edges_of(graph):
    """Who links whom, without what follows from other links."""
    links = {name: {other for other in linked if other in graph and other not in LEFT_OUT}
             for name, (_, linked) in graph.items() if name not in LEFT_OUT and "TextCheck" not in graph[name][0]}

    def reached(name):
        found = set()
        for other in links.get(name, ()):
            found |= {other} | reached(other)
        return found

    return {(name, other) for name, others in links.items() for other in others
            if not any(other in reached(third) for third in others - {other})}


def edges_drawn(picture):
    titles = (html.unescape(title) for title in EDGE.findall(picture))
    return {tuple(title.split("->")) for title in titles if "->" in title}


def drawing_of(edges):
    names = sorted({name for edge in edges | set(BY_HAND) for name in edge})
    lines = ["digraph Fenwhirl {",
             'graph [rankdir=TB, nodesep=0.35, ranksep=0.45, bgcolor="white", fontname="sans-serif"]',
             'node [shape=box, style="rounded,filled", color="#8a8a8e", fillcolor="#f2f2f7", fontname="sans-serif", fontsize=12]',
             'edge [color="#6e6e73", arrowsize=0.7, fontname="sans-serif", fontsize=10]']
    for name in names:
        style = f'label="{PROGRAMS[name]}", fillcolor="#d6e9ff"' if name in PROGRAMS else f'label="{name.removeprefix("Fenwhirl")}"'
        lines.append(f'"{name}" [{style}]')
    lines += [f'"{name}" -> "{other}"' for name, other in sorted(edges)]
    lines += [f'"{name}" -> "{other}" [style=dashed, constraint=false, label=" {how}"]' for (name, other), how in BY_HAND.items()]
    return "\n".join(lines + ["}"])


def main():
    *options, graph, picture = sys.argv[1:]
    edges = edges_of(read_graph(graph))
    if options == ["--write"]:
        drawn = subprocess.run(["dot", "-Tsvg"], input=drawing_of(edges), capture_output=True, text=True, check=True).stdout
        with open(picture, "w", encoding="utf-8") as file:
            file.write("\n".join(line.rstrip() for line in drawn.splitlines()) + "\n")
        return 0
    with open(picture, encoding="utf-8") as file:
        shown = edges_drawn(file.read())
    missing, gone = sorted(edges - shown), sorted(shown - edges - set(BY_HAND))
    for what, pairs in (("does not show", missing), ("shows, but the build does not have,", gone)):
        for name, other in pairs:
            print(f"{picture} {what} that {name} links {other}; redraw it with --write")
    return 1 if missing or gone else 0


if __name__ == "__main__":
    sys.exit(main())
