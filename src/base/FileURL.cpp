#include "base/FileURL.h"

namespace vesko {

FileURL::FileURL() : FileURL(std::string()) {}

FileURL::FileURL(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    const std::size_t hash = std::hash<std::string>()(path);
    bytes_ = std::make_shared<const Bytes>(Bytes{std::move(path), hash});
}

std::string_view FileURL::lastPathComponent() const noexcept {
    const std::string_view path = bytes_->path;
    if (path == "/") return path;
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view FileURL::pathExtension() const noexcept {
    const std::string_view name = lastPathComponent();
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return {};
    return name.substr(dot + 1);
}

FileURL FileURL::parent() const {
    const std::string& path = bytes_->path;
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) return FileURL();
    if (slash == 0) return FileURL("/");
    return FileURL(path.substr(0, slash));
}

FileURL FileURL::appending(std::string_view relative) const {
    std::string joined;
    joined.reserve(bytes_->path.size() + 1 + relative.size());
    joined = bytes_->path;
    if (joined.empty() || joined.back() != '/') joined += '/';
    joined += relative;
    return FileURL(std::move(joined));
}

} // namespace vesko
