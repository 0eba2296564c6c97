"""Plants one mistake at a time into a source, and builds the test program that has to notice it.

The mutated source is compiled into an object file of its own, which is linked in front of the library that contains the original.
Neither the checkout nor the build folder is changed, so several mistakes can be tried at the same time. Tests/mutations.py and
Tests/MacOS/mutations.py have the mistakes.
"""

import json
import os
import re
import shlex
import shutil
import subprocess
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


class NoMistake(RuntimeError):
    """The mistake cannot be planted: its place is gone, or it does not compile."""


def of(mistakes, words):
    """The mistakes whose title or file contains one of the words; all of them without words."""
    return [each for each in mistakes if not words or any(word in text for text in each[:2] for word in words)]


def planted(folder, mistake):
    """Writes the mutated source into a new folder inside `folder`, and returns its path there and in the checkout."""
    title, path, right, wrong = mistake
    path = os.path.join(ROOT, path)
    with open(path, encoding="utf-8") as file:
        text = file.read()
    if right not in text:
        raise NoMistake(f"{path} no longer has the place for: {title}")
    source = os.path.join(tempfile.mkdtemp(dir=folder), os.path.basename(path))
    with open(source, "w", encoding="utf-8") as file:
        line = "" if path.endswith(".qml") else f'#line 1 "{path}"\n'
        file.write(line + text.replace(right, wrong, 1))
    return source, path


class Build:
    """A build folder made by CMake for Ninja: its compile and link commands."""

    def __init__(self, folder):
        self.folder = folder
        self.compiling = {}
        for each in json.loads(self._ninja("compdb")):
            if each["output"].endswith(".o"):
                file = os.path.normpath(os.path.join(folder, each["file"]))
                for source in [file, *included(file)]:
                    self.compiling[source] = (each["command"], each["file"])
        self._linking = {}

    def _ninja(self, *tool):
        return subprocess.run(["ninja", "-C", self.folder, "-t", *tool], check=True, capture_output=True, text=True).stdout

    def _run(self, words, title):
        done = subprocess.run(words, cwd=self.folder, check=False, capture_output=True, text=True)
        if done.returncode != 0:
            raise NoMistake(f"{title}: cannot be built, so it is no mistake of this kind\n{done.stdout}{done.stderr}")

    def compile(self, source, path, title):
        """Compiles `source` as the build compiles `path`. Returns the object file, which lies beside the source."""
        if path.endswith(".qml"):
            source, path = self._compile_qml(source, path, title)
        command, original = self.compiling[path]
        words = [word for word in shlex.split(command) if not word.endswith("ccache")]
        words = [source if word == original else word for word in words]
        result = os.path.splitext(source)[0] + ".o"
        words[words.index("-o") + 1] = result
        self._run([*words, "-w"], title)
        return result

    def _compile_qml(self, source, path, title):
        name = os.path.basename(path).replace(".qml", "_qml.cpp")
        cpp = next(each for each in self.compiling if each.endswith("_" + name) and "/qmlcache/" in each and
                   os.path.relpath(os.path.dirname(path), ROOT) + "/.rcc/" in each)
        line = self._ninja("commands", "-s", os.path.relpath(cpp, self.folder)).splitlines()[-1]
        made = os.path.join(os.path.dirname(source), name)
        words = shlex.split(line)
        words = words[next(at for at, word in enumerate(words) if word.endswith("qmlcachegen")):]
        words = [source if os.path.normpath(word) == path else word for word in words]
        words[words.index("-o") + 1] = made
        self._run(words, title)
        return made, cpp

    def link(self, program, objects, result, title, *options):
        """Links the program with these object files in front of everything else."""
        if program not in self._linking:
            lines = self._ninja("commands", program).splitlines()
            words = shlex.split(next(line for line in reversed(lines) if re.search(rf"-o \S*{program}\b", line)))
            begin = words.index("&&") + 1
            self._linking[program] = words[begin:words.index("&&", begin)]
        words = list(self._linking[program])
        words[words.index("-o") + 1] = result
        words[words.index("-o"):words.index("-o")] = objects
        if shutil.which("ld.lld"):
            words.append("-fuse-ld=lld")  # several times faster than the default linker
        self._run([*words, *options], title)


def included(file):
    """The sources that CMake lets this file include, because it compiles several as one."""
    if not re.search(r"/Unity/unity_\d+_\w+\.cxx$|_qml(_\d+)?\.cpp$", file) or not os.path.exists(file):
        return []
    with open(file, encoding="utf-8") as text:
        return [os.path.normpath(each) for each in re.findall(r'^#include "(/.*)"$', text.read(), re.M)]
