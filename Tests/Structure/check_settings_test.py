"""Tests of check_settings.py: each setting without a test is named."""

import sys
import unittest

sys.dont_write_bytecode = True
import check_settings as check


class Settings(unittest.TestCase):
    def test_a_row_is_found_by_its_title(self):
        qml = 'SettingRow {\n    heading: qsTr("Start")\n    title: qsTr("Open")\n}\nSettingRow {\n    title: qsTr("Close")\n}\n'
        self.assertEqual(list(check.untested_rows("Card.qml", qml, 'click("Open"); click("Close");')), [])
        self.assertEqual(list(check.untested_rows("Card.qml", qml, 'click("Open");')),
                         [f'Card.qml: {check.VIEW_TESTS} does not test the row "Close"'])

    def test_a_row_with_another_title_is_named(self):
        self.assertEqual(len(list(check.untested_rows("Card.qml", "SettingRow {\n    title: root.name\n}\n", ""))), 1)
        self.assertEqual(len(list(check.untested_rows("Card.qml", "SettingRow {\n}\n", ""))), 1)

    def test_only_what_can_be_changed_needs_a_test(self):
        header = "Q_PROPERTY(bool on READ on WRITE setOn NOTIFY c)\nQ_PROPERTY(QString text READ text NOTIFY c)\n"
        self.assertEqual(list(check.untested_properties(header, "EXPECT_TRUE(stage.monitor().on());")), [])
        self.assertEqual(len(list(check.untested_properties(header, ""))), 1)

    def test_every_key_needs_a_test(self):
        header = 'Preference{"theme", &SavedPreferences::theme},\nPreference{"on", &SavedPreferences::on, true},\n'
        self.assertEqual(list(check.untested_preferences(header, 'text("theme"), boolean("on")')), [])
        self.assertEqual(len(list(check.untested_preferences(header, 'text("theme")'))), 1)


if __name__ == "__main__":
    unittest.main()
