#include "scan/SampleHome.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace vesko::bench {

namespace {

class HomeMaker {
public:
    explicit HomeMaker(std::string root) : root_(std::move(root)) {
        if (::mkdir(root_.c_str(), 0755) != 0) throw std::runtime_error("can't make " + root_);
    }

    void file(const std::string& path, unsigned bytes) {
        makeAbove(path);
        const int file = ::open(full(path).c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
        const std::string content(bytes, 'x');
        if (file < 0 || ::write(file, content.data(), bytes) != static_cast<ssize_t>(bytes))
            throw std::runtime_error("can't make " + full(path));
        ::close(file);
    }

    /// Most files are empty, so that the home stays small on disk.
    void smallFile(const std::string& path) { file(path, random_() % 20 == 0 ? 3000 : 0); }

    /// Folders of some eight files each, nested up to four deep, about so many entries.
    void tree(const std::string& path, std::size_t entries) {
        std::vector<std::string> folders{path};
        for (std::size_t made = 0; made < entries;) {
            const std::string& parent =
                folders[folders.size() - 1 - random_() % std::min<std::size_t>(folders.size(), 12)];
            const bool isDeep =
                std::count(parent.begin() + static_cast<std::ptrdiff_t>(path.size()), parent.end(), '/') >= 4;
            const std::string name = (isDeep ? path : parent) + "/part-" + std::to_string(made);
            const unsigned files = 4 + random_() % 9;
            for (unsigned i = 0; i < files; ++i) smallFile(name + "/file-" + std::to_string(i) + ".js");
            made += files + 1;
            folders.push_back(name);
        }
    }

    /// Packages, some with packages and built files of their own, and the links that start their tools.
    void packages(const std::string& path, std::size_t entries) {
        const std::size_t count = 1 + entries / 90;
        for (std::size_t i = 0; i < count; ++i) {
            const std::string package = path + "/package-" + std::to_string(i);
            smallFile(package + "/package.json");
            tree(package + "/lib", 40);
            tree(package + "/dist", 24);
            if (i % 8 == 0) tree(package + "/node_modules/inner", 60);
            link(path + "/.bin/tool-" + std::to_string(i), "../package-" + std::to_string(i) + "/lib");
        }
    }

    void link(const std::string& path, const std::string& target) {
        makeAbove(path);
        if (::symlink(target.c_str(), full(path).c_str()) != 0)
            throw std::runtime_error("can't link " + full(path));
    }

private:
    std::string full(const std::string& path) const { return root_ + "/" + path; }
    void makeAbove(const std::string& path) {
        const std::string parent = path.substr(0, path.rfind('/'));
        if (parent == lastParent_ || parent == path) return;
        std::filesystem::create_directories(full(parent));
        lastParent_ = parent;
    }

    std::string root_;
    std::string lastParent_;
    std::mt19937 random_{20261121};
};

void makeProject(HomeMaker& home, unsigned number, std::size_t entries) {
    const std::string path =
        "projects/team-" + std::to_string(number % 8) + "/project-" + std::to_string(number);
    home.tree(path + "/src", entries / 8);
    switch (number % 4) {
    case 0:
    case 1:
        home.file(path + "/package.json", 100);
        home.packages(path + "/node_modules", entries / 2);
        home.tree(path + "/.next/cache", entries / 8);
        home.tree(path + "/dist", entries / 8);
        home.tree(path + "/build/static", entries / 8);
        break;
    case 2:
        home.file(path + "/Cargo.toml", 100);
        home.tree(path + "/target/debug", entries / 2);
        home.tree(path + "/target/release", entries / 4);
        break;
    default:
        home.file(path + "/build.gradle", 100);
        home.tree(path + "/build/classes", entries / 2);
        home.tree(path + "/build/reports/dist", entries / 4);
        break;
    }
}

void makeCaches(HomeMaker& home, std::size_t entries) {
    for (const char* place : {".npm/_cacache", ".cargo/registry/src", ".gradle/caches", ".m2/repository",
                              "Library/Caches/pip", "Library/Caches/go-build", "Library/Caches/Yarn",
                              "Library/Caches/org.swift.swiftpm", "Library/Caches/com.example.player"})
        home.tree(place, entries / 16);
    home.tree("Library/Caches/Homebrew/downloads", entries / 32);
    home.link("Library/Caches/Homebrew/latest", "downloads");
    for (const char* product : {"editor", "database", "designer"})
        home.tree(std::string("Library/Caches/JetBrains/") + product, entries / 32);
    for (int i = 0; i < 6; ++i) {
        const std::string data = "Library/Developer/Xcode/DerivedData/app-" + std::to_string(i);
        home.tree(data + "/Build", entries / 96);
        home.tree(data + "/Previews", entries / 96);
        home.tree("Library/Containers/com.docker.docker/Data/vms/0/data/docker/volumes/volume-" +
                      std::to_string(i) + "/_data",
                  entries / 128);
        home.tree("Library/Application Support/com.example.gone-" + std::to_string(i), entries / 256);
    }
    for (int i = 0; i < 400; ++i) home.smallFile("Library/Logs/old-" + std::to_string(i) + ".log");
    for (int i = 0; i < 400; ++i) home.smallFile("Downloads/letter-" + std::to_string(i) + ".pdf");
}

} // namespace

std::string sampleHome(const std::string& folder, std::size_t entries) {
    const std::string root = folder + "/home-" + std::to_string(entries);
    const std::string mark = root + ".complete";
    if (std::filesystem::exists(mark)) return root;
    std::filesystem::remove_all(root);
    std::filesystem::create_directories(folder);
    HomeMaker home(root);
    constexpr unsigned projects = 80;
    for (unsigned i = 0; i < projects; ++i) makeProject(home, i, entries * 76 / 100 / projects);
    makeCaches(home, entries * 22 / 100);
    home.tree("Documents", entries / 10);
    std::ofstream(mark) << entries << '\n';
    return root;
}

} // namespace vesko::bench
