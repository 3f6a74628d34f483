#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace vesko {

/// Writes one compact JSON document front to back, members in the order of the calls. The caller pairs begins
/// with ends and puts a key before each value of an object. Texts must be UTF-8 and numbers finite.
class JsonWriter {
public:
    void reserve(std::size_t bytes) { bytes_.reserve(bytes); }

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    void key(std::string_view name);
    void string(std::string_view text);
    void integer(std::int64_t value);
    /// The fewest digits that read back as the same figure; no fraction when whole, no exponent from 0.0001
    /// up to 2^54.
    void number(double value);
    void boolean(bool value);
    void null();

    /// The document; the writer is empty afterwards.
    std::string take();

private:
    void open(char bracket);
    void close(char bracket);
    void separate();
    void quoted(std::string_view text);

    std::string bytes_;
    bool needsComma_ = false;
};

} // namespace vesko
