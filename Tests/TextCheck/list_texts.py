#!/usr/bin/python3
"""Maintains the list of texts in Documentation/Languages.md: where each text appears, how much room it has, what fills its
placeholders.

    list_texts.py TEXTS LANGUAGES.MD            exits with 1 when the list does not match the sources
    list_texts.py --write TEXTS LANGUAGES.MD    writes the list

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
    "AppLanguage": ("Settings, introduction", "PopupMenuItem.text"),
    "AppsView": ("Applications", {"Fermer %@ ?": "Dialog.title", None: "Paragraph.content"}),
    "FanRow": ("Fans, dashboard, panel", {"%@ – %@ tr/min": "Label.text", None: "ChangingText.content"}),
    "FanSummary": ("Fans, dashboard, panel", {"tr/min": "RingGauge.caption", None: "Paragraph.content"}),
    "MachineView": ("Dashboard, Fans, introduction", {"Ce Mac": "PageTitle.subtitle", None: "Label.text"}),
    "MonitorLifecycle": ("above every page", "ErrorBanner.message"),
    "MonitorPolling": ("above every page", {"Ton Mac chauffe : %@ degrés.": "notification", None: "ErrorBanner.message"}),
    "MonitorStates": ("sidebar, dashboard, panel", "StatusDot"),
    "NumberFormat": ("Applications, sensors", {"%@ – %@ tr/min": "Tooltip.text", None: "AppRow.memoryText"}),
    "Page": ("sidebar", "SidebarRow.text"),
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

# Room in points at the designed text size in the smallest window, which is 920 wide. "Read aloud" means that nothing is
# drawn.
LINES, LINE, ALOUD = "lines of {}", "one line of {}", "read aloud"
ROOMS = {
    "AppRow.memoryText": "one line behind a number", "AppRow.protectedText": "one line, as wide as it is",
    "Tooltip.text": "a tooltip's line", "Announcement.text": ALOUD, "MenuItem.title": "a menu's line", "SidebarRow.selectedText": ALOUD,
    "Banners.problem": LINES.format(600), "ChangingText.content": "one line, several where it has no room",
    "Chip.text": "one line, in rows of chips", "ChipRow.text": ALOUD, "Column.Accessible.name": ALOUD,
    "CurveEditor.text": ALOUD, "ModeButton.description": ALOUD, "ModeButton.text": "a tooltip's line",
    "Slider.unit": "behind a number, as wide as it is", "SliderGroup.unit": "behind a number, as wide as it is",
    "Dialog.acceptText": "a button's line", "Dialog.cancelText": "a button's line",
    "Dialog.destructiveText": "a button's line", "Dialog.message": LINES.format(260), "Dialog.title": LINES.format(260),
    "DropDownMenu.caption": "one line", "ErrorBanner.message": LINES.format(600),
    "HelperBanner.actionText": "a button's line", "HelperBanner.busyText": "a button's line",
    "HelperBanner.message": "lines beside a button", "HelperBanner.title": "lines beside a button",
    "HistoryChart.description": ALOUD, "HistoryChart.endCaption": "one line", "HistoryChart.startCaption": "one line",
    "FocusScope.Accessible.name": ALOUD, "Item.Accessible.name": ALOUD, "Label.text": "one line", "ModePicker.autoLabel": "a third of the card, then lines",
    "ModePicker.constantLabel": "a third of the card, then lines", "ModePicker.sensorLabel": "a third of the card, then lines",
    "ModePicker.text": ALOUD, "NeutralButton": ALOUD, "NeutralButton.Accessible.description": ALOUD,
    "NeutralButton.text": "a button's line", "PageFrame.explanation": LINES.format(700),
    "PageTitle.subtitle": LINES.format(700), "PageTitle.title": LINE.format(700), "Paragraph": LINES.format(336), "Paragraph.content": "lines",
    "PopupButton.text": ALOUD, "PopupMenuItem.text": "a menu's line, as wide as it is", "PresetCard.detail": "lines beside a button",
    "PrimaryButton.text": "a button's line", "RingGauge.caption": "one line below the number",
    "SecondaryButton.text": "a button's line", "SegmentedControl.labels": "one line, as wide as it is",
    "SegmentedControl.text": ALOUD, "SensorRow.name": LINE.format(150), "SettingRow.heading": "one line",
    "SettingRow.note": "lines beside a control", "SettingRow.title": "lines beside a control", "SidebarRow.text": LINE.format(114),
    "StatusDot": "one line", "StatusMenuEntry": "the desktop's", "Switch.text": ALOUD, "notification": "the desktop's",
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
            place = PLACES[name]
            if name == "Announcements":  # its text depends on what happened
                control = "Announcement.text"
        elif name in MADE:
            place, control = MADE[name]
            if isinstance(control, dict):
                control = control.get(key, control[None])
        elif name in NOT_SHOWN:
            continue
        else:
            raise KeyError(source)
        found.append((place, control, ROOMS[control]))
    return list(dict.fromkeys(found))


def listed(keys, uses):
    lines = ["| text | where: control (room in points) | put in for %@ |", "|---|---|---|"]
    for key in keys:
        used = entries(key, uses[key])
        if not used:
            raise KeyError(key)
        put_in = INSERTED[key] if "%@" in key else ""
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
    except KeyError as unknown:
        print(f"{unknown} is not told in {pathlib.Path(__file__).name}: where it stands, its room, or what is put in", file=sys.stderr)
        return 1
    head, rest = before.split(BEGIN)
    after = f"{head}{BEGIN}\n\n{table}\n\n{END}{rest.split(END)[1]}"
    if write:
        page.write_text(after, encoding="utf-8")
    elif after != before:
        print(f"The list of texts in {page.name} is not what the sources say. To write it:\n"
              f"  {pathlib.Path(__file__)} --write {texts} {page}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
