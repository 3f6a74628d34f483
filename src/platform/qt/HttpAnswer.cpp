#include "platform/qt/HttpAnswer.h"
#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

namespace vesko {

namespace {

constexpr std::size_t longestHead = 1 << 14;
constexpr std::size_t longestSizeLine = 64;

std::string lowered(std::string_view text) {
    std::string lower(text);
    for (char& letter : lower)
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    return lower;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// A figure of digits alone, nothing else around it.
std::optional<std::size_t> figure(std::string_view text, int base) {
    std::size_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

} // namespace

HttpAnswer::State HttpAnswer::state() const noexcept {
    if (refusal_) return State::refused;
    return part_ == Part::done ? State::complete : State::incomplete;
}

HttpAnswer::State HttpAnswer::feed(std::string_view bytes) {
    while (!bytes.empty() && state() == State::incomplete) step(bytes);
    return state();
}

HttpAnswer::State HttpAnswer::close() {
    if (state() == State::incomplete) {
        if (part_ == Part::untilClose)
            part_ = Part::done;
        else
            refuse("no whole answer");
    }
    return state();
}

void HttpAnswer::refuse(const char* why) {
    refusal_ = why;
    body_ = std::string();
}

void HttpAnswer::step(std::string_view& bytes) {
    switch (part_) {
    case Part::head: return readHead(bytes);
    case Part::sized:
    case Part::untilClose:
    case Part::chunk: return readBody(bytes);
    case Part::chunkSize: return readChunkSize(bytes);
    case Part::chunkEnd:
        if (const auto rest = line(bytes, 0)) part_ = Part::chunkSize;
        return;
    case Part::trailer:
        if (const auto field = line(bytes, longestHead - headBytes_)) {
            headBytes_ += field->size();
            if (field->empty()) part_ = Part::done;
        }
        return;
    case Part::done: return;
    }
}

std::optional<std::string> HttpAnswer::line(std::string_view& bytes, std::size_t longest) {
    const std::size_t end = bytes.find('\n');
    line_ += bytes.substr(0, std::min(end, longest + 2));
    const bool isWhole = end != std::string_view::npos;
    bytes.remove_prefix(isWhole ? end + 1 : bytes.size());
    const bool hasReturn = line_.ends_with('\r');
    if (line_.size() > longest + (hasReturn ? 1 : 0)) {
        refuse("too long a line");
        return std::nullopt;
    }
    if (!isWhole) return std::nullopt;
    if (!hasReturn) {
        refuse("a line that ends in another way");
        return std::nullopt;
    }
    line_.pop_back();
    return std::exchange(line_, std::string());
}

void HttpAnswer::readHead(std::string_view& bytes) {
    const std::optional<std::string> field = line(bytes, longestHead - headBytes_);
    if (!field) return;
    headBytes_ += field->size();
    if (std::exchange(isFirstLine_, false)) {
        const std::string_view status(*field);
        if (!status.starts_with("HTTP/1.0 200") && !status.starts_with("HTTP/1.1 200"))
            return refuse("another status than 200");
        if (status.size() > 12 && status[12] != ' ') refuse("another status than 200");
    } else if (field->empty()) {
        beginBody();
    } else {
        readField(*field);
    }
}

void HttpAnswer::readField(std::string_view field) {
    const std::size_t colon = field.find(':');
    if (colon == std::string_view::npos) return refuse("no field of a head");
    const std::string name = lowered(field.substr(0, colon));
    const std::string_view value = trimmed(field.substr(colon + 1));
    if (name == "content-type") {
        isJson_ = lowered(trimmed(value.substr(0, value.find(';')))) == "application/json";
    } else if (name == "content-encoding") {
        if (lowered(value) != "identity") refuse("an encoded answer");
    } else if (name == "transfer-encoding") {
        if (isChunked_ || lowered(value) != "chunked") return refuse("an encoded answer");
        isChunked_ = true;
    } else if (name == "content-length") {
        const std::optional<std::size_t> length = figure(value, 10);
        if (!length || (length_ && *length_ != *length)) return refuse("no length");
        length_ = length;
    }
}

void HttpAnswer::beginBody() {
    if (!isJson_) return refuse("no JSON document");
    // Two lengths are how answers are smuggled past somebody.
    if (isChunked_ && length_) return refuse("two lengths");
    if (length_.value_or(0) > mostBytes_) return refuse("too long an answer");
    left_ = length_.value_or(0);
    if (isChunked_)
        part_ = Part::chunkSize;
    else if (length_)
        part_ = left_ > 0 ? Part::sized : Part::done;
    else
        part_ = Part::untilClose;
}

void HttpAnswer::readBody(std::string_view& bytes) {
    const std::size_t taken = part_ == Part::untilClose ? bytes.size() : std::min(left_, bytes.size());
    if (body_.size() + taken > mostBytes_) return refuse("too long an answer");
    body_.append(bytes.substr(0, taken));
    bytes.remove_prefix(taken);
    if (part_ == Part::untilClose) return;
    left_ -= taken;
    if (left_ == 0) part_ = part_ == Part::chunk ? Part::chunkEnd : Part::done;
}

void HttpAnswer::readChunkSize(std::string_view& bytes) {
    const std::optional<std::string> text = line(bytes, longestSizeLine);
    if (!text) return;
    const std::string_view digits = trimmed(std::string_view(*text).substr(0, text->find(';')));
    const std::optional<std::size_t> size = figure(digits, 16);
    if (!size) return refuse("no size of a chunk");
    if (*size > mostBytes_ - body_.size()) return refuse("too long an answer");
    left_ = *size;
    part_ = left_ > 0 ? Part::chunk : Part::trailer;
}

} // namespace vesko
