"""Tests of FinishBundle.cmake, the last steps of building the macOS bundle, with fake tools that log how they were called."""

import os
import subprocess
import tempfile
import textwrap
import unittest

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SCRIPT = os.path.join(ROOT, "Packaging", "macOS", "FinishBundle.cmake")

# What macdeployqt leaves in a bundle, as far as it matters for signing: frameworks that contain symbolic links, plug-ins, and
# symbolic links to plug-ins among the QML modules.
DEPLOY = """
for framework in QtCore QtQml; do
    mkdir -p "$1/Contents/Frameworks/$framework.framework/Versions/A/Helpers"
    touch "$1/Contents/Frameworks/$framework.framework/Versions/A/$framework"
    touch "$1/Contents/Frameworks/$framework.framework/Versions/A/Helpers/lib$framework.dylib"
    ln -sfn A "$1/Contents/Frameworks/$framework.framework/Versions/Current"
done
mkdir -p "$1/Contents/PlugIns/platforms" "$1/Contents/PlugIns/quick" "$1/Contents/Resources/qml/QtQuick"
touch "$1/Contents/PlugIns/platforms/libqcocoa.dylib" "$1/Contents/PlugIns/quick/libqtquick2plugin.dylib"
ln -sfn ../../../PlugIns/quick/libqtquick2plugin.dylib "$1/Contents/Resources/qml/QtQuick/"
"""

SYSTEM_ONLY = r"""
case $1 in
-l) echo 'cmd LC_LOAD_DYLIB' ;;
-L) printf '%s:\n\t/usr/lib/libSystem.B.dylib (compatibility version 1.0.0, current version 1319.0.0)\n' "$2" ;;
esac
case "$1 $2" in
-L*/MacOS/Fenwhirl)
    printf '\t/System/Library/Frameworks/IOKit.framework/Versions/A/IOKit (compatibility version 1.0.0, current 2)\n' ;;
esac
"""


class FinishBundle(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="fenwhirl bundle ")  # with spaces, as folder names on a Mac often have
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.log = os.path.join(self.folder, "log")
        self.bundle = os.path.join(self.folder, "Fenwhirl.app")
        for name in ("MacOS/Fenwhirl", "Helpers/fenwhirl-guard", "Frameworks/libFenwhirlApp.dylib"):
            path = os.path.join(self.bundle, "Contents", name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            open(path, "w", encoding="ascii").close()
        self.fake_tool("macdeployqt", DEPLOY)
        self.fake_tool("codesign", "")
        self.fake_tool("otool", SYSTEM_ONLY)
        self.fake_tool("lipo", "echo arm64")

    def fake_tool(self, tool, body):
        path = os.path.join(self.folder, tool)
        with open(path, "w", encoding="ascii") as file:
            file.write("#!/bin/sh\n")
            file.write(f'{{ printf %s {tool}; printf "|%s" "$@"; echo; }} >>"{self.log}"\n')
            file.write(textwrap.dedent(body))
        os.chmod(path, 0o755)

    def finish(self, *settings):
        command = ["cmake", "-D", f"BUNDLE={self.bundle}", "-D", "QML_FOLDER=/source/Views", *settings, "-P", SCRIPT]
        environment = dict(os.environ, PATH=self.folder + ":" + os.environ["PATH"])
        return subprocess.run(command, env=environment, capture_output=True, text=True, check=False)

    def calls(self):
        """Every call of a fake tool as a list of its words, with the bundle's path replaced by "APP"."""
        if not os.path.exists(self.log):
            return []
        with open(self.log, encoding="ascii") as file:
            return [line.rstrip("\n").replace(self.bundle, "APP").split("|") for line in file]

    def signed(self):
        return [call[-1] for call in self.calls() if call[:2] == ["codesign", "--force"]]

    def test_deploys_looks_signs_and_verifies_in_this_order(self):
        done = self.finish()
        self.assertEqual(done.returncode, 0, done.stderr)
        calls = self.calls()
        self.assertEqual(calls[0], ["macdeployqt", "APP", "-qmldir=/source/Views", "-always-overwrite"])
        self.assertEqual(calls[1:5], [["otool", option, f"APP/Contents/{program}"]
                                      for program in ("MacOS/Fenwhirl", "Helpers/fenwhirl-guard") for option in ("-l", "-L")])
        self.assertEqual(calls[5], ["lipo", "-archs", "APP/Contents/MacOS/Fenwhirl"])
        self.assertEqual({call[0] for call in calls[6:]}, {"codesign"})
        self.assertEqual(calls[-1], ["codesign", "--verify", "--deep", "--strict", "APP"])

    def test_signs_everything_once_from_the_inside_out(self):
        self.finish()
        signed = self.signed()
        self.assertEqual(sorted(signed[:-1]), [
            "APP/Contents/Frameworks/QtCore.framework",
            "APP/Contents/Frameworks/QtQml.framework",
            "APP/Contents/Frameworks/libFenwhirlApp.dylib",
            "APP/Contents/Helpers/fenwhirl-guard",
            "APP/Contents/PlugIns/platforms/libqcocoa.dylib",
            "APP/Contents/PlugIns/quick/libqtquick2plugin.dylib"])
        depths = [path.count("/") for path in signed]
        self.assertEqual(depths, sorted(depths, reverse=True))
        self.assertEqual(signed[-1], "APP")

    def test_an_ordinary_signature_is_for_this_computer_and_not_hardened(self):
        self.finish()
        for call in self.calls():
            if call[:2] == ["codesign", "--force"]:
                self.assertEqual(call[1:-1], ["--force", "--sign", "-"])

    def test_a_certificate_hardens_the_runtime_and_adds_a_timestamp(self):
        self.finish("-D", "IDENTITY=Developer ID Application: Somebody (ABCDE12345)")
        calls = [call for call in self.calls() if call[:2] == ["codesign", "--force"]]
        self.assertEqual(len(calls), 7)
        for call in calls:
            self.assertEqual(call[1:-1], ["--force", "--sign", "Developer ID Application: Somebody (ABCDE12345)",
                                          "--options", "runtime", "--timestamp"])

    def test_nothing_is_signed_when_qt_could_not_be_deployed(self):
        self.fake_tool("macdeployqt", "echo 'no such module' >&2; exit 1")
        done = self.finish()
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("no such module", done.stderr)
        self.assertEqual(self.signed(), [])

    def test_an_executable_with_a_run_path_is_refused(self):
        self.fake_tool("otool", SYSTEM_ONLY.replace("LC_LOAD_DYLIB", "LC_RPATH"))
        done = self.finish()
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("run path", done.stderr)
        self.assertEqual(self.signed(), [])

    def test_an_executable_that_links_qt_is_refused(self):
        self.fake_tool("otool", SYSTEM_ONLY.replace("/System/Library/Frameworks/IOKit", "@rpath/QtCore"))
        done = self.finish()
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("@rpath/QtCore", done.stderr)
        self.assertEqual(self.signed(), [])

    def test_a_guard_that_links_more_than_the_c_library_is_refused(self):
        self.fake_tool("otool", SYSTEM_ONLY.replace("-L*/MacOS/Fenwhirl", "-L*"))
        done = self.finish()
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("the guard links more", done.stderr)
        self.assertEqual(self.signed(), [])

    def test_an_executable_that_cannot_be_read_is_refused(self):
        self.fake_tool("otool", "")
        self.assertNotEqual(self.finish().returncode, 0)
        self.assertEqual(self.signed(), [])

    def make_code(self, path, *commands):
        """Creates a file with the Mach-O magic number, and makes otool print these load commands for it."""
        path = os.path.join(self.bundle, "Contents", path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(b"\xcf\xfa\xed\xfe")
        said = path + ".said"
        with open(said, "w", encoding="ascii") as file:
            for number, command in enumerate(commands):
                file.write(f"Load command {number}\n{command}\n")
        self.fake_tool("otool", f'if [ -e "$2.said" ]; then cat "$2.said"; exit; fi\n{SYSTEM_ONLY}')

    @staticmethod
    def load(name, kind="LC_LOAD_DYLIB"):
        return f"          cmd {kind}\n      cmdsize 56\n         name {name} (offset 24)"

    RUN_PATH = "          cmd LC_RPATH\n      cmdsize 32\n         path @loader_path/../../Frameworks (offset 12)"

    def test_libraries_in_the_bundle_and_of_the_system_are_there(self):
        for name in ("QtCore", "QtGui", "QtSvg"):
            self.make_code(f"Frameworks/{name}")
        self.make_code("PlugIns/platforms/libqcocoa.dylib", self.load("/usr/lib/libSystem.B.dylib"),
                       self.load("@rpath/QtCore"), self.load("@loader_path/../../Frameworks/QtGui"),
                       self.load("@executable_path/../Frameworks/QtSvg"), self.load("@rpath/old", "LC_LOAD_WEAK_DYLIB"),
                       self.load("/opt/its/own/name.dylib", "LC_ID_DYLIB"), self.RUN_PATH)
        done = self.finish()
        self.assertEqual(done.returncode, 0, done.stderr)

    def test_a_library_that_is_not_in_the_bundle_ends_it_before_anything_is_signed(self):
        for name in ("@rpath/QtDBus", "@loader_path/libbrotli.1.dylib", "@executable_path/../Frameworks/QtDBus",
                     "/opt/homebrew/lib/libbrotli.1.dylib"):
            with self.subTest(name):
                self.make_code("PlugIns/platforms/libqcocoa.dylib", self.load(name), self.RUN_PATH)
                done = self.finish()
                self.assertNotEqual(done.returncode, 0)
                self.assertIn(name, done.stderr)
                self.assertIn("libqcocoa.dylib", done.stderr)
                self.assertEqual(self.signed(), [])

    def test_a_run_path_to_this_computers_folders_does_not_count(self):
        outside = os.path.join(self.folder, "homebrew")
        os.mkdir(outside)
        open(os.path.join(outside, "QtDBus"), "w", encoding="ascii").close()
        self.make_code("PlugIns/platforms/libqcocoa.dylib", self.load("@rpath/QtDBus"),
                       f"          cmd LC_RPATH\n      cmdsize 32\n         path {outside} (offset 12)")
        self.assertNotEqual(self.finish().returncode, 0)

    def test_where_qt_stays_outside_nothing_is_missing(self):
        self.make_code("PlugIns/platforms/libqcocoa.dylib", self.load("@rpath/QtDBus"))
        self.assertEqual(self.finish("-D", "QT_STAYS_OUTSIDE=ON").returncode, 0)

    def test_the_newest_file_says_which_system_is_needed(self):
        plist = os.path.join(self.bundle, "Contents", "Info.plist")
        for needed, promised in (("14.2", "14.2"), ("12.0", "13.0")):
            with self.subTest(needed):
                with open(plist, "w", encoding="ascii") as file:
                    file.write("<key>LSMinimumSystemVersion</key>\n\t<string>13.0</string>\n<key>LSUIElement</key>\n<true/>\n")
                self.make_code("Frameworks/QtCore",
                               f"      cmd LC_BUILD_VERSION\n  cmdsize 32\n platform 1\n    minos {needed}\n      sdk 15.0")
                done = self.finish()
                self.assertEqual(done.returncode, 0, done.stderr)
                with open(plist, encoding="ascii") as file:
                    self.assertIn(f"<string>{promised}</string>\n<key>LSUIElement", file.read())

    def test_code_for_fewer_processors_than_the_executable_is_refused(self):
        self.make_code("Frameworks/QtCore")
        for executable, library, missing in (("arm64", "arm64", None), ("arm64", "x86_64 arm64", None),
                                             ("x86_64 arm64", "x86_64 arm64", None), ("x86_64 arm64", "arm64", "x86_64"),
                                             ("arm64", "x86_64", "arm64"), ("arm64", "arm64e", "arm64")):
            with self.subTest(f"{executable}: {library}"):
                self.fake_tool("lipo", f'case "$2" in */QtCore) echo "{library}" ;; *) echo "{executable}" ;; esac')
                done = self.finish()
                self.assertEqual(done.returncode == 0, missing is None, done.stderr)
                self.assertEqual(self.signed() == [], missing is not None)
                if missing:
                    self.assertIn(f"Contents/Frameworks/QtCore is not for {missing},", " ".join(done.stderr.split()))
                os.remove(self.log)

    def test_an_executable_without_processors_is_refused(self):
        self.fake_tool("lipo", "")
        self.assertNotEqual(self.finish().returncode, 0)
        self.assertEqual(self.signed(), [])

    def test_a_refused_signature_ends_it_before_the_bundle_is_signed(self):
        self.fake_tool("codesign", 'case "$*" in *libqcocoa*) echo "no identity found" >&2; exit 1 ;; esac')
        done = self.finish()
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("no identity found", done.stderr)
        self.assertNotIn("APP", self.signed())

    def test_a_signature_that_does_not_verify_is_an_error(self):
        self.fake_tool("codesign", 'case "$*" in *--verify*) exit 3 ;; esac')
        self.assertNotEqual(self.finish().returncode, 0)

    def test_without_executable_or_guard_nothing_is_called(self):
        for name in ("Helpers/fenwhirl-guard", "MacOS/Fenwhirl"):
            os.remove(os.path.join(self.bundle, "Contents", name))
            self.assertNotEqual(self.finish().returncode, 0)
            self.assertEqual(self.calls(), [])


if __name__ == "__main__":
    unittest.main()
