#pragma once
#include "base/FileURL.h"
#include "storage/StorageInventorySnapshot.h"
#include <optional>

namespace vesko {

/// Keeps the last measurement in one small file, so that the Home screen shows figures at once after a start.
/// The remainder "system" is not kept. Every failure to read or write is silent, as if there were no file.
/// Both operations block and may be called from any thread; of two saves at once the last one to finish wins.
class StorageInventoryStore {
public:
    /// Reads nothing yet.
    explicit StorageInventoryStore(FileURL fileURL);
    /// "storage-inventory.json" in the application-support folder.
    static FileURL defaultFileURL();

    const FileURL& fileURL() const noexcept { return fileURL_; }

    std::optional<StorageInventorySnapshot> load() const;
    void save(const StorageInventorySnapshot& snapshot) const;

private:
    FileURL fileURL_;
};

} // namespace vesko
