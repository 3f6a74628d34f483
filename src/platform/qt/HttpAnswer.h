#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vesko {

/// Reads the answer to one HTTP/1.1 request (RFC 9112) piece by piece as it comes, and takes no other than a
/// JSON document with status 200: a redirection, a failure, a page, an encoded or too long answer is refused
/// by its head already. Holds no more than the document may have, beside 16 KiB of head. Nothing throws.
class HttpAnswer {
public:
    enum class State { incomplete, complete, refused };

    /// The document may have so many bytes.
    explicit HttpAnswer(std::size_t mostBytes) : mostBytes_(mostBytes) {}

    /// Takes what has come. What follows a complete answer is ignored.
    State feed(std::string_view bytes);
    /// The connection has ended.
    State close();

    State state() const noexcept;
    /// Why it was refused, for a developer.
    const char* refusal() const noexcept { return refusal_; }
    /// The document of a complete answer.
    std::string takeBody() { return std::move(body_); }

private:
    enum class Part { head, sized, untilClose, chunkSize, chunk, chunkEnd, trailer, done };

    void refuse(const char* why);
    void step(std::string_view& bytes);
    /// The next line once it is whole, without its end; refused when longer than that.
    std::optional<std::string> line(std::string_view& bytes, std::size_t longest);
    void readHead(std::string_view& bytes);
    void readField(std::string_view field);
    void beginBody();
    void readBody(std::string_view& bytes);
    void readChunkSize(std::string_view& bytes);

    std::size_t mostBytes_;
    Part part_ = Part::head;
    const char* refusal_ = nullptr;
    std::string line_; ///< the line that is coming
    std::string body_;
    std::size_t headBytes_ = 0;
    bool isFirstLine_ = true;
    bool isJson_ = false;
    bool isChunked_ = false;
    std::optional<std::size_t> length_;
    std::size_t left_ = 0; ///< of the body or of the chunk
};

} // namespace vesko
