"""The texts of the window, read from the string catalog: a test names a key, never a sentence."""
import itertools
import json
import os
import pathlib
import re

CATALOG = pathlib.Path(os.environ["VESKO_SOURCE"]) / "resources/Localizable.xcstrings"
PLACEHOLDER = re.compile(r"%(?:(\d+)\$)?(?:lld|@|d)")
SUBSTITUTION = re.compile(r"%#@(\w+)@")


class Texts:
    """The texts of one language, "en" or "pt-BR"."""

    def __init__(self, language):
        self.language = language
        self._entries = json.loads(CATALOG.read_text(encoding="utf-8"))["strings"]

    def of(self, key, *arguments):
        """The text of a key with its arguments put in; the form of each number goes by the language's rule."""
        localization = self._localization(key)
        number = next((argument for argument in arguments if isinstance(argument, int)), None)
        text = self._form(localization, number)

        def substituted(match):
            entry = localization["substitutions"][match.group(1)]
            value = arguments[entry["argNum"] - 1]
            return self._form(entry, value).replace("%arg", str(value))

        return self._fill(SUBSTITUTION.sub(substituted, text), arguments)

    def pattern(self, key):
        """A regular expression for the text of a key with any arguments, each caught as a group."""
        localization = self._localization(key)
        texts = []
        for text in self._forms(localization):
            names = SUBSTITUTION.findall(text)
            choices = [self._forms(localization["substitutions"][name]) for name in names]
            for chosen in itertools.product(*choices):
                following = iter(chosen)
                texts.append(SUBSTITUTION.sub(lambda _, following=following: next(following), text))
        return "(?:" + "|".join(self._pattern_of(text) for text in texts) + ")"

    def _localization(self, key):
        entry = self._entries.get(key)
        if entry is None or self.language not in entry["localizations"]:
            raise KeyError(f"the catalog has no {self.language} text for {key}")
        return entry["localizations"][self.language]

    @staticmethod
    def _forms(entry):
        if "stringUnit" in entry:
            return [entry["stringUnit"]["value"]]
        return [form["stringUnit"]["value"] for form in entry["variations"]["plural"].values()]

    def _form(self, entry, number):
        if "stringUnit" in entry:
            return entry["stringUnit"]["value"]
        plural = entry["variations"]["plural"]
        single = number == 1 or (number == 0 and self.language == "pt-BR")
        return (plural.get("one") if single and "one" in plural else plural["other"])["stringUnit"]["value"]

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
        for match in re.finditer(r"%(?:\d+\$)?(?:lld|@|d)|%arg", text):
            pieces += [re.escape(text[last:match.start()]), "(.+?)" if match.group().endswith("@") else r"([\d.,]+)"]
            last = match.end()
        return "".join(pieces) + re.escape(text[last:])
