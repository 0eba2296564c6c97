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

    def test_literals_are_those_that_newer_versions_of_qt_accept(self):
        self.assertEqual(len(list(check.check_literals("Tests/A.cpp", 'said(u"tr/min"_qs)'))), 1)
        self.assertEqual(list(check.check_literals("Tests/A.cpp", 'said(u"tr/min"_s, "_qsort")')), [])


class Namespaces(unittest.TestCase):
    def test_code_is_in_the_namespace_of_its_library(self):
        for path, name in (("FenwhirlCore/SMC.h", "Fenwhirl"), ("Fenwhirl/Views/Views.h", "Fenwhirl"),
                           ("Guard/Guard.cpp", "Fenwhirl"), ("SimulatedMac/Mac.h", "simulated"),
                           ("TextCheck/Gather.cpp", "TextCheck")):
            self.assertEqual(faults(path, f"namespace {name} {{\n\nint f();\n\n}} // namespace {name}\n"), [])
            nested = f"namespace {name}::Part {{\n\nint f();\n\n}} // namespace {name}::Part\n"
            self.assertEqual(faults(path, nested), [])
            self.assertEqual(len(faults(path, nested.replace(name, name + "Other"))), 1)
            self.assertEqual(faults(path, "// What f is.\n\nint f();\n"), [f"{path}:3: is outside the namespace {name}"])

    def test_every_part_of_a_file_is_inside(self):
        inside = "namespace Fenwhirl {\n\nint f();\n\n} // namespace Fenwhirl\n"
        for outside in ("int g();\n", "namespace {\n\nint g();\n\n} // namespace\n", "class Monitor;\n",
                        "#define G \\\n    1\nint g();\n"):
            self.assertEqual(len(faults("Fenwhirl/Helper.cpp", inside + outside)), 1, outside)
            self.assertEqual(len(faults("Fenwhirl/Helper.cpp", outside + inside)), 1, outside)

    def test_what_must_be_global_may_be_outside(self):
        for outside in ("class QWindow;\n", "Q_DECLARE_METATYPE(Fenwhirl::Layout)\n", "#define G \\\n    1\n",
                        "int main(int argc, char** argv) {\n    return 0;\n}\n",
                        "@interface FenwhirlTarget : NSObject\n- (void)chosen;\n@end\n"):
            self.assertEqual(faults("Fenwhirl/Helper.cpp", outside), [], outside)


class Targets(unittest.TestCase):
    def test_a_model_target_may_not_link_quick(self):
        graph = {"M": ("Fenwhirl/Monitoring", ["Qt6::Core", "Qt6::Quick"])}
        self.assertEqual(len(list(check.check_targets(graph))), 1)

    def test_the_executable_may_not_link_qt_or_models(self):
        graph = {"Fenwhirl": ("Fenwhirl", ["Qt6::Core", "M"]), "M": ("Fenwhirl/Monitoring", [])}
        self.assertEqual(len(list(check.check_targets(graph))), 2)


if __name__ == "__main__":
    unittest.main()
