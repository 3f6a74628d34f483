#pragma once
#include "base/FileURL.h"
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace vesko::testing {

/// A fresh folder below the temporary folder that goes away with this object, together with all that the test
/// put there. Paths are relative to it; folders above a file are made as needed.
class TempTree {
public:
    TempTree() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vesko-test-XXXXXX").string();
        if (!::mkdtemp(pattern.data())) throw std::runtime_error("no temporary folder: " + pattern);
        root_ = FileURL(pattern);
    }
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;
    ~TempTree() {
        std::error_code ignored;
        std::filesystem::remove_all(root_.path(), ignored);
    }

    const FileURL& root() const noexcept { return root_; }
    FileURL url(std::string_view relative) const { return root_.appending(relative); }
    std::string path(std::string_view relative) const { return url(relative).path(); }

    FileURL folder(std::string_view relative) const {
        std::filesystem::create_directories(path(relative));
        return url(relative);
    }
    FileURL file(std::string_view relative, std::string_view bytes = "x") const {
        const FileURL made = url(relative);
        std::filesystem::create_directories(made.parent().path());
        std::ofstream stream(made.path(), std::ios::binary | std::ios::trunc);
        stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        stream.close();
        if (!stream) throw std::runtime_error("can't write " + made.path());
        return made;
    }
    FileURL link(std::string_view relative, std::string_view target) const {
        const FileURL made = url(relative);
        std::filesystem::create_directories(made.parent().path());
        std::filesystem::create_symlink(std::filesystem::path(target), made.path());
        return made;
    }
    FileURL pipe(std::string_view relative) const {
        const FileURL made = url(relative);
        if (::mkfifo(made.path().c_str(), 0600) != 0) throw std::runtime_error("no pipe at " + made.path());
        return made;
    }

private:
    FileURL root_;
};

/// The bytes of a file as the standard library reads them; empty when there is none.
inline std::string bytesOf(const FileURL& url) {
    std::ifstream stream(url.path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

} // namespace vesko::testing
