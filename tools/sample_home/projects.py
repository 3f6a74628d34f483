"""Rows 23 to 30 of the catalog: what projects download and build, and folders that only look like it."""
MB = 1_000_000


def fill(home):
    for row in ROWS.values():
        row(home)
    only_alike(home)


def package(home, project, days=20):
    """A project of Node.js: its description and its code, both a person's own."""
    home.text(f"{project}/package.json", "{}\n", days)
    home.text(f"{project}/src/index.js", "export {};\n", days)


def node_modules(home):
    package(home, "Projects/shop")
    home.many("Projects/shop/node_modules/react/cjs", 20, 90 * MB, ".js")
    # A dependency's own dependencies and a linked store lie inside: they belong to the outer folder.
    home.many("Projects/shop/node_modules/webpack/node_modules/acorn", 5, 12 * MB, ".js")
    home.many("Projects/shop/node_modules/.pnpm/vite@5.4.0/node_modules/vite", 5, 30 * MB, ".js")
    package(home, "Projects/Clientes/Padaria São João/site", 260)
    home.many("Projects/Clientes/Padaria São João/site/node_modules/next/dist", 12, 110 * MB, ".js")


def pods(home):
    home.text("Projects/travel-ios/Podfile", "platform :ios\n", days=90)
    home.many("Projects/travel-ios/Pods/Alamofire/Source", 8, 40 * MB, ".swift")


def cargo_target(home):
    home.text("Projects/raytracer/Cargo.toml", "[package]\n", days=45)
    home.text("Projects/raytracer/src/main.rs", "fn main() {}\n", days=45)
    home.many("Projects/raytracer/target/debug/deps", 25, 320 * MB, ".rlib")


def gradle_build(home):
    home.text("Projects/recipes-android/build.gradle", "plugins {}\n", days=70)
    home.many("Projects/recipes-android/build/intermediates", 15, 85 * MB, ".dex")


def next_js(home):
    package(home, "Projects/landing-page")
    home.many("Projects/landing-page/.next/cache/webpack", 10, 60 * MB, ".pack")


def node_dist(home):
    package(home, "Projects/design-system")
    home.many("Projects/design-system/dist/assets", 6, 18 * MB, ".js")


def node_out(home):
    package(home, "Projects/handbook")
    home.many("Projects/handbook/out/chapters", 6, 14 * MB, ".html")


def node_build(home):
    package(home, "Projects/intranet")
    home.many("Projects/intranet/build/static", 6, 26 * MB, ".js")


def only_alike(home):
    """Folders with such names that are no project's products, as far as anybody can tell from beside them."""
    # A build made by Gradle's other language: the project also has a package.json, and neither row takes it.
    package(home, "Projects/wallet")
    home.text("Projects/wallet/build.gradle.kts", "plugins {}\n", days=20)
    home.many("Projects/wallet/build/intermediates", 4, 12 * MB, ".dex")
    # Nothing beside them says what made them.
    home.file("Documents/Company/target/plan-2025.pages", 3 * MB, 200)
    home.file("Documents/Company/build/site-plan.dwg", 5 * MB, 200)
    home.file("Music/Mixes/out/summer.wav", 24 * MB, 90)
    home.file("Music/Mixes/dist/winter.wav", 9 * MB, 90)
    # Below folders that a tool named: a package manager's store, and a name made by a machine.
    home.file("Work/.pnpm/lodash@4.17.21/node_modules/lodash/lodash.js", 1 * MB)
    home.file("Work/3f786850e387550fdab836ed7e6dc881/node_modules/left-pad/index.js", 1 * MB)


ROWS = {
    "project.nodeModules": node_modules,
    "project.pods": pods,
    "project.cargoTarget": cargo_target,
    "project.gradleBuild": gradle_build,
    "project.next": next_js,
    "project.nodeDist": node_dist,
    "project.nodeOut": node_out,
    "project.nodeBuild": node_build,
}
