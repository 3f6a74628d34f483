"""Applications, what removed ones left behind, their caches, installers, and backups of mobile devices."""
import plistlib

MB = 1_000_000
CACHES = "Library/Caches"
SUPPORT = "Library/Application Support"
BACKUPS = f"{SUPPORT}/MobileSync/Backup"
DOWNLOADS = "Downloads"


def fill(home):
    for row in ROWS.values():
        row(home)


def application(home, name, identifier, size, opened_days, form=plistlib.FMT_XML):
    """An application whose program was last run `opened_days` ago."""
    contents = f"Applications/{name}.app/Contents"
    description = {"CFBundleIdentifier": identifier, "CFBundleName": name}
    home.text(f"{contents}/Info.plist", plistlib.dumps(description, fmt=form), days=400)
    home.file(f"{contents}/MacOS/{name}", 2 * MB, 400, opened_days, mode=0o755)
    home.file(f"{contents}/Resources/assets.car", size * MB, 400)


def unused_applications(home):
    application(home, "Paint Box", "com.example.paintbox", 220, 310)
    application(home, "Tape Deck", "com.example.tapedeck", 95, 140, plistlib.FMT_BINARY)
    home.file("Applications/Sculptor 1.8.AppImage", 130 * MB, 500, 200, mode=0o755)
    # Used lately, or the system's own by its name: these stay.
    application(home, "Notes", "com.example.notes", 40, 1)
    application(home, "Calendar", "com.example.calendar", 35, 12, plistlib.FMT_BINARY)
    application(home, "com.apple.Sketch", "com.apple.Sketch", 10, 365)
    home.file("Applications/Messenger 4.2.AppImage", 90 * MB, 60, 2, mode=0o755)


def leftovers(home):
    large = {"small": 11 * MB}  # smaller folders are not offered
    home.file(f"{SUPPORT}/com.example.videocutter/Projects.db", 340 * MB, 420, **large)
    home.file(f"{SUPPORT}/org.example.mapmaker/Tiles.sqlite", 120 * MB, 600, **large)
    # Of applications that are there, as both forms of property lists tell.
    home.file(f"{SUPPORT}/com.example.notes/Notes.sqlite", 60 * MB, 1, **large)
    home.file(f"{SUPPORT}/com.example.calendar/Calendar.sqlite", 24 * MB, 1, **large)
    # Small, or not named as an application names its folder.
    home.file(f"{SUPPORT}/com.example.clock/state.json", 4096, 700, fixed=True)
    home.file(f"{SUPPORT}/Family Tree/people.db", 45 * MB, 30, **large)
    home.file(f"{SUPPORT}/example.ledger/books.db", 20 * MB, 30, **large)


def caches(home):
    large = {"small": 11 * MB}
    home.file(f"{CACHES}/com.example.player/artwork.cache", 280 * MB, **large)
    home.file(f"{CACHES}/com.example.notes/thumbnails.cache", 35 * MB, **large)
    home.file(f"{CACHES}/Chat Desktop/media.cache", 150 * MB, **large)
    home.file(f"{CACHES}/com.example.clock/faces.cache", 200_000, fixed=True)


def installers(home):
    # Several versions of one product, in every place where they are looked for, and in every form. Two more lie
    # in the Downloads folder already.
    home.file(f"{DOWNLOADS}/Editor-2.2.dmg", 78 * MB, 60)
    home.file(f"{DOWNLOADS}/Editor_3.0-arm64.dmg", 81 * MB, 12)
    home.file("Desktop/Office Suite 16.89.pkg", 260 * MB, 45)
    home.file("Compiler 15.4.xip", 410 * MB, 100)
    home.file(f"{DOWNLOADS}/Printer Driver.pkg/Contents/Archive.pax.gz", 38 * MB, 30)
    home.folder(f"{DOWNLOADS}/Printer Driver.pkg", 30)
    # Kept on purpose, deeper, or of another kind.
    home.file("Documents/Software/Ledger-1.0.dmg", 30 * MB, 900)
    home.file("Desktop/course/Setup-2.0.dmg", 12 * MB, 20)
    home.file("Desktop/disk-of-2009.iso", 22 * MB, 900)


def device_backups(home):
    for device, size, days in (("00008110-000A4D2E1E38801E", 480, 35), ("00008110-000A4D2E1E38801E-20240218-091500", 310, 540)):
        home.many(f"{BACKUPS}/{device}", 30, size * MB, days=days)
        home.text(f"{BACKUPS}/{device}/Info.plist", plistlib.dumps({"Device Name": "iPhone"}), days)
    home.text(f"{BACKUPS}/README.txt", "Backups of devices.\n", 700)
    home.file(f"{BACKUPS}/.in-progress/Manifest.db", 5 * MB)


ROWS = {
    "apps.unused": unused_applications,
    "discover.appSupport": leftovers,
    "discover.caches": caches,
    "installers.forgotten": installers,
    "backup.ios": device_backups,
}
