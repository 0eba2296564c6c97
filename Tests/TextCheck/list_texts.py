#!/usr/bin/python3
"""Maintains the list of texts in Documentation/Languages.md: where each text appears, how much room it has, what fills its
placeholders.

    list_texts.py TEXTS LANGUAGES.MD            exits with 1 when the list does not match the sources
    list_texts.py --write TEXTS LANGUAGES.MD    writes the list; cmake --build build/dev --target list-texts calls it

TEXTS is the file that the build gathers from all sources (texts.tsv). The tables below say which part of the interface a
source file is, and how wide its controls are. A file or an inserted value that they do not mention is an error.
"""

import pathlib
import sys

BEGIN, END = "<!-- list_texts.py writes from here -->", "<!-- to here -->"
TABLES = "Fenwhirl/Localization/FrenchTexts.h"

# Where the user sees the texts of a QML file.
PLACES = {
    "Announcements": "said when it happens", "AlertsPage": "Alerts", "AppearanceCard": "Settings", "AppsPage": "Applications", "Banners": "above every page",
    "ControlCard": "Settings", "DashboardPage": "Dashboard", "FanCard": "Fans", "FanCurveControls": "Fans",
    "FanSpeedControls": "Fans", "FansPage": "Fans", "FeaturedCard": "Dashboard", "LanguagePicker": "Settings, introduction", "MenuActions": "panel",
    "MenuFanRow": "panel", "MenuPanel": "panel", "Sidebar": "sidebar",
    "Onboarding": "introduction", "OnboardingAction": "introduction", "PresetCard": "Presets",
    "PresetMenu": "Dashboard, Fans", "PresetsPage": "Presets", "ReportCard": "Settings", "SensorsPage": "Sensors",
    "SettingsPage": "Settings", "StartCard": "Settings", "TemperatureCard": "Dashboard", "ThresholdsCard": "Settings",
}

# Texts in C++ files: where they appear, and in which control. ROOMS below has the control's room, as for QML.
MADE = {
    "AppDelegate": ("status item's menu", "StatusMenuEntry"),
    "LanguageNames": ("Settings, introduction", "PopupMenuItem.text"),
    "AppsView": ("Applications", {"Fermer %@ ?": "Dialog.title", None: "Paragraph.content"}),
    "FanRow": ("Fans, dashboard, panel", {"%@ – %@ tr/min": "Paragraph.content", None: "ChangingText.content"}),
    "FanSummary": ("Fans, dashboard, panel", {"tr/min": "RingGauge.caption", None: "Paragraph.content"}),
    "MachineView": ("Dashboard, Fans, introduction", {"Température du processeur": "Label.text", None: "PageTitle.subtitle"}),
    "MonitorLifecycle": ("above every page", "ErrorBanner.message"),
    "MonitorPolling": ("above every page", {"Ton Mac chauffe : %@ degrés.": "notification", None: "ErrorBanner.message"}),
    "MonitorStates": ("sidebar, dashboard, panel", {"Tout est normal": "Sidebar", "Le Mac est chaud": "Sidebar", "Surchauffe": "Sidebar",
                                                    None: "TemperatureCard"}),
    "NumberFormat": ("Applications, sensors", {"%@ – %@ tr/min": "Tooltip.text", None: "AppRow.memoryText"}),
    "PageLabels": ("sidebar", "SidebarRow.text"),
    "ProgramMenus": ("menu bar of macOS", "MenuItem.title"),
    "PreferencesView": ("Alerts, settings", {"Ceci est une alerte de test.": "notification", None: "ChangingText.content"}),
    "Preset": ("Presets, panel, menus", {"Auto": "Chip.text", "Silencieux": "Chip.text", "Équilibré": "Chip.text",
                                         "Jeu": "Chip.text", "Max": "Chip.text", None: "PresetCard.detail"}),
    "PresetList": ("Dashboard, Fans", "PopupMenuItem.text"),
    "SensorChoices": ("Fans", "PopupMenuItem.text"),
    "SensorLabel": ("Sensors, dashboard, menus", "SensorRow.name"),
    "SensorNames": ("Sensors, dashboard, menus", "SensorRow.name"),
}

# Files that use a text for other readers: the diagnostic report, which is always French, and the system.
# the system.
NOT_SHOWN = {"SMCFanWriteTest", "SMCReport", "DiagnosticReport", "FriendlyName"}

# Room in points at the designed text size in the smallest window, which is 920 wide: 700 for a page, 660 inside a card, 301
# inside the card of a fan, 308 in the panel. "Own width" stands for a control that becomes as wide as its text, up to the
# given limit. "Read aloud" means that nothing is drawn.
LINES, LINE, ALOUD = "lines of {}", "one line of {}", "read aloud"
OWN = "one line of its own width, up to {}"
BUTTON = "a button of its own width, up to {}"
SYSTEM = "as the system draws it"
ROOMS = {
    "Announcement.text": ALOUD, "ChipRow.text": ALOUD, "Column.Accessible.name": ALOUD, "CurveEditor.text": ALOUD,
    "FocusScope.Accessible.name": ALOUD, "HistoryChart.description": ALOUD, "Item.Accessible.name": ALOUD,
    "ModeButton.description": ALOUD, "ModePicker.text": ALOUD, "NeutralButton": ALOUD, "PopupButton.text": ALOUD,
    "NeutralButton.Accessible.description": ALOUD, "SegmentedControl.text": ALOUD, "SidebarRow.selectedText": ALOUD, "Switch.text": ALOUD,
    "MenuItem.title": SYSTEM, "StatusMenuEntry": SYSTEM, "notification": SYSTEM,
    "AppRow.memoryText": OWN.format(340) + ", behind a number", "AppRow.protectedText": OWN.format(100) + ", 64 without widening",
    "Banners.problem": LINES.format(630), "Chip.text": OWN.format(288) + ", in rows of chips",
    "Dialog.acceptText": LINE.format(232), "Dialog.cancelText": LINE.format(232), "Dialog.destructiveText": LINE.format(232),
    "Dialog.message": LINES.format(260), "Dialog.title": LINES.format(260),
    "DropDownMenu.caption": OWN.format(300) + ", before its value", "ErrorBanner.message": LINES.format(604) + "; in the panel of 250",
    "HelperBanner.actionText": BUTTON.format(300), "HelperBanner.busyText": BUTTON.format(300),
    "HelperBanner.message": LINES.format(618) + ", less the text of the button", "HelperBanner.title": LINES.format(618) + ", less the text of the button",
    "HistoryChart.endCaption": "one line of 276 with the other end's", "HistoryChart.startCaption": "one line of 276 with the other end's",
    "ModeButton.text": OWN.format(300) + ", in a tooltip",
    "ModePicker.autoLabel": "one line of 289 with the other two, else of 295", "ModePicker.constantLabel": "one line of 289 with the other two, else of 295",
    "ModePicker.sensorLabel": "one line of 289 with the other two, else of 295",
    "PageTitle.subtitle": LINES.format(700), "PageTitle.title": LINE.format(700),
    "PopupMenuItem.text": OWN.format(850) + "; the closed control cuts it at 150", "PresetCard.detail": LINES.format(560) + ", less where the button is wider than 60",
    "RingGauge.caption": LINE.format(95) + ", below the number", "SensorRow.name": LINE.format(150), "SidebarRow.text": LINE.format(114),
    "SegmentedControl.labels": "one line of 334 with the other two", "Slider.unit": OWN.format(60) + ", behind a number",
    "SliderGroup.unit": OWN.format(60) + ", behind a number", "Tooltip.text": OWN.format(850),

    # Controls whose room depends on where they are: by the source file.
    "AlertsPage NeutralButton.text": BUTTON.format(632), "AlertsPage SettingRow.note": LINES.format(610), "AlertsPage SettingRow.title": LINES.format(610),
    "AppearanceCard SettingRow.heading": LINE.format(348), "AppearanceCard SettingRow.title": LINES.format(348),
    "AppsPage Paragraph.content": LINES.format(620), "AppsView Paragraph.content": LINES.format(630),
    "ControlCard Label.text": LINE.format(660), "ControlCard NeutralButton.text": BUTTON.format(556) + " with the others of its row",
    "ControlCard Paragraph.content": LINES.format(660), "ControlCard PrimaryButton.text": BUTTON.format(592) + " with the other of its row",
    "DashboardPage Paragraph.content": LINES.format(700), "FanCard Label.text": LINE.format(301),
    "FanCurveControls Label.text": OWN.format(100) + ", before a picker",
    "FanRow ChangingText.content": LINES.format(225), "FanRow Paragraph.content": LINES.format(161), "FanSummary Paragraph.content": LINES.format(161),
    "FansPage Paragraph.content": LINES.format(700), "FeaturedCard Label.text": LINE.format(270),
    "MachineView Label.text": LINE.format(300), "MenuActions NeutralButton.text": LINE.format(274), "MenuActions PrimaryButton.text": LINE.format(274),
    "MenuActions SecondaryButton.text": LINES.format(280), "MenuFanRow Label.text": OWN.format(60) + ", behind a number",
    "MonitorStates Sidebar": LINE.format(124), "MonitorStates TemperatureCard": LINE.format(200),
    "Onboarding Paragraph": LINES.format(336), "Onboarding Paragraph.content": LINES.format(360), "Onboarding PrimaryButton.text": BUTTON.format(406),
    "OnboardingAction Label.text": LINE.format(158), "OnboardingAction SecondaryButton.text": BUTTON.format(332),
    "PreferencesView ChangingText.content": LINES.format(314), "PresetCard Label.text": OWN.format(200), "PresetCard NeutralButton.text": BUTTON.format(200),
    "ReportCard Label.text": LINE.format(660), "ReportCard NeutralButton.text": BUTTON.format(370), "ReportCard Paragraph.content": LINES.format(640),
    "SettingsPage SettingRow.note": LINES.format(448), "SettingsPage SettingRow.title": LINES.format(448),
    "StartCard SettingRow.heading": LINE.format(610), "StartCard SettingRow.title": LINES.format(610),
    "TemperatureCard Label.text": LINE.format(300), "ThresholdsCard Label.text": LINE.format(660), "ThresholdsCard Paragraph.content": LINES.format(600),
}

# What replaces "%@" in each text.
TEMPERATURE = "a temperature, without its unit"
INSERTED = {
    "%@ utilise %@ du processeur.": "an application's name; its share (\"37 %\")",
    "Fermer %@ ?": "an application's name", "%@ – %@ tr/min": "the least and the greatest speed",
    "Vitesse demandée : %@ tr/min": "a speed", "La vitesse augmente à partir de %@ °C": TEMPERATURE,
    "Vitesse maximale à %@ °C": TEMPERATURE, "Ton Mac chauffe : %@ degrés.": TEMPERATURE,
    "Ventilateur %@": "the fan's number", "%@ capteurs de température": "how many", "Seuil d'alerte : %@ °C": TEMPERATURE,
    "Mac chaud à partir de %@ °C": TEMPERATURE, "Surchauffe à partir de %@ °C": TEMPERATURE,
}


class NotMentioned(Exception):
    """What one of the tables above lacks."""


def mentioned(table, name, key, text):
    if key not in table:
        raise NotMentioned(f'"{text}": add "{key}" to {name} in Tests/TextCheck/list_texts.py')
    return table[key]


def gathered(file):
    """Returns (keys in the order of the tables, uses of each text as (source, control))."""
    keys, uses = [], {}
    for line in pathlib.Path(file).read_text(encoding="utf-8", errors="replace").rstrip("\n").split("\n"):
        kind, place, control, text = line.split("\t", 3)
        source = place.rsplit(":", 1)[0]
        text = text.strip()
        if source == TABLES:
            keys.append(text)
        elif "/Tables/" not in source and not any(words in source for words in ("SystemTerms", "DialogTexts")) and kind in ("asked", "loose", "other"):
            uses.setdefault(text, []).append((source, control))
    # The header contains other literals, too; the tables begin with the first key that is used.
    return list(dict.fromkeys(key for key in keys if key in uses)), uses


def entries(key, uses):
    """Where a text is used: (place, control, room), without duplicates, in the order of the sources."""
    found = []
    for source, control in uses:
        name = pathlib.PurePosixPath(source).stem
        if source.endswith(".qml"):
            place = mentioned(PLACES, "PLACES", name, key)
            if name == "Announcements":  # its text depends on what happened
                control = "Announcement.text"
        elif name in MADE:
            place, control = MADE[name]
            if isinstance(control, dict):
                control = control.get(key, control[None])
        elif name in NOT_SHOWN:
            continue
        else:
            mentioned(MADE, "MADE", name, key)
        here = f"{name} {control}"  # a control's room in this file, if it differs from its usual one
        room = mentioned(ROOMS, "ROOMS", control if control in ROOMS and here not in ROOMS else here, key)
        found.append((place, control, room))
    return list(dict.fromkeys(found))


def listed(keys, uses):
    lines = ["| text | where: control (room in points) | put in for %@ |", "|---|---|---|"]
    for key in keys:
        used = entries(key, uses[key])
        if not used:
            raise NotMentioned(f'"{key}" is used in no file that shows texts')
        put_in = mentioned(INSERTED, "INSERTED", key, key) if "%@" in key else ""
        where = "; ".join(f"{place}: {control} ({room})" for place, control, room in used)
        lines.append(f"| {key} | {where} | {put_in} |")
    return "\n".join(lines)


def main(arguments):
    write = arguments[:1] == ["--write"]
    texts, document = arguments[1:] if write else arguments
    page = pathlib.Path(document)
    before = page.read_text(encoding="utf-8")
    try:
        table = listed(*gathered(texts))
    except FileNotFoundError:
        print(f"There is no {texts}. The build makes it: cmake --build build/dev --target gathered-texts", file=sys.stderr)
        return 1
    except NotMentioned as what:
        print(what, file=sys.stderr)
        return 1
    head, rest = before.split(BEGIN)
    after = f"{head}{BEGIN}\n\n{table}\n\n{END}{rest.split(END)[1]}"
    if write:
        page.write_text(after, encoding="utf-8")
    elif after != before:
        print(f"The list of texts in {page.name} is not what the sources say. To write it:\n"
              "  cmake --build build/dev --target list-texts", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
