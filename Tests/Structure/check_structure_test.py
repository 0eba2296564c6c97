"""Tests of check_structure.py: each kind of violation is reported."""

import sys
import unittest

sys.dont_write_bytecode = True
import check_structure as check

EVERYTHING = {name: set(check.SUBSYSTEMS) for name in check.SUBSYSTEMS}


def faults(path, text, reachable=None):
    return list(check.check_file(path, text, reachable or EVERYTHING))


class IncludeDirections(unittest.TestCase):
    def test_a_model_may_know_the_core(self):
        self.assertEqual(faults("Fenwhirl/Monitoring/Monitor.h", '#include "FenwhirlCore/SMC.h"\n'), [])

    def test_a_model_may_not_know_a_view(self):
        self.assertEqual(len(faults("Fenwhirl/Monitoring/Monitor.h", '#include "Fenwhirl/Views/FanList.h"\n')), 1)

    def test_the_core_may_not_know_anything(self):
        self.assertEqual(len(faults("FenwhirlCore/SMC.cpp", '#include "Fenwhirl/Platform/Toolkit/Clock.h"\n')), 1)

    def test_the_simulated_mac_shares_only_the_record(self):
        self.assertEqual(faults("SimulatedMac/Server.cpp", '#include "FenwhirlCore/SMCRecord.h"\n'), [])
        self.assertEqual(len(faults("SimulatedMac/Server.cpp", '#include "FenwhirlCore/SMC.h"\n')), 1)

    def test_an_allowed_include_needs_a_linked_target(self):
        alone = {name: {name} for name in check.SUBSYSTEMS}
        self.assertEqual(len(faults("Fenwhirl/Monitoring/M.cpp", '#include "FenwhirlCore/SMC.h"\n', alone)), 1)

    def test_a_component_imports_no_view(self):
        self.assertEqual(len(faults("Fenwhirl/Views/Components/Card.qml", "import Fenwhirl.Views\n")), 1)

    def test_every_text_is_plain(self):
        self.assertEqual(len(faults("Fenwhirl/Views/Page.qml", "Item {\n    Text {\n        text: name\n    }\n}\n")), 1)
        self.assertEqual(len(faults("Fenwhirl/Views/Page.qml", "contentItem: Text {\n}\n")), 1)
        self.assertEqual(len(faults("Fenwhirl/Views/Page.qml", "Label { textFormat: Text.StyledText }\n")), 1)
        self.assertEqual(faults("Fenwhirl/Views/Page.qml", "Text {\n    textFormat: Text.PlainText\n}\n"), [])
        self.assertEqual(faults("Fenwhirl/Views/Page.qml", "TabularText {\n}\n"), [])

    def test_includes_give_their_whole_path(self):
        self.assertEqual(len(faults("Fenwhirl/Monitoring/M.cpp", '#include "Monitor.h"\n')), 1)

    def test_angle_brackets_hide_nothing(self):
        self.assertEqual(len(faults("FenwhirlCore/SMC.cpp", "#include <Fenwhirl/Platform/Toolkit/Clock.h>\n")), 1)
        self.assertEqual(faults("FenwhirlCore/SMC.cpp", "#include <sys/socket.h>\n#include <vector>\n"), [])

    def test_only_the_platform_asks_for_the_system(self):
        self.assertEqual(len(faults("Fenwhirl/Monitoring/M.cpp", "#ifdef __APPLE__\n")), 1)
        self.assertEqual(faults("Fenwhirl/Platform/Toolkit/Clock.h", "#ifdef __APPLE__\n"), [])


class Targets(unittest.TestCase):
    def test_a_model_target_may_not_link_quick(self):
        graph = {"M": ("Fenwhirl/Monitoring", ["Qt6::Core", "Qt6::Quick"])}
        self.assertEqual(len(list(check.check_targets(graph))), 1)

    def test_the_executable_may_not_link_qt_or_models(self):
        graph = {"Fenwhirl": ("Fenwhirl", ["Qt6::Core", "M"]), "M": ("Fenwhirl/Monitoring", [])}
        self.assertEqual(len(list(check.check_targets(graph))), 2)


if __name__ == "__main__":
    unittest.main()
