"""The caches of single tools: Swift's packages, Maven, the JetBrains programs, Xcode's previews.

Homebrew's cache is told by its stand-in, and so it is made in tool_state.
"""
MB = 1_000_000


def fill(home):
    for row in ROWS.values():
        row(home)


def swiftpm(home):
    home.many("Library/Caches/org.swift.swiftpm/repositories/swift-nio-9c2f1e07", 14, 75 * MB, ".pack")
    home.many("Library/Caches/org.swift.swiftpm/artifacts", 4, 30 * MB, ".zip")


def maven(home):
    home.many(".m2/repository/org/springframework", 40, 190 * MB, ".jar")
    home.many(".m2/repository/com/example/billing", 6, 8 * MB, ".jar")
    # Beside the packages: a person's own settings, with passwords to servers.
    home.text(".m2/settings.xml", "<settings/>\n", days=300)


def jetbrains(home):
    home.many("Library/Caches/JetBrains/GoLand2023.3/index", 20, 140 * MB)
    home.many("Library/Caches/JetBrains/GoLand2024.2/index", 20, 210 * MB)
    home.many("Library/Caches/JetBrains/GoLand2024.2/LocalHistory", 4, 12 * MB, ".storageData")
    home.text("Library/Application Support/JetBrains/GoLand2024.2/options/editor.xml", "<application/>\n", days=40)


def previews(home):
    builds = "Library/Developer/Xcode/DerivedData"
    home.many(f"{builds}/Weather-fkwqpzbmtrnvaxcd/Previews/Weather", 12, 64 * MB, ".o")
    home.many(f"{builds}/Notes-ahwbzmqkeyrtlpvs/Previews/Notes", 8, 22 * MB, ".o")


ROWS = {
    "cache.swiftpm": swiftpm,
    "cache.maven": maven,
    "cache.jetbrains": jetbrains,
    "xcode.previews": previews,
}
