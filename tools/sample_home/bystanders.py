"""What lies beside the rows and must never be offered: a person's own work."""


def fill(home):
    home.text("Documents/Thesis/chapter-1.md", "# Introduction\n", days=500)
    home.text("Documents/taxes-2023.csv", "item,amount\n", days=700)
    home.text("Pictures/readme.txt", "Pictures live here.\n", days=900)
    home.text("Desktop/todo.txt", "- water the plants\n")
    home.text("Projects/weather/src/main.swift", 'print("sunny")\n', days=30)
    home.text("Projects/weather/Package.swift", "// swift-tools-version:5.9\n", days=30)
    home.text(".ssh/config", "Host *\n", days=800)
    home.text(".zshrc", "export EDITOR=vim\n", days=365)
    home.text(".npmrc", "fund=false\n", days=365)
    home.text(".cargo/config.toml", "[build]\n", days=365)
    home.text("Library/Preferences/com.example.notes.plist", "<plist/>\n", days=100)
    home.text("Library/Developer/Xcode/UserData/settings.xcsettings", "<plist/>\n", days=100)
