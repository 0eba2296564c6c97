"""Tests of list_texts.py: what it says to somebody who added a text."""

import contextlib
import io
import pathlib
import tempfile
import unittest
import unittest.mock

import list_texts

FRENCH = "other\tFenwhirl/Localization/FrenchTexts.h:{}\t\t{}\n"
SHOWN = "asked\tSources/Fenwhirl/Views/{}.qml:7\t{}\t{}\n"


class ListTexts(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.texts, self.page = (pathlib.Path(folder.name) / name for name in ("texts.tsv", "Languages.md"))
        self.page.write_text(f"before\n{list_texts.BEGIN}\n\n{list_texts.END}\nafter\n", encoding="utf-8")

    def gather(self, *uses):
        rows = [FRENCH.format(number, text) for number, (_, _, text) in enumerate(uses)]
        self.texts.write_text("".join(rows + [SHOWN.format(*use) for use in uses]), encoding="utf-8")

    def run_it(self, *options):
        """Returns the status and what was said."""
        said = io.StringIO()
        with contextlib.redirect_stderr(said):
            status = list_texts.main([*options, str(self.texts), str(self.page)])
        return status, said.getvalue()

    def test_writes_a_row_for_each_text_and_is_then_content(self):
        self.gather(("SensorsPage", "PageTitle.title", "Capteurs"), ("FansPage", "PageTitle.title", "Ventilateurs"))
        self.assertEqual(self.run_it("--write"), (0, ""))
        page = self.page.read_text(encoding="utf-8")
        self.assertIn("| Capteurs | Sensors: PageTitle.title (one line of 700) |  |\n| Ventilateurs | Fans:", page)
        self.assertTrue(page.startswith("before\n") and page.endswith("after\n"))
        self.assertEqual(self.run_it(), (0, ""))

    def test_a_list_that_is_out_of_date_names_the_command(self):
        self.gather(("SensorsPage", "PageTitle.title", "Capteurs"))
        status, said = self.run_it()
        self.assertEqual(status, 1)
        self.assertIn("--target list-texts", said)

    def test_a_control_without_room_is_named_with_its_table(self):
        self.gather(("StartCard", "SettingRow.note", "Une note"))
        self.assertEqual(self.run_it(), (1, '"Une note": add "StartCard SettingRow.note" to ROOMS in Tests/TextCheck/list_texts.py\n'))

    def test_a_controls_own_room_in_a_file_comes_before_its_usual_one(self):
        self.gather(("FansPage", "PageTitle.title", "Ventilateurs"))
        with unittest.mock.patch.dict(list_texts.ROOMS, {"FansPage PageTitle.title": "much less"}):
            self.run_it("--write")
        self.assertIn("PageTitle.title (much less)", self.page.read_text(encoding="utf-8"))

    def test_a_new_source_and_a_new_placeholder_are_named_with_their_tables(self):
        self.gather(("NewPage", "PageTitle.title", "Nouveau"))
        self.assertIn('add "NewPage" to PLACES', self.run_it()[1])
        self.gather(("FansPage", "PageTitle.title", "Encore %@"))
        self.assertIn('add "Encore %@" to INSERTED', self.run_it()[1])

    def test_without_the_builds_list_it_names_the_target_that_makes_it(self):
        status, said = self.run_it()
        self.assertEqual(status, 1)
        self.assertIn("--target gathered-texts", said)


if __name__ == "__main__":
    unittest.main()
