"""The screens as a person knows them: where things are and how to act on them, for the tests to speak in."""
import json
import re
import subprocess

import stage
from driver import until


def leave_list_with_image(session, image, size):
    """Write the cached list of an earlier scan, with one container image in it; returns its group's title."""
    title = session.texts.of("probe.docker.images.title")
    path = session.home / "Library/Containers/com.docker.docker/Data/images" / image
    session.cache_path().parent.mkdir(parents=True)
    session.cache_path().write_text(json.dumps({
        "schemaVersion": 1, "localeIdentifier": "en", "scanDate": "2026-01-05T10:00:00Z", "foundTotalBytes": size,
        "groups": [{
            "id": "docker.images", "title": title, "icon": "shippingbox.fill", "sectionID": "development",
            "sectionSortIndex": 2, "providerID": "docker", "relevancePolicy": "standard", "subtitle": "",
            "baselineSafety": "revisar", "baselineReason": "Images can be pulled again.",
            "items": [{"path": str(path), "size": size, "isDirectory": False,
                       "enrichmentKey": f"docker:image:{image}"}],
        }],
    }))
    return title


class Cleanup:
    """The Cleanup screen of a running program."""

    def __init__(self, program):
        self.program = program
        self.texts = program.texts

    # --- going there, waiting

    def open(self):
        self.program.find("page tab", self.texts.of("sidebar.cleanup")).press()
        return self

    def scan_button(self):
        return self.program.find("push button", self.texts.of("cleanup.scan"))

    def wait_for_scan(self, seconds=60):
        """Until the scan that runs has ended and its list is on screen."""
        before = self.program.cache_before
        until(lambda: cache_date(self.program.session) not in (None, before), seconds, "the scan's cache")
        self.program.gone("push button", self.texts.of("action.cancel"), seconds)
        self.program.gone(None, self.texts.of("banner.scanPreparing"), seconds)
        self.recover_button()
        return self

    # --- the list

    def search(self, text):
        """Show only the groups whose titles hold `text`; an empty text shows all.

        A letter that stands on no key is given one only while it is typed, and a busy program reads it when the key
        has become another letter: the longest stretch of plain letters is what is typed.
        """
        text = max(re.findall(r"[ -~]+", text), key=len, default="").strip()
        field = self.program.find("text", self.texts.of("a11y.search"))
        field.give_focus()
        self.program.focus()
        self.program.key("ctrl+a", "Delete")
        if text:
            self.program.type(text)
        until(lambda: field.text == text, what=f"the search field to read {text!r}")

    def title(self, group):
        return self.texts.of(f"probe.{group}.title")

    def row(self, title):
        """The row of a group; its name says title, verdict and size."""
        name = self.texts.of("a11y.group %1$@ %2$@ %3$@", re.escape(title), ".*", ".*")
        return self.program.find("push button", re.compile(name))

    def is_expanded(self, title):
        return self.row(title).description.startswith(self.texts.of("a11y.expanded"))

    def expand(self, title):
        self.row(title).press()
        until(lambda: self.is_expanded(title), what=f"{title} to expand")

    def item_names(self):
        """The names of the items whose rows are shown."""
        pattern = re.compile(self.texts.pattern("a11y.selectItem %@"))
        return [pattern.fullmatch(node.name).group(1) for node in self.program.root.all("check box", pattern)]

    def box_of_group(self, title):
        return self.program.find("check box", self.texts.of("a11y.selectGroup %@", title))

    def box_of_item(self, name):
        return self.program.find("check box", self.texts.of("a11y.selectItem %@", name))

    def toggle(self, find):
        """Toggle the box that `find` gives, and wait until it shows it."""
        before = find().has_state("CHECKED")
        find().toggle()
        until(lambda: find().has_state("CHECKED") != before, what="the box to change")

    # --- deleting

    def recover_button(self):
        return self.program.find("push button", re.compile(self.texts.pattern("action.recover %@")))

    def ask_to_delete(self):
        """Press the one action until its sheet stands; right after a scan a press may come too early."""
        def pressed():
            if not self.sheet_stands():
                self.recover_button().press()
            return self.sheet_stands()

        until(pressed, what="the sheet", pause=0.3)

    def sheet_stands(self):
        return self.program.has("dialog", self.texts.of("delete.confirm.title"))

    def confirm_button(self):
        return self.program.find("push button", self.texts.of("delete.confirm.action"))

    def type_word(self, word):
        field = self.program.find("text", self.texts.of("a11y.confirmField"))
        self.program.focus()
        field.give_focus()
        self.program.key("ctrl+a", "Delete")
        self.program.type(word)
        until(lambda: field.text == word, what=f"the field to read {word!r}")

    def confirm_word(self):
        return self.texts.of("delete.confirm.word")

    def message(self, key, seconds=60):
        """The arguments of a message of the banner, as texts, once it is there."""
        pattern = re.compile(self.texts.pattern(key), re.DOTALL)
        node = self.program.find(None, pattern, seconds)
        return [group for group in pattern.fullmatch(node.name).groups() if group is not None]

    def failure_text(self, seconds=60):
        """What the banner says of the removals that failed."""
        return self.program.find(None, self.texts.of("banner.deleteFailed"), seconds).description

    # --- what is left behind

    def cache_path(self):
        return self.program.session.cache_path()

    def cache(self):
        return json.loads(self.cache_path().read_text(encoding="utf-8"))

    def cached_paths(self):
        return {item["path"] for group in self.cache()["groups"] for item in group["items"]}


def cache_date(session):
    try:
        return session.cache_path().stat().st_mtime_ns
    except OSError:
        return None


def make_sample_home(session):
    subprocess.run([f"{stage.os.environ['VESKO_SOURCE']}/tools/sample-home", "--small", str(session.home)],
                   check=True, capture_output=True)
