#include "SampleTree.h"

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

void touch(const std::string& path, unsigned bytes) {
    const int file = ::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    if (file < 0) throw std::runtime_error("can't make " + path);
    const std::string content(bytes, 'x');
    if (::write(file, content.data(), content.size()) != static_cast<ssize_t>(content.size()))
        throw std::runtime_error("can't write " + path);
    ::close(file);
}

/// Files of one folder; every twentieth has content, so that the tree stays small on disk.
std::size_t fill(const std::string& folder, std::mt19937& random) {
    const unsigned count = 4 + random() % 21;
    for (unsigned i = 0; i < count; ++i) {
        const std::string path = folder + "/module-" + std::to_string(i) + ".cpp.o";
        if (i > 0 && random() % 100 == 0) {
            if (::link((folder + "/module-0.cpp.o").c_str(), path.c_str()) != 0)
                throw std::runtime_error("can't link " + path);
        } else if (random() % 100 == 0) {
            if (::symlink("module-0.cpp.o", path.c_str()) != 0)
                throw std::runtime_error("can't link " + path);
        } else {
            touch(path, random() % 20 == 0 ? 3000 : 0);
        }
    }
    return count;
}

} // namespace

std::string sampleTree(const std::string& folder, std::size_t entries) {
    const std::string root = folder + "/tree-" + std::to_string(entries);
    const std::string mark = root + ".complete";
    if (std::filesystem::exists(mark)) return root;
    std::filesystem::remove_all(root);
    std::filesystem::create_directories(root);
    std::mt19937 random(20261121);
    struct Made {
        std::string path;
        unsigned depth;
    };
    std::vector<Made> open{{root, 0}};
    for (std::size_t made = 0; made < entries;) {
        // Mostly below one of the newest, so that the tree grows deep as well as broad.
        const std::size_t back =
            random() % std::min<std::size_t>(open.size(), random() % 3 == 0 ? open.size() : 40);
        const Made parent = open[open.size() - 1 - back];
        if (parent.depth >= 20) continue;
        const std::string path = parent.path + "/folder-" + std::to_string(made);
        if (::mkdir(path.c_str(), 0755) != 0) throw std::runtime_error("can't make " + path);
        made += 1 + fill(path, random);
        open.push_back({path, parent.depth + 1});
    }
    std::ofstream(mark) << entries << '\n';
    return root;
}

} // namespace vesko::bench
