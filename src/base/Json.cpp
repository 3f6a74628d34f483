#include "base/Json.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <vector>

namespace vesko {
namespace detail {

enum class JsonType : std::uint8_t { null, boolean, integer, number, string, array, object };

/// One value. Containers are followed by all that is in them, so the whole document is one flat list.
struct JsonNode {
    struct Text {
        std::uint32_t begin;
        std::uint32_t length;
    };
    struct Children {
        std::uint32_t end; ///< index behind the last value inside
        std::uint32_t count;
    };
    Text key;
    union {
        bool boolean;
        std::int64_t integer;
        double number;
        Text text;
        Children children;
    };
    JsonType type;
};

struct JsonNodes {
    std::vector<JsonNode> list;
    std::string texts;

    std::string_view text(JsonNode::Text part) const noexcept {
        return std::string_view(texts).substr(part.begin, part.length);
    }
};

} // namespace detail

namespace {

using detail::JsonNode;
using detail::JsonNodes;
using detail::JsonType;

constexpr std::size_t longestDocument = 256 << 20;
constexpr std::size_t mostLevels = 512;
constexpr std::size_t mostValues = 16'000'000;
constexpr std::size_t longestString = 1 << 20;
/// Up to here every integral double stands for one integer alone.
constexpr double exactIntegers = 9'007'199'254'740'992.0;

/// Looks for a string that is too long before the parser copies it byte by byte. A quote that no string
/// begins with is an error that the parser finds.
bool holdsTooLongString(std::string_view bytes) noexcept {
    while (true) {
        const std::size_t quote = bytes.find('"');
        if (quote == std::string_view::npos) return false;
        std::size_t at = quote + 1;
        for (;;) {
            at = bytes.find('"', at);
            if (at == std::string_view::npos) return bytes.size() - quote > longestString;
            std::size_t slashes = 0;
            while (bytes[at - 1 - slashes] == '\\') ++slashes;
            if (slashes % 2 == 0) break;
            ++at;
        }
        if (at - quote > longestString) return true;
        bytes.remove_prefix(at + 1);
    }
}

/// Receives the parser's events and lays the values out; refusing an event ends the parsing.
class Builder {
public:
    explicit Builder(JsonNodes& nodes) : nodes_(nodes) {}

    bool null() { return add(JsonType::null) != nullptr; }
    bool boolean(bool value) {
        JsonNode* node = add(JsonType::boolean);
        if (node) node->boolean = value;
        return node;
    }
    bool number_integer(std::int64_t value) {
        JsonNode* node = add(JsonType::integer);
        if (node) node->integer = value;
        return node;
    }
    bool number_unsigned(std::uint64_t value) {
        if (value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
            return number_integer(static_cast<std::int64_t>(value));
        return addNumber(static_cast<double>(value));
    }
    bool number_float(double value, const std::string& literal) {
        // An integer too large for 64 bits arrives here rounded; it is a number, yet no integer of ours.
        const bool fractional = literal.find_first_of(".eE") != std::string::npos;
        if (fractional && std::abs(value) <= exactIntegers && std::trunc(value) == value)
            return number_integer(static_cast<std::int64_t>(value));
        return addNumber(value);
    }
    bool string(std::string& value) {
        JsonNode* node = add(JsonType::string);
        if (node) node->text = keep(value);
        return node;
    }
    bool binary(nlohmann::json::binary_t&) { return false; }
    bool start_object(std::size_t) { return open(JsonType::object); }
    bool start_array(std::size_t) { return open(JsonType::array); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }
    bool key(std::string& value) {
        key_ = keep(value);
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) { return false; }

private:
    JsonNode* add(JsonType type) {
        if (nodes_.list.size() >= mostValues) return nullptr;
        if (!open_.empty()) ++nodes_.list[open_.back()].children.count;
        JsonNode& node = nodes_.list.emplace_back();
        node.key = key_;
        node.type = type;
        node.integer = 0;
        key_ = {};
        return &node;
    }
    bool addNumber(double value) {
        JsonNode* node = add(JsonType::number);
        if (node) node->number = value;
        return node;
    }
    bool open(JsonType type) {
        if (open_.size() >= mostLevels || !add(type)) return false;
        nodes_.list.back().children = {};
        open_.push_back(static_cast<std::uint32_t>(nodes_.list.size() - 1));
        return true;
    }
    bool close() {
        nodes_.list[open_.back()].children.end = static_cast<std::uint32_t>(nodes_.list.size());
        open_.pop_back();
        return true;
    }
    JsonNode::Text keep(const std::string& value) {
        const auto begin = static_cast<std::uint32_t>(nodes_.texts.size());
        nodes_.texts += value;
        return {begin, static_cast<std::uint32_t>(value.size())};
    }

    JsonNodes& nodes_;
    JsonNode::Text key_{};
    std::vector<std::uint32_t> open_;
};

} // namespace

std::optional<JsonDocument> JsonDocument::parse(std::string_view bytes) noexcept {
    // Offsets into the document are kept in 32 bits, and the parser takes a NUL for the end of its input.
    if (bytes.size() > longestDocument || bytes.find('\0') != std::string_view::npos ||
        holdsTooLongString(bytes))
        return std::nullopt;
    try {
        auto nodes = std::make_unique<detail::JsonNodes>();
        nodes->list.reserve(bytes.size() / 24 + 1);
        nodes->texts.reserve(bytes.size() / 2);
        Builder builder(*nodes);
        if (!nlohmann::json::sax_parse(bytes.begin(), bytes.end(), &builder)) return std::nullopt;
        return JsonDocument(std::move(nodes));
    } catch (const std::exception&) { // out of memory
        return std::nullopt;
    }
}

JsonDocument::JsonDocument(std::unique_ptr<detail::JsonNodes> nodes) noexcept : nodes_(std::move(nodes)) {}
JsonDocument::JsonDocument(JsonDocument&&) noexcept = default;
JsonDocument& JsonDocument::operator=(JsonDocument&&) noexcept = default;
JsonDocument::~JsonDocument() = default;

namespace {

const JsonNode* nodeOfType(const JsonNodes& nodes, std::uint32_t index, JsonType type) noexcept {
    const JsonNode& node = nodes.list[index];
    return node.type == type ? &node : nullptr;
}

bool isContainer(JsonType type) noexcept { return type == JsonType::array || type == JsonType::object; }

} // namespace

bool JsonValue::isNull() const noexcept { return nodes_->list[index_].type == JsonType::null; }
bool JsonValue::isArray() const noexcept { return nodes_->list[index_].type == JsonType::array; }
bool JsonValue::isObject() const noexcept { return nodes_->list[index_].type == JsonType::object; }

std::optional<std::string_view> JsonValue::string() const noexcept {
    const JsonNode* node = nodeOfType(*nodes_, index_, JsonType::string);
    if (!node) return std::nullopt;
    return nodes_->text(node->text);
}

std::optional<std::int64_t> JsonValue::integer() const noexcept {
    const JsonNode* node = nodeOfType(*nodes_, index_, JsonType::integer);
    if (!node) return std::nullopt;
    return node->integer;
}

std::optional<double> JsonValue::number() const noexcept {
    if (const auto whole = integer()) return static_cast<double>(*whole);
    const JsonNode* node = nodeOfType(*nodes_, index_, JsonType::number);
    if (!node) return std::nullopt;
    return node->number;
}

std::optional<bool> JsonValue::boolean() const noexcept {
    const JsonNode* node = nodeOfType(*nodes_, index_, JsonType::boolean);
    if (!node) return std::nullopt;
    return node->boolean;
}

std::uint32_t JsonValue::childrenEnd() const noexcept {
    const JsonNode& node = nodes_->list[index_];
    return isContainer(node.type) ? node.children.end : index_ + 1;
}

std::string_view JsonValue::key() const noexcept { return nodes_->text(nodes_->list[index_].key); }

std::optional<JsonValue> JsonValue::member(std::string_view key) const noexcept {
    std::optional<JsonValue> found;
    for (const JsonMember member : members())
        if (member.key == key) found = member.value;
    return found;
}

JsonElements JsonValue::elements() const noexcept { return JsonElements(*this, !isArray()); }
JsonMembers JsonValue::members() const noexcept { return JsonMembers(JsonElements(*this, !isObject())); }

JsonElements::Iterator& JsonElements::Iterator::operator++() noexcept {
    at_.index_ = at_.childrenEnd();
    return *this;
}

JsonElements::Iterator JsonElements::begin() const noexcept {
    return Iterator(JsonValue(*owner_.nodes_, owner_.childrenBegin()));
}

JsonElements::Iterator JsonElements::end() const noexcept {
    return Iterator(JsonValue(*owner_.nodes_, none_ ? owner_.childrenBegin() : owner_.childrenEnd()));
}

std::size_t JsonElements::size() const noexcept {
    return none_ ? 0 : owner_.nodes_->list[owner_.index_].children.count;
}

bool readJson(JsonValue value, std::string& into) {
    const auto text = value.string();
    if (text) into.assign(*text);
    return text.has_value();
}

bool readJson(JsonValue value, std::string_view& into) noexcept {
    const auto text = value.string();
    if (text) into = *text;
    return text.has_value();
}

bool readJson(JsonValue value, std::int64_t& into) noexcept {
    const auto integer = value.integer();
    if (integer) into = *integer;
    return integer.has_value();
}

bool readJson(JsonValue value, double& into) noexcept {
    const auto number = value.number();
    if (number) into = *number;
    return number.has_value();
}

bool readJson(JsonValue value, bool& into) noexcept {
    const auto boolean = value.boolean();
    if (boolean) into = *boolean;
    return boolean.has_value();
}

bool readJson(JsonValue value, Date& into) noexcept {
    const auto text = value.string();
    const auto date = text ? dateFromIso8601(*text) : std::nullopt;
    if (date) into = *date;
    return date.has_value();
}

} // namespace vesko
