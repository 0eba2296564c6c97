"""The words of the interface in every language, read from the translation tables in the sources.

A walk names controls in French, as the sources do; here are the words that stand on the screen then, and the way back.
"""

import pathlib
import re

SOURCES = pathlib.Path(__file__).resolve().parents[2] / "Sources/Fenwhirl"
LANGUAGES = {"fr": "Français", "en": "English", "sr": "Srpski (latinica)", "sr-Cyrl": "Српски (ћирилица)", "de": "Deutsch",
             "es": "Español", "it": "Italiano", "pt": "Português", "ru": "Русский"}
TABLES = {"en": "English", "sr": "SerbianLatin", "sr-Cyrl": "SerbianLatin", "de": "German", "es": "Spanish",
          "it": "Italian", "pt": "Portuguese", "ru": "Russian"}
ROW = re.compile(r'\{u"([^"]*)",\s*u"([^"]*)"\}')
# The alert of a newer version has a table of its own: codes, then title, download, later.
ALERT = re.compile(r'\{u"([\w-]+)", u"\w[\w-]*"\},\s*u"([^"]*)",\s*u"([^"]*)",\s*u"([^"]*)"')

CYRILLIC_PAIRS = {"lj": "љ", "nj": "њ", "dž": "џ"}
CYRILLIC = dict(zip("abcčćdđefghijklmnoprsštuvzž", "абцчћдђефгхијклмнопрсштувзж"))
LATIN_WORDS = {"fenwhirl", "mac", "macos", "cpu", "gpu", "ssd", "peci", "c", "wi", "fi", "%@"}


def in_cyrillic(text):
    def word(match):
        letters = match.group()
        if letters.lower() in LATIN_WORDS:
            return letters
        return re.sub("lj|nj|dž|.", lambda one: as_written(one.group()), letters, flags=re.IGNORECASE)

    def as_written(letters):
        shown = CYRILLIC_PAIRS.get(letters.lower(), CYRILLIC.get(letters.lower(), letters))
        return shown.upper() if letters[0].isupper() else shown

    return re.sub(r"(?:[^\W\d_]|[%@])+", word, text)


def before(text):
    """The words before the value in a text, without the colon."""
    return text.partition("%@")[0].rstrip(": \u202f\u00a0")


class Words:
    """One language's words; French has its own."""

    def __init__(self, language):
        self.translations = {}
        if language in TABLES:
            table = (SOURCES / f"Localization/Tables/{TABLES[language]}.h").read_text(encoding="utf-8")
            self.translations.update(ROW.findall(table))
            if language == "sr-Cyrl":
                self.translations = {french: in_cyrillic(text) for french, text in self.translations.items()}
            alerts = {code: words for code, *words in
                      ALERT.findall((SOURCES / "Updates/UpdateTexts.cpp").read_text(encoding="utf-8"))}
            self.translations.update(zip(alerts["fr"], alerts[language]))
            # A slider has the words before its value as its name: "Vitesse demandée : %@ tr/min".
            names = {before(french): before(text) for french, text in self.translations.items() if " : %@" in french}
            self.translations = {**names, **self.translations}

    def shown(self, french):
        """What stands on the screen for a French text, also for one with its values put in."""
        if french in self.translations:
            return self.translations[french]
        for key, text in self.translations.items():
            values = self.values(key, french)
            if values:
                return re.sub("%@", lambda _: values.pop(0), text)
        return french

    def french(self, shown):
        """Every French text for which this may stand on the screen."""
        found = {shown}
        for key, text in self.translations.items():
            if text == shown:
                found.add(key)
            else:
                values = self.values(text, shown)
                if values:
                    found.add(re.sub("%@", lambda _, values=values: values.pop(0), key))
        return found

    @staticmethod
    def values(pattern, text):
        """What was put into the placeholders of a text; nothing when it is another."""
        if "%@" not in pattern:
            return []
        match = re.fullmatch("(.+?)".join(re.escape(part) for part in pattern.split("%@")), text)
        return list(match.groups()) if match else []
