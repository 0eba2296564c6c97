#!/usr/bin/python3
"""Checks the architecture: source folders, build targets and includes must describe the same dependencies.

Usage: check_structure.py SOURCE_DIRECTORY TARGET_GRAPH

TARGET_GRAPH is the list of targets and links that the build writes (cmake/WriteTargetGraph.cmake). The table SUBSYSTEMS below
defines which subsystem may depend on which. The check fails when

- a file includes a header of a subsystem that its own subsystem may not depend on, or one whose target is not linked,
  directly or indirectly;
- a target links a target of a subsystem that its own may not depend on, or a Qt module that its subsystem may not use;
- a QML file imports a module of a subsystem that its own may not depend on;
- a QML file shows text that could be interpreted as markup (process names and the like are untrusted input);
- a file outside Platform/ tests for the operating system in the preprocessor;
- a header or source has code outside its library's namespace;
- a folder is missing from the table.
"""

import os
import re
import sys

# Subsystem: (subsystems it may depend on, Qt modules it may use). A folder belongs to its nearest ancestor listed here.
SUBSYSTEMS = {
    "TextCheck": ([], []),
    "FenwhirlCore": ([], []),
    "Fenwhirl": (["FenwhirlCore", "Fenwhirl/Platform/Entry"], []),
    "Fenwhirl/Platform/Entry": ([], []),
    "Fenwhirl/Platform/Toolkit": ([], ["Core"]),
    "Fenwhirl/Platform": (["FenwhirlCore", "Fenwhirl/Platform/Toolkit"], ["Core", "DBus"]),
    "Fenwhirl/Platform/Desktop": (["Fenwhirl/Platform", "Fenwhirl/Platform/Toolkit"], ["Core", "Gui", "Qml", "Quick", "DBus", "Widgets"]),
    "Fenwhirl/Localization": (["FenwhirlCore", "Fenwhirl/Platform"], ["Core"]),
    "Fenwhirl/HelperClient": (
        ["FenwhirlCore", "Fenwhirl/Platform", "Fenwhirl/Platform/Entry", "Fenwhirl/Platform/Toolkit", "Guard"], []),
    "Fenwhirl/Monitoring": (
        ["FenwhirlCore", "Fenwhirl/Platform", "Fenwhirl/Platform/Toolkit", "Fenwhirl/Localization", "Fenwhirl/HelperClient"],
        ["Core"]),
    "Fenwhirl/Processes": (
        ["FenwhirlCore", "Fenwhirl/Platform", "Fenwhirl/Platform/Toolkit", "Fenwhirl/Localization"], ["Core"]),
    "Fenwhirl/Updates": (
        ["FenwhirlCore", "Fenwhirl/Platform", "Fenwhirl/Platform/Toolkit", "Fenwhirl/Localization"], ["Core", "Network"]),
    "Fenwhirl/Views/Components": (["Fenwhirl/Localization"], ["Core", "Gui", "Qml", "Quick"]),
    "Fenwhirl/Views": (
        ["FenwhirlCore", "Fenwhirl/Localization", "Fenwhirl/Monitoring", "Fenwhirl/Processes",
         "Fenwhirl/Views/Components"],
        ["Core", "Gui", "Qml", "Quick"]),
    "Fenwhirl/Application": (
        ["FenwhirlCore", "Fenwhirl/Platform", "Fenwhirl/Platform/Entry", "Fenwhirl/Platform/Toolkit", "Fenwhirl/Platform/Desktop",
         "Fenwhirl/Localization", "Fenwhirl/HelperClient", "Fenwhirl/Monitoring", "Fenwhirl/Processes",
         "Fenwhirl/Updates", "Fenwhirl/Views", "Fenwhirl/Views/Components"],
        ["Core", "Gui", "Qml", "Quick", "QuickControls2", "Network", "DBus", "Widgets"]),
    "Guard": ([], []),
    "SimulatedMac": (["FenwhirlCore"], []),
}

# Dependencies that are limited to individual headers of the other subsystem.
SINGLE_HEADERS = {
    ("SimulatedMac", "FenwhirlCore"): {"FenwhirlCore/SMCRecord.h"},
    ("Fenwhirl/HelperClient", "Guard"): {"Guard/GuardRecord.h"},
}

# The namespace of everything in a library's folder.
NAMESPACES = {
    "TextCheck": "TextCheck",
    "FenwhirlCore": "Fenwhirl",
    "Fenwhirl": "Fenwhirl",
    "Guard": "Fenwhirl",
    "SimulatedMac": "simulated",
}

QML_MODULES = {"Fenwhirl.Components": "Fenwhirl/Views/Components", "Fenwhirl.Views": "Fenwhirl/Views"}

INCLUDE = re.compile(r'^\s*#\s*(?:include|import)\s+"([^"]+)"', re.MULTILINE)
SYSTEM_INCLUDE = re.compile(r"^\s*#\s*(?:include|import)\s+<([^>]+)>", re.MULTILINE)
QML_IMPORT = re.compile(r"^import\s+(Fenwhirl\.\w+)", re.MULTILINE)
QML_TEXT = re.compile(r"^\s*(?:\w+:\s*)?(?:Text|TextEdit|TextInput|TextArea)\s*\{", re.MULTILINE)
PLAIN_TEXT = "textFormat: Text.PlainText"
MARKUP = re.compile(r"\b(?:Text|TextEdit)\.(?:RichText|StyledText|AutoText|MarkdownText)\b")
SYSTEM_QUESTION = re.compile(
    r"^\s*#\s*(?:if|elif|ifdef|ifndef).*\b(__APPLE__|__linux__|_WIN32|Q_OS_\w+|TARGET_OS_\w+)\b", re.MULTILINE)

OLD_LITERAL = re.compile(r'"_qs\b')

# What cannot be in a namespace, as pairs of the first and the last line.
GLOBAL_BLOCKS = (
    (re.compile(r"int main\("), re.compile(r"\}")),
    (re.compile(r"@(?:interface|implementation|protocol)\b"), re.compile(r"@end")),
)
# The same in a single line: comments, the preprocessor, declarations of Qt's classes and of functions that Qt's build
# generates, and what Qt's macros specialize.
GLOBAL_LINE = re.compile(
    r"\s*(?://.*|#.*|class Q\w+;|Q_DECLARE_(?:METATYPE|TYPEINFO)\(.*\);?"
    r"|void qml_register_types_\w+\(\);|int QT_MANGLE_NAMESPACE\(\w+\)\(\);)?")
UNNAMED_NAMESPACE = (re.compile(r"namespace \{"), re.compile(r"\} // namespace$"))


def subsystem_of(path):
    """Returns the subsystem of a path relative to Sources/, or None."""
    folder = os.path.dirname(path)
    while folder:
        if folder in SUBSYSTEMS:
            return folder
        folder = os.path.dirname(folder)
    return None


def source_files(sources):
    for folder, _, names in os.walk(sources):
        for name in sorted(names):
            if name.endswith((".h", ".cpp", ".mm", ".c", ".qml")):
                yield os.path.relpath(os.path.join(folder, name), sources)


def read_graph(file):
    """Returns the targets of the build: name -> (folder, names of linked targets)."""
    graph = {}
    with open(file, encoding="utf-8") as lines:
        for line in lines:
            name, folder, *links = line.strip().split("|")
            graph[name] = (folder, [link for link in links if link])
    return graph


def reachable_folders(graph, folder):
    """Returns the subsystems that the targets of one subsystem link, directly or indirectly, including itself."""
    seen = set()
    waiting = [name for name, (home, _) in graph.items() if subsystem_of(home + "/x") == folder]
    while waiting:
        name = waiting.pop()
        if name in seen or name not in graph:
            continue
        seen.add(name)
        waiting.extend(graph[name][1])
    return {subsystem_of(graph[name][0] + "/x") for name in seen}


def check_targets(graph):
    for name, (folder, links) in sorted(graph.items()):
        home = subsystem_of(folder + "/x")
        if home is None:
            yield f"target {name}: its folder {folder} is in no subsystem"
            continue
        known, qt = SUBSYSTEMS[home]
        for link in links:
            if link.startswith("Qt6::"):
                module = link.removeprefix("Qt6::").removesuffix("Private")
                if module not in qt:
                    yield f"target {name} ({home}) links Qt's {module}"
            elif link in graph:
                other = subsystem_of(graph[link][0] + "/x")
                if other != home and other not in known:
                    yield f"target {name} ({home}) links {link} ({other})"


def line_outside(text, namespace):
    """Returns the number of the first line that should be in the namespace but is not, or None.

    Relies on clang-format: a block that begins at the margin ends there, and the end of a namespace names it."""
    own = rf"namespace {namespace}(::\w+)*"
    blocks = [(re.compile(rf"{own} \{{"), re.compile(rf"\}} // {own}$")), *GLOBAL_BLOCKS]
    if re.search(r"^int main\(", text, re.MULTILINE):
        blocks.append(UNNAMED_NAMESPACE)  # what only the program's entry uses
    end = None
    continued = False
    for number, line in enumerate(text.splitlines(), 1):
        if end is not None:
            if end.match(line):
                end = None
        elif not continued:
            end = next((last for first, last in blocks if first.match(line)), None)
            if end is None and not GLOBAL_LINE.fullmatch(line):
                return number
        continued = end is None and line.endswith("\\")
    return None


def check_file(path, text, reachable):
    home = subsystem_of(path)
    if home is None:
        yield f"{path}: belongs to no subsystem"
        return
    known, _ = SUBSYSTEMS[home]
    if path.endswith(".qml"):
        for module in QML_IMPORT.findall(text):
            other = QML_MODULES.get(module)
            if other is None or (other != home and other not in known):
                yield f"{path}: imports {module}"
        if len(QML_TEXT.findall(text)) > text.count(PLAIN_TEXT) or MARKUP.search(text):
            yield f"{path}: shows a text without saying that it is plain"
        return
    namespace = NAMESPACES.get(path.split("/")[0])
    outside = line_outside(text, namespace)
    if outside is not None:
        yield f"{path}:{outside}: is outside the namespace {namespace}"
    for header in SYSTEM_INCLUDE.findall(text):
        if subsystem_of(header) is not None:
            yield f"{path}: includes <{header}>, a header of ours, in angle brackets"
    for header in INCLUDE.findall(text):
        if "/" not in header:
            if not header.endswith((".moc", ".inc")):
                yield f"{path}: includes \"{header}\" without its path from Sources/"
            continue
        other = subsystem_of(header)
        if other is None:
            yield f"{path}: includes \"{header}\", which is no header of ours"
        elif other != home and other not in known:
            yield f"{path}: {home} may not know {header}"
        elif header not in SINGLE_HEADERS.get((home, other), {header}):
            yield f"{path}: {home} may know of {other} only {sorted(SINGLE_HEADERS[(home, other)])}, not {header}"
        elif other != home and (home, other) not in SINGLE_HEADERS and other not in reachable[home]:
            yield f"{path}: includes {header}, but its target does not rest on one of {other}"
    if "Platform/" not in path and SYSTEM_QUESTION.search(text):
        yield f"{path}: asks for the operating system outside Platform/"


def check_literals(path, text):
    """Newer versions of Qt warn of its older string literal, which ends their builds, whereas the one of Debian 12 does not."""
    if OLD_LITERAL.search(text):
        yield f"{path}: uses a literal that is deprecated since Qt 6.8; end it with _s"


def main():
    if len(sys.argv) != 3:
        print(__doc__)
        return 64
    sources = os.path.join(sys.argv[1], "Sources")
    graph = read_graph(sys.argv[2])
    reachable = {name: reachable_folders(graph, name) for name in SUBSYSTEMS}
    faults = list(check_targets(graph))
    count = 0
    for path in source_files(sources):
        count += 1
        with open(os.path.join(sources, path), encoding="utf-8") as file:
            faults.extend(check_file(path, file.read(), reachable))
    for folder in ("Sources", "Tests", "Benchmarks"):
        for path in source_files(os.path.join(sys.argv[1], folder)):
            with open(os.path.join(sys.argv[1], folder, path), encoding="utf-8") as file:
                faults.extend(check_literals(f"{folder}/{path}", file.read()))
    for fault in faults:
        print(fault)
    print(f"{count} files, {len(graph)} targets, {len(faults)} faults")
    if count < 20 or len(graph) < 8:
        print("too little was found for this to be the project")
        return 1
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
