#include "FileUserDefaults.h"

#include "DefaultsFile.h"
#include "base/FileSystem.h"
#include "base/Json.h"
#include "base/JsonWriter.h"
#include "base/Paths.h"
#include "base/Prefetch.h"
#include "base/StateFile.h"
#include "concurrency/Concurrency.h"
#include "platform/posix/PlatformUserDefaults.h"
#include <cmath>
#include <map>
#include <mutex>
#include <utility>

namespace vesko {
namespace {

/// What is to be written under each key; nothing: to be removed.
using Changes = std::map<std::string, std::optional<std::string>, std::less<>>;

void putInto(DefaultsFile& file, const Changes& changes) {
    for (const auto& [key, json] : changes) {
        if (json)
            file.set(key, *json);
        else
            file.remove(key);
    }
}

DefaultsFile readDefaults(const FileURL& url) {
    const auto bytes = readStateFile(url);
    auto file = bytes ? DefaultsFile::parse(*bytes) : std::nullopt;
    return file ? *std::move(file) : DefaultsFile();
}

std::string jsonText(const auto& write) {
    JsonWriter writer;
    write(writer);
    return writer.take();
}

} // namespace

struct FileUserDefaults::Store {
    explicit Store(FileURL file) : url(std::move(file)) {
        reading.start([url = url] { return readDefaults(url); });
    }

    /// The values of this moment. `mutex` must be held.
    DefaultsFile& current() {
        if (auto file = reading.take(); file && !values)
            values = std::move(file);
        else if (!values)
            values = readDefaults(url);
        return *values;
    }

    std::optional<std::string> json(std::string_view key) {
        const std::lock_guard lock(mutex);
        const auto text = current().value(key);
        if (!text) return std::nullopt;
        return std::string(*text);
    }

    /// Whether somebody has to see to the writing.
    bool change(std::string_view key, std::optional<std::string> json) {
        const std::lock_guard lock(mutex);
        Changes one;
        one.emplace(key, std::move(json));
        putInto(current(), one);
        unwritten.insert_or_assign(std::string(key), std::move(one.begin()->second));
        return !std::exchange(isWriteComing, true);
    }

    /// Blocks.
    void write() {
        const std::lock_guard turn(writing);
        Changes changes;
        {
            const std::lock_guard lock(mutex);
            isWriteComing = false;
            changes = std::exchange(unwritten, {});
        }
        std::optional<DefaultsFile> written = merge(changes);
        const std::lock_guard lock(mutex);
        if (!written) {
            unwritten.merge(changes); // later changes of the same keys stay
            return;
        }
        putInto(*written, unwritten);
        values = std::move(written);
    }

    /// The file as it is now, with the changes, on the disk; nothing when that failed.
    std::optional<DefaultsFile> merge(const Changes& changes) const {
        const auto bytes = readStateFile(url);
        auto file = bytes ? DefaultsFile::parse(*bytes) : DefaultsFile();
        if (!file) {
            if (replaceFile(FileURL(url.path() + ".damaged"), *bytes)) return std::nullopt;
            file.emplace();
        }
        putInto(*file, changes);
        // Without the folder the write fails by itself.
        (void)createFolders(url.parent());
        if (replaceFile(url, file->text())) return std::nullopt;
        return file;
    }

    const FileURL url;
    std::mutex writing; ///< held for the whole of a write, so that writes follow one another
    std::mutex mutex;   ///< guards what follows
    Prefetch<DefaultsFile> reading;
    std::optional<DefaultsFile> values;
    Changes unwritten;
    bool isWriteComing = false;
};

FileUserDefaults::FileUserDefaults(FileURL fileURL, TaskContext tasks)
    : store_(std::make_shared<Store>(std::move(fileURL))), tasks_(std::move(tasks)) {}

FileUserDefaults::~FileUserDefaults() = default;

FileURL FileUserDefaults::defaultFileURL() { return configurationFolder().appending("defaults.json"); }

std::optional<bool> FileUserDefaults::boolean(std::string_view key) const {
    const auto json = store_->json(key);
    const auto document = json ? JsonDocument::parse(*json) : std::nullopt;
    return document ? document->root().boolean() : std::nullopt;
}

std::optional<std::int64_t> FileUserDefaults::integer(std::string_view key) const {
    const auto json = store_->json(key);
    const auto document = json ? JsonDocument::parse(*json) : std::nullopt;
    return document ? document->root().integer() : std::nullopt;
}

std::optional<double> FileUserDefaults::number(std::string_view key) const {
    const auto json = store_->json(key);
    const auto document = json ? JsonDocument::parse(*json) : std::nullopt;
    return document ? document->root().number() : std::nullopt;
}

std::optional<std::string> FileUserDefaults::string(std::string_view key) const {
    const auto json = store_->json(key);
    const auto document = json ? JsonDocument::parse(*json) : std::nullopt;
    const auto text = document ? document->root().string() : std::nullopt;
    if (!text) return std::nullopt;
    return std::string(*text);
}

std::optional<std::string> FileUserDefaults::data(std::string_view key) const {
    const auto json = store_->json(key);
    return json ? dataFromJson(*json) : std::nullopt;
}

void FileUserDefaults::setBoolean(std::string_view key, bool value) {
    change(key, jsonText([&](JsonWriter& writer) { writer.boolean(value); }));
}

void FileUserDefaults::setInteger(std::string_view key, std::int64_t value) {
    change(key, jsonText([&](JsonWriter& writer) { writer.integer(value); }));
}

void FileUserDefaults::setNumber(std::string_view key, double value) {
    if (std::isfinite(value)) change(key, jsonText([&](JsonWriter& writer) { writer.number(value); }));
}

void FileUserDefaults::setString(std::string_view key, std::string_view text) {
    if (text.size() > longestValue || !isUtf8(text)) return;
    change(key, jsonText([&](JsonWriter& writer) { writer.string(text); }));
}

void FileUserDefaults::setData(std::string_view key, std::string_view bytes) {
    if (bytes.size() <= longestValue) change(key, dataJson(bytes));
}

void FileUserDefaults::remove(std::string_view key) { change(key, std::nullopt); }

void FileUserDefaults::change(std::string_view key, std::optional<std::string> json) {
    // One key of other bytes would make the whole file unreadable.
    if (!isUtf8(key) || !store_->change(key, std::move(json))) return;
    spawn(tasks_, [store = store_]() -> Task<void> {
        try {
            co_await sleepFor(debounce);
        } catch (const Cancelled&) { // NOLINT(bugprone-empty-catch)
            // The program ends: what was set is written all the same.
        }
        auto write = offload([&] { store->write(); });
        co_await write;
    });
}

std::shared_ptr<UserDefaults> platformUserDefaults(const TaskContext& tasks) {
    return std::make_shared<FileUserDefaults>(FileUserDefaults::defaultFileURL(), tasks);
}

} // namespace vesko
