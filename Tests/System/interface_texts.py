"""Translates texts of the interface, using the translation tables in the sources.

The tours name controls in French, as the sources do. This module finds the text that is shown in another language, and the
French texts that a shown text may stand for.
"""

import pathlib
import re

import interface

SOURCES = pathlib.Path(__file__).resolve().parents[2] / "Sources/Fenwhirl"
LANGUAGES = {"fr": "Français", "en": "English", "sr": "Srpski (latinica)", "sr-Cyrl": "Српски (ћирилица)", "de": "Deutsch",
             "es": "Español", "it": "Italiano", "pt": "Português", "ru": "Русский"}
TABLES = {"en": "English", "sr": "SerbianLatin", "sr-Cyrl": "SerbianLatin", "de": "German", "es": "Spanish",
          "it": "Italian", "pt": "Portuguese", "ru": "Russian"}
ROW = re.compile(r'\{u"([^"]*)",\s*u"([^"]*)"\}')
# The texts of the update alert are in a table of their own: language codes, then title, download, later.
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


class Translations:
    """The translations of one language. French texts are their own translations."""

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
            # A slider has the words before its value as its name: "Vitesse demandée : %@ tr/min", "Vitesse maximale à %@ °C".
            names = {before(french): before(text) for french, text in self.translations.items()
                     if " : %@" in french or french.endswith(" %@ °C")}
            self.translations = {**names, **self.translations}

    def shown(self, french):
        """The text shown on the screen for a French text, which may have values in its placeholders."""
        if french in self.translations:
            return self.translations[french]
        for key, text in self.translations.items():
            values = self.values(key, french)
            if values:
                return re.sub("%@", lambda _: values.pop(0), text)
        return french

    def french(self, shown):
        """Every French text that may be shown on the screen as this text."""
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
        """The values that `text` has in the placeholders of `pattern`; empty when it does not match."""
        if "%@" not in pattern:
            return []
        match = re.fullmatch("(.+?)".join(re.escape(part) for part in pattern.split("%@")), text)
        return list(match.groups()) if match else []


class Names(list):
    """A list of names on the screen, in which count() takes a French text."""

    def __init__(self, names, translations):
        super().__init__(names)
        self.translations = translations

    def count(self, french):
        return super().count(self.translations.shown(french))


class TranslatedInterface(interface.Interface):
    """The interface in any language, queried with French texts."""

    def __init__(self, language):
        super().__init__()
        self.translations = Translations(language)

    def texts(self):
        return Names(super().texts(), self.translations)

    def find(self, name, role=None):
        if callable(name):
            return super().find(lambda text: any(name(french) for french in self.translations.french(text)), role)
        return super().find(self.translations.shown(name), role)
