"""Which tests quick.py selects for a change."""

import pathlib
import re
import subprocess
import tempfile
import unittest

import quick

PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent


class Selection(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.tests = quick.Tests(PROJECT)

    def names(self, source):
        return [file.name for file in self.tests.of(source)]

    def test_a_source_has_the_test_of_its_name(self):
        self.assertEqual(self.names("Sources/Fenwhirl/Monitoring/PollDecision.cpp"), ["PollDecisionTest.cpp"])
        self.assertEqual(self.names("Sources/Fenwhirl/Views/FanCard.qml"), ["FanCardTest.cpp"])
        self.assertEqual(self.names("Sources/Fenwhirl/Views/Components/Stepper.qml"), ["tst_Stepper.qml"])

    def test_a_systems_part_has_the_test_of_the_whole(self):
        self.assertIn("SystemNameTest.cpp", self.names("Sources/Fenwhirl/Platform/SystemNameMacOS.cpp"))

    def test_a_large_class_has_all_that_begin_with_its_name(self):
        self.assertTrue({"MonitorAlertTest.cpp", "MonitorQuitTest.cpp"} <=
                        set(self.names("Sources/Fenwhirl/Monitoring/Monitor.cpp")))

    def test_without_one_the_whole_folder_answers(self):
        names = self.names("Sources/Fenwhirl/Updates/NobodyTestsThis.cpp")
        self.assertIn("UpdateCheckerTest.cpp", names)
        self.assertTrue(all(file.parent.name == "Updates" for file in self.tests.of("Sources/Fenwhirl/Updates/X.cpp")))

    def test_a_test_answers_for_itself(self):
        self.assertEqual(self.names("Tests/Support/quick_test.py"), ["quick_test.py"])

    def test_a_document_has_none(self):
        self.assertEqual(self.names("Documentation/Testing.md"), [])
        self.assertEqual(self.names("README.md"), [])

    def test_texts_may_change_with_the_program_and_their_list(self):
        for file in ("Sources/Fenwhirl/Views/StartCard.qml", "Sources/FenwhirlCore/SensorNames.cpp", "Documentation/Languages.md"):
            self.assertTrue(quick.may_change_texts([file]), file)
        self.assertFalse(quick.may_change_texts(["Sources/SimulatedMac/Fan.cpp", "Tests/Support/quick.py", "README.md"]))

    def test_every_test_file_belongs_to_a_program(self):
        self.assertEqual([str(file) for file in self.tests.files if file.suffix == ".cpp" and
                          file.name != "ComponentTest.cpp" and file not in self.tests.programs], [])

    def test_a_file_of_one_system_belongs_to_its_program(self):
        programs, _, _ = quick.selection(self.tests, ["Tests/Fenwhirl/Views/SensorNameWidthTest.cpp"])
        self.assertEqual(programs, {"ViewsTest": ["SensorNames"]})

    def test_suites_are_those_of_the_file(self):
        file = pathlib.PurePath("Tests/Fenwhirl/Monitoring/PollDecisionTest.cpp")
        text = (PROJECT / file).read_text()
        programs, _, _ = quick.selection(self.tests, ["Sources/Fenwhirl/Monitoring/PollDecision.cpp"])
        self.assertEqual(set(programs), {"MonitoringDecisionTest"})
        self.assertTrue(programs["MonitoringDecisionTest"])
        for suite in programs["MonitoringDecisionTest"]:
            self.assertRegex(text, rf"TEST\w*\({re.escape(suite)},")

    def test_a_pattern_builds_what_its_tests_need(self):
        self.assertEqual(quick.needed_targets(self.tests, "MonitorAlert\\.", []), {"MonitorTest"})
        self.assertEqual(quick.needed_targets(self.tests, "tst_Stepper", []), {"ComponentTest"})
        self.assertEqual(quick.needed_targets(self.tests, "run_test", ["System.run_test.TheWalk.test_x"]), set(quick.PROGRAMS))
        self.assertEqual(quick.needed_targets(self.tests, "NobodyTestsThis", []), set())

    def test_a_test_that_belongs_to_no_file_needs_everything(self):
        for name in ("Structure.OnlyTheApplicationLibraryNeedsQt", "TextKey.CompilesLiterals"):
            self.assertEqual(quick.needed_targets(self.tests, name, [name]), {"all"}, name)


class Changes(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.git("init", "--quiet")
        self.git("config", "user.name", "Somebody")
        self.git("config", "user.email", "somebody@example.com")
        self.commit("first.cpp")
        self.commit("second.cpp")

    def git(self, *arguments):
        subprocess.run(["git", *arguments], cwd=self.folder, check=True)

    def commit(self, name):
        (self.folder / name).write_text("int a;\n")
        self.git("add", name)
        self.git("commit", "--quiet", "-m", name)

    def test_are_the_last_commits_when_nothing_else_is_there(self):
        self.assertEqual(quick.changed(self.folder), ["second.cpp"])

    def test_are_what_differs_and_what_is_new(self):
        (self.folder / "first.cpp").write_text("int b;\n")
        (self.folder / "ein neues é.cpp").write_text("int c;\n")
        self.assertEqual(quick.changed(self.folder), ["first.cpp", "ein neues é.cpp"])


if __name__ == "__main__":
    unittest.main()
