#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace vesko {

/// One band of the cleanup list. Equality and hash take all three fields.
struct CleanupSection {
    std::string id;             ///< stable key
    std::string title;          ///< the English word carried beside the id; screens show sectionTitle(id)
    std::int64_t sortIndex = 0; ///< ascending order of the bands on screen

    friend bool operator==(const CleanupSection&, const CleanupSection&) = default;
};

/// The six sections that exist.
namespace sections {
inline CleanupSection system() { return {"system", "System", 0}; }
inline CleanupSection apps() { return {"apps", "Apps", 1}; }
inline CleanupSection caches() { return {"caches", "Caches", 2}; }
inline CleanupSection development() { return {"development", "Development", 3}; }
inline CleanupSection downloads() { return {"downloads", "Downloads", 4}; }
inline CleanupSection installers() { return {"installers", "Installers", 5}; }
} // namespace sections

} // namespace vesko

template <> struct std::hash<vesko::CleanupSection> {
    std::size_t operator()(const vesko::CleanupSection& section) const noexcept {
        const std::hash<std::string> text;
        return text(section.id) ^ (text(section.title) << 1) ^
               (std::hash<std::int64_t>()(section.sortIndex) << 2);
    }
};
