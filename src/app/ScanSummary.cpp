#include "app/ScanSummary.h"

#include "base/ByteFormat.h"
#include "base/Paths.h"
#include "base/StringCatalog.h"
#include "base/Text.h"
#include "core/GroupBuilders.h"
#include <algorithm>
#include <array>
#include <map>
#include <vector>

namespace vesko {
namespace {

using Row = std::array<std::string, 4>; // size, safety, title, count

Row rowOf(const CleanupGroup& group) {
    return {formatBytes(groupBytes(group)),
            localized("safety." + std::string(safetyWord(group.baselineSafety))),
            escapedForDisplay(group.title), group.subtitle};
}

std::string blanks(std::size_t width, const std::string& text) {
    const std::size_t taken = characterCount(text);
    return std::string(taken < width ? width - taken : 0, ' ');
}

} // namespace

std::string scanSummary(const ScanReport& report) {
    if (report.groups.empty()) return localized("empty.noResults.title") + "\n";
    std::map<std::int64_t, std::pair<std::string, std::vector<Row>>> bands;
    std::array<std::size_t, 4> widths{};
    for (const CleanupGroup& group : report.groups) {
        const Row row = rowOf(group);
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], characterCount(row[i]));
        auto& [title, rows] = bands[group.section.sortIndex];
        title = sectionTitle(group.section.id);
        rows.push_back(row);
    }
    std::string table;
    for (const auto& [index, band] : bands) {
        table += band.first + "\n";
        for (const Row& row : band.second) {
            table += "  " + blanks(widths[0], row[0]) + row[0] + "  " + row[1] + blanks(widths[1], row[1]);
            table += "  " + row[2] + blanks(widths[2], row[2]) + "  " + row[3] + "\n";
        }
    }
    return table + localized("hero.candidates %@", formatBytes(report.foundTotalBytes)) + "\n";
}

} // namespace vesko
