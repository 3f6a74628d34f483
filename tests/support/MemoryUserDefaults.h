#pragma once
#include "base/Paths.h"
#include "base/UserDefaults.h"
#include <cmath>
#include <map>
#include <variant>

namespace vesko::testing {

/// Preferences that end with this object.
class MemoryUserDefaults : public UserDefaults {
public:
    std::optional<bool> boolean(std::string_view key) const override { return valueOf<bool>(key); }
    std::optional<std::int64_t> integer(std::string_view key) const override {
        if (const auto whole = valueOf<std::int64_t>(key)) return whole;
        const auto number = valueOf<double>(key);
        if (!number || std::trunc(*number) != *number || std::abs(*number) > 9'007'199'254'740'992.0)
            return std::nullopt;
        return static_cast<std::int64_t>(*number);
    }
    std::optional<double> number(std::string_view key) const override {
        if (const auto whole = valueOf<std::int64_t>(key)) return static_cast<double>(*whole);
        return valueOf<double>(key);
    }
    std::optional<std::string> string(std::string_view key) const override {
        return valueOf<std::string>(key);
    }
    std::optional<std::string> data(std::string_view key) const override {
        const auto data = valueOf<Data>(key);
        if (!data) return std::nullopt;
        return data->bytes;
    }

    void setBoolean(std::string_view key, bool value) override { set(key, value); }
    void setInteger(std::string_view key, std::int64_t value) override { set(key, value); }
    void setNumber(std::string_view key, double value) override {
        if (std::isfinite(value)) set(key, value);
    }
    void setString(std::string_view key, std::string_view text) override {
        if (text.size() <= longestValue && isUtf8(text)) set(key, std::string(text));
    }
    void setData(std::string_view key, std::string_view bytes) override {
        if (bytes.size() <= longestValue) set(key, Data{std::string(bytes)});
    }
    void remove(std::string_view key) override {
        ++changes;
        values_.erase(std::string(key));
    }

    int changes = 0; ///< how often something was set or removed

private:
    struct Data {
        std::string bytes;
    };
    using Value = std::variant<bool, std::int64_t, double, std::string, Data>;

    template <class Type> std::optional<Type> valueOf(std::string_view key) const {
        const auto found = values_.find(key);
        const Type* value = found == values_.end() ? nullptr : std::get_if<Type>(&found->second);
        if (!value) return std::nullopt;
        return *value;
    }
    void set(std::string_view key, Value value) {
        ++changes;
        values_.insert_or_assign(std::string(key), std::move(value));
    }

    std::map<std::string, Value, std::less<>> values_;
};

} // namespace vesko::testing
