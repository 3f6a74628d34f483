"""The texts of the window, read from the string catalog: a test names a key, never a sentence."""
import json
import os
import pathlib
import re

CATALOG = pathlib.Path(os.environ["VESKO_SOURCE"]) / "resources/Localizable.xcstrings"
PLACEHOLDER = re.compile(r"%(?:(\d+)\$)?(?:lld|@|d|#@\w+@)")


class Texts:
    """The texts of one language, "en" or "pt-BR"."""

    def __init__(self, language):
        self.language = language
        self._entries = json.loads(CATALOG.read_text(encoding="utf-8"))["strings"]

    def of(self, key, *arguments):
        """The text of a key with its arguments put in. The first whole number decides between one and many."""
        number = next((argument for argument in arguments if isinstance(argument, int)), None)
        return self._fill(self._form(key, number), arguments)

    def pattern(self, key):
        """A regular expression for the text of a key with any arguments, each caught as a group."""
        return "(?:" + "|".join(self._pattern_of(form) for form in self._forms(key)) + ")"

    def _localization(self, key):
        entry = self._entries.get(key)
        if entry is None or self.language not in entry["localizations"]:
            raise KeyError(f"the catalog has no {self.language} text for {key}")
        return entry["localizations"][self.language]

    def _plural(self, key):
        return self._localization(key).get("variations", {}).get("plural")

    def _forms(self, key):
        plural = self._plural(key)
        if plural is None:
            return [self._localization(key)["stringUnit"]["value"]]
        return [form["stringUnit"]["value"] for form in plural.values()]

    def _form(self, key, number):
        plural = self._plural(key)
        if plural is None:
            return self._localization(key)["stringUnit"]["value"]
        single = number == 1 or (number == 0 and self.language == "pt-BR")
        form = plural.get("one") if single else None
        return (form or plural["other"])["stringUnit"]["value"]

    @staticmethod
    def _fill(text, arguments):
        following = iter(range(len(arguments)))

        def argument(match):
            index = int(match.group(1)) - 1 if match.group(1) else next(following)
            return str(arguments[index])

        return PLACEHOLDER.sub(argument, text)

    @staticmethod
    def _pattern_of(text):
        pieces, last = [], 0
        for match in PLACEHOLDER.finditer(text):
            pieces += [re.escape(text[last:match.start()]), "(.+?)"]
            last = match.end()
        return "".join(pieces) + re.escape(text[last:])
