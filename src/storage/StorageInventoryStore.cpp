#include "storage/StorageInventoryStore.h"

#include "base/Paths.h"
#include "base/StateFile.h"
#include "storage/StorageInventoryFile.h"
#include <utility>

namespace vesko {

StorageInventoryStore::StorageInventoryStore(FileURL fileURL) : fileURL_(std::move(fileURL)) {}

FileURL StorageInventoryStore::defaultFileURL() {
    return applicationSupportFolder().appending("storage-inventory.json");
}

std::optional<StorageInventorySnapshot> StorageInventoryStore::load() const {
    const auto bytes = readStateFile(fileURL_);
    return bytes ? StorageInventoryFile::decode(*bytes) : std::nullopt;
}

void StorageInventoryStore::save(const StorageInventorySnapshot& snapshot) const {
    writeStateFile(fileURL_, StorageInventoryFile::encode(snapshot));
}

} // namespace vesko
