#pragma once
#include "base/FileURL.h"
#include "base/UserDefaults.h"
#include "concurrency/Clock.h"
#include "concurrency/TaskContext.h"
#include <memory>
#include <string>

namespace vesko {

/// Preferences in one JSON file, which a person may write by hand. Begins to read it at once, on a thread;
/// the first reader waits for that.
///
/// A change waits for those that follow within `debounce` and is then written by a worker, over what stands
/// in the file at that moment: values that other hands changed or added stay, and are read from then on. When
/// a write fails, what was set goes with the next one. A file that is damaged counts as none; before it is
/// replaced, its bytes are put beside it as "defaults.json.damaged", since somebody may have written them by
/// hand.
class FileUserDefaults final : public UserDefaults {
public:
    static constexpr Duration debounce = std::chrono::milliseconds(250);

    FileUserDefaults(FileURL fileURL, TaskContext tasks);
    ~FileUserDefaults() override;
    /// "defaults.json" in the configuration folder.
    static FileURL defaultFileURL();

    std::optional<bool> boolean(std::string_view key) const override;
    std::optional<std::int64_t> integer(std::string_view key) const override;
    std::optional<double> number(std::string_view key) const override;
    std::optional<std::string> string(std::string_view key) const override;
    std::optional<std::string> data(std::string_view key) const override;

    void setBoolean(std::string_view key, bool value) override;
    void setInteger(std::string_view key, std::int64_t value) override;
    void setNumber(std::string_view key, double value) override;
    void setString(std::string_view key, std::string_view text) override;
    void setData(std::string_view key, std::string_view bytes) override;
    void remove(std::string_view key) override;

private:
    struct Store;

    void change(std::string_view key, std::optional<std::string> json);

    std::shared_ptr<Store> store_; ///< shared with writes that are under way
    TaskContext tasks_;
};

} // namespace vesko
