#pragma once
#include "base/Date.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Reading of JSON that does not trust what it reads. Nothing here throws; what is not as it should be gives
/// nothing.
namespace vesko {

namespace detail {
struct JsonNodes;
}

class JsonElements;
class JsonMembers;

/// One value of a document. A view: lives no longer than its document. Each reader gives nothing for a value
/// of another type.
class JsonValue {
public:
    JsonValue(const detail::JsonNodes& nodes, std::uint32_t index) noexcept : nodes_(&nodes), index_(index) {}

    bool isNull() const noexcept;
    bool isArray() const noexcept;
    bool isObject() const noexcept;
    std::optional<std::string_view> string() const noexcept;
    /// A number of integral value within 64 bits, also when written as 1.0 or 1e3 (exact up to 2^53 then).
    std::optional<std::int64_t> integer() const noexcept;
    std::optional<double> number() const noexcept;
    std::optional<bool> boolean() const noexcept;
    /// The object's member; of several with one key the last.
    std::optional<JsonValue> member(std::string_view key) const noexcept;
    /// In order; none when this is no array.
    JsonElements elements() const noexcept;
    /// In order, repeated keys included; none when this is no object.
    JsonMembers members() const noexcept;

private:
    friend class JsonElements;
    friend class JsonMembers;
    std::uint32_t childrenBegin() const noexcept { return index_ + 1; }
    std::uint32_t childrenEnd() const noexcept;
    std::string_view key() const noexcept;

    const detail::JsonNodes* nodes_;
    std::uint32_t index_;
};

/// The elements of an array, for a range-based loop.
class JsonElements {
public:
    class Iterator {
    public:
        explicit Iterator(JsonValue at) noexcept : at_(at) {}
        JsonValue operator*() const noexcept { return at_; }
        Iterator& operator++() noexcept;
        bool operator==(const Iterator& other) const noexcept { return at_.index_ == other.at_.index_; }

    private:
        JsonValue at_;
    };
    explicit JsonElements(JsonValue owner, bool none) noexcept : owner_(owner), none_(none) {}
    Iterator begin() const noexcept;
    Iterator end() const noexcept;
    std::size_t size() const noexcept;

private:
    friend class JsonMembers;
    JsonValue owner_;
    bool none_;
};

struct JsonMember {
    std::string_view key;
    JsonValue value;
};

/// The members of an object, for a range-based loop.
class JsonMembers {
public:
    class Iterator {
    public:
        explicit Iterator(JsonElements::Iterator at) noexcept : at_(at) {}
        JsonMember operator*() const noexcept { return {(*at_).key(), *at_}; }
        Iterator& operator++() noexcept {
            ++at_;
            return *this;
        }
        bool operator==(const Iterator& other) const noexcept { return at_ == other.at_; }

    private:
        JsonElements::Iterator at_;
    };
    explicit JsonMembers(JsonElements values) noexcept : values_(values) {}
    Iterator begin() const noexcept { return Iterator(values_.begin()); }
    Iterator end() const noexcept { return Iterator(values_.end()); }
    std::size_t size() const noexcept { return values_.size(); }

private:
    JsonElements values_;
};

/// A parsed document.
class JsonDocument {
public:
    /// Nothing for what is no single well-formed document in UTF-8 (RFC 8259, without comments), for more
    /// than 512 levels, for a string above 1 MiB and for more than 16 million values, so that no file can
    /// exhaust the stack, the memory or the patience of its reader.
    static std::optional<JsonDocument> parse(std::string_view bytes) noexcept;

    JsonDocument(JsonDocument&&) noexcept;
    JsonDocument& operator=(JsonDocument&&) noexcept;
    ~JsonDocument();

    JsonValue root() const noexcept { return JsonValue(*nodes_, 0); }

private:
    explicit JsonDocument(std::unique_ptr<detail::JsonNodes> nodes) noexcept;

    std::unique_ptr<detail::JsonNodes> nodes_;
};

/// Each sets `into` and returns true, or returns false and leaves it.
bool readJson(JsonValue value, std::string& into);
bool readJson(JsonValue value, std::string_view& into) noexcept;
bool readJson(JsonValue value, std::int64_t& into) noexcept;
bool readJson(JsonValue value, double& into) noexcept;
bool readJson(JsonValue value, bool& into) noexcept;
/// A text in the form of iso8601().
bool readJson(JsonValue value, Date& into) noexcept;

/// Reads a member that must be there with the right type.
template <class Value> bool readMember(JsonValue object, std::string_view key, Value& into) {
    const std::optional<JsonValue> found = object.member(key);
    return found && readJson(*found, into);
}

/// Reads a member that may be missing or null, which empties `into`; one of a wrong type is a failure.
template <class Value> bool readMember(JsonValue object, std::string_view key, std::optional<Value>& into) {
    const std::optional<JsonValue> found = object.member(key);
    into.reset();
    if (!found || found->isNull()) return true;
    return readJson(*found, into.emplace());
}

} // namespace vesko
