#!/usr/bin/env python3
"""Builds and runs the tests of the changed files, for an answer within seconds: ./test --quick [PATTERN].

A source is tested by the file of the same name in the same folder below Tests/ (FanCard.qml by FanCardTest.cpp), and a larger
class by the files whose names begin with its own (Monitor.cpp by MonitorAlertTest.cpp and others). Where there is no such
file, every test of the folder runs. After a change to the program, its texts are checked as well, and whether every setting has
a test. The changed files are those that git reports as changed or new, or else those of the last commit. With a PATTERN, a
regular expression as for ctest -R, the tests with matching names run instead, wherever they are.

./test alone runs the endurance tests and the second runs under another locale and, unless they are themselves changed or asked
for, the tests of the built programs and those that need the computer for themselves.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import time

CODE = {".h", ".cpp", ".mm"}
PROGRAMS = ("Fenwhirl", "fenwhirl-guard", "simulated-mac")  # what the tests in Tests/System run


class Tests:
    """The test files below Tests/ and the programs that contain them."""

    def __init__(self, project):
        self.project = project
        self.files = sorted(file.relative_to(project) for file in (project / "Tests").rglob("*")
                            if re.fullmatch(r"\w+Tests?\.cpp|tst_\w+\.qml|\w+_test\.py", file.name))
        self.programs = {}  # C++ file -> the program that it is compiled into
        self.alone = {}  # program -> patterns of the tests beside which nothing else may run
        for listing in (project / "Tests").rglob("CMakeLists.txt"):
            for command, call in re.findall(r"(fenwhirl_test|target_sources)\(([^)]*)\)", listing.read_text()):
                name = call.split()[0]
                if command == "fenwhirl_test":
                    alone = re.search(r"\sALONE((?:\s+(?!(?:APART|LINK|SOURCES)\b)\S+)+)", call)
                    self.alone[name] = alone.group(1).split() if alone else []
                for word in call.split():
                    if word.endswith(".cpp"):
                        self.programs[(listing.parent / word).relative_to(project)] = name

    def of(self, source):
        """The files that test this one, or an empty list."""
        source = pathlib.PurePath(source)
        if source.parts[0] == "Tests":
            own = [file for file in self.files if file == source]
            return own or [file for file in self.files if file.parent == source.parent]
        if source.parts[0] != "Sources":
            return []
        stem = re.sub(r"(MacOS|Linux)$", "", source.stem)
        mirror = pathlib.PurePath("Tests", *source.parts[1:-1])
        near = [file for file in self.files if file.parent == mirror]
        named = {stem + "Test.cpp", source.stem + "Test.cpp", f"tst_{stem}.qml"}
        same = [file for file in near if file.name in named]
        begun = [file for file in near if file.name.startswith((stem, "tst_" + stem))]
        if same or begun:
            return same or begun
        while mirror.name and not near:  # a folder without tests of its own is tested by the folder above
            mirror = mirror.parent
            near = [file for file in self.files if file.parent == mirror]
        return near if mirror != pathlib.PurePath("Tests") else []

    def suites(self, file):
        """The test suites in a C++ file."""
        return sorted(set(re.findall(r"^TYPED_TEST\((\w+)|^TEST(?:_F|_P)?\((\w+)", (self.project / file).read_text(), re.M)))


def changed(project):
    def git(*arguments):
        return subprocess.run(["git", *arguments], cwd=project, capture_output=True, text=True, check=True).stdout.split("\0")

    files = git("diff", "--name-only", "-z", "HEAD") + git("ls-files", "-z", "--others", "--exclude-standard")
    files = [file for file in files if file]
    return files or [file for file in git("diff", "--name-only", "-z", "HEAD~1", "HEAD") if file]


def badly_formatted(project, files):
    """Checked first: it takes only a moment and needs no build."""
    files = [file for file in files if pathlib.PurePath(file).suffix in CODE and (project / file).exists() and
             not file.startswith("Packaging/macOS/check/")]
    if not files or not shutil.which("clang-format"):
        return False
    if subprocess.run(["clang-format", "--dry-run", "--Werror", *files], cwd=project, check=False).returncode == 0:
        return False
    print(f"Not formatted. To correct it: clang-format -i {' '.join(files)}")
    return True


def selection(tests, files):
    """The tests of the changed files: the suites of each test program, the Qt Quick tests, and the tests in Python."""
    programs, quick, python = {}, [], []
    for test in sorted({test for file in files for test in tests.of(file)}):
        if test.suffix == ".py":
            python.append(test)
        elif test.suffix == ".qml":
            quick.append(test)
        elif test in tests.programs:
            suites = [one or other for one, other in tests.suites(test)]
            programs.setdefault(tests.programs[test], []).extend(suites)
    return programs, quick, python


def may_change_texts(files):
    """Whether a text may be new, without a translation, or shown in another place than the list of texts says."""
    return any(file.startswith("Sources/Fenwhirl") or file == "Documentation/Languages.md" for file in files)


def endurance(build):
    """Patterns of the long-running tests, from CMake's cache."""
    found = re.search(r"^FENWHIRL_ENDURANCE_TESTS:INTERNAL=(.*)$", (build / "CMakeCache.txt").read_text(), re.M)
    return found.group(1).split(";") if found else []


def compile_targets(build, targets):
    return subprocess.run(["cmake", "--build", str(build), "--target", *targets], stdout=subprocess.PIPE, text=True,
                          check=False)


def ctest_command(build, *options):
    """Runs tests as ./test does: cmake/TestScheduling.cmake says how many at a time."""
    return ["ctest", "--test-dir", str(build), "--output-on-failure", "--no-tests=error", "--parallel",
            str(7 * (os.cpu_count() or 2)), "--resource-spec-file", str(build / "processors.json"), *options]


def run_changed(project, build, tests, files):
    programs, quick, python = selection(tests, files)
    # Testing a component needs the program that contains all component tests; the Python tests need the built programs.
    targets = list(programs) + (["ComponentTest"] if quick else []) + (list(PROGRAMS) if python else [])
    texts = may_change_texts(files)
    if texts:
        targets += ["checked-texts", "gathered-texts"]
    if not targets:
        print("nothing that changed has a test in C++, QML or Python: " + ", ".join(files))
        return 0
    for name, suites in programs.items():
        print(f"{name}: {', '.join(suites)}")
    for test in quick + python:
        print(test)
    result = compile_targets(build, targets)
    if result.returncode != 0:
        print(result.stdout)
        return result.returncode

    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", QT_QUICK_BACKEND="software", QT_SCALE_FACTOR="1",
                       QT_LOGGING_RULES="qt.qpa.*=false")
    running = []
    for name, suites in programs.items():
        alone = tests.alone[name] if len(suites) == 1 else []
        left_out = ":".join(endurance(build) + ([] if alone else tests.alone[name]))
        wanted = ":".join(f"{suite}.*:*/{suite}.*:{suite}/*.*" for suite in suites)
        command = [str(build / "tests" / name), "--gtest_brief=1", f"--gtest_filter={wanted}-{left_out}"]
        # Several processes share the tests of a program, two for each processor, because some tests wait: those of the views
        # would take most of a minute.
        shares = 1 if alone else 2 * (os.cpu_count() or 2)
        for share in range(shares):
            its = {"GTEST_TOTAL_SHARDS": str(shares), "GTEST_SHARD_INDEX": str(share)}
            running.append(subprocess.Popen(command, cwd=build, env={**environment, **its}))
    for test in quick:
        running.append(subprocess.Popen([str(build / "tests/ComponentTest"), "-silent", "-input", str(project / test)],
                                        cwd=build, env=environment))
    if texts:
        running.append(subprocess.Popen([sys.executable, "-B", "Tests/TextCheck/list_texts.py", build / "Sources/TextCheck/texts.tsv",
                                         "Documentation/Languages.md"], cwd=project))
        running.append(subprocess.Popen([sys.executable, "-B", "Tests/Structure/check_settings.py", "."], cwd=project))
    if python:
        modules = "|".join(test.stem for test in python)
        running.append(subprocess.Popen(ctest_command(build, "-R", rf"\.({modules})\.")))
    return max([process.wait() for process in running], key=abs)


def registered(build, pattern):
    """The names of the matching tests that CTest knows. It learns those in C++ only when their program is built."""
    listing = subprocess.run(["ctest", "--test-dir", str(build), "-N", "-R", pattern], capture_output=True, text=True, check=True)
    return re.findall(r"^ *Test +#\d+: (.+)$", listing.stdout, re.M)


def needed_targets(tests, pattern, others):
    """What to build for the tests with matching names: the programs that contain them, or everything if one of the others, which
    CTest knows, belongs to no test file. Nobody but its CMakeLists.txt knows what such a test needs.
    """
    wanted = re.compile(pattern)
    targets = set()
    for file, program in tests.programs.items():
        text = (tests.project / file).read_text()
        names = re.findall(r"^(?:TYPED_)?TEST(?:_F|_P)?\((\w+),\s*(\w+)\)", text, re.M)
        if any(wanted.search(f"{program}.{suite}.{name}") for suite, name in names):
            targets.add(program)
    modules = set()
    for file in tests.files:
        if file.suffix == ".qml" and wanted.search(f"ComponentTest.{file.stem}"):
            targets.add("ComponentTest")
        elif file.suffix == ".py":
            modules.add(file.stem)
            text = (tests.project / file).read_text()
            if wanted.search(f"{file.parent.name}.{file.stem}.") or any(map(wanted.search, re.findall(r"def (test_\w+)", text))):
                targets.update(PROGRAMS)
    programs = {*tests.programs.values(), "ComponentTest"}
    if any(name.partition(".")[0] not in programs and not modules.intersection(name.split(".")) for name in others):
        return {"all"}
    return targets


def run_matching(build, tests, pattern):
    targets = needed_targets(tests, pattern, registered(build, pattern))
    if not targets:
        print(f"no test is called {pattern}")
        return 1
    result = compile_targets(build, sorted(targets))
    if result.returncode != 0:
        print(result.stdout)
        return result.returncode
    return subprocess.run(ctest_command(build, "-R", pattern, "-E", r"\.Under\."), check=False).returncode


def main(arguments):
    begin = time.monotonic()
    project = pathlib.Path(__file__).resolve().parent.parent.parent
    build = project / "build/dev"
    tests = Tests(project)
    files = changed(project)
    if badly_formatted(project, files):
        print("FAILED")
        return 1
    status = run_matching(build, tests, arguments[0]) if arguments else run_changed(project, build, tests, files)
    print(f"{'passed' if status == 0 else 'FAILED'} after {time.monotonic() - begin:.0f} s")
    return 1 if status else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
