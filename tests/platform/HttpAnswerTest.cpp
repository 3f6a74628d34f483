#include "platform/qt/HttpAnswer.h"
#include <gtest/gtest.h>

namespace vesko {
namespace {

using State = HttpAnswer::State;

const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n";

struct Read {
    State state = State::incomplete;
    std::string body;
};

/// Feeds the bytes in pieces of that size, then ends the connection where told.
Read read(std::string_view bytes, std::size_t piece, bool closes = false, std::size_t most = 100) {
    HttpAnswer answer(most);
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size())))
        answer.feed(bytes.substr(0, piece));
    if (closes) answer.close();
    return {answer.state(), answer.takeBody()};
}

/// The document, the same in pieces of every size; or why there is none.
std::string document(std::string_view bytes, bool closes = false, std::size_t most = 100) {
    const Read whole = read(bytes, bytes.size() + 1, closes, most);
    for (std::size_t piece = 1; piece <= bytes.size(); ++piece) {
        const Read cut = read(bytes, piece, closes, most);
        EXPECT_EQ(cut.state, whole.state) << piece;
        EXPECT_EQ(cut.body, whole.body) << piece;
    }
    if (whole.state == State::complete) return whole.body;
    EXPECT_EQ(whole.body.empty() || whole.state == State::incomplete, true);
    return whole.state == State::refused ? "refused" : "incomplete";
}

TEST(HttpAnswer, ADocumentOfAKnownLengthEndsThere) {
    EXPECT_EQ(document(head + "Content-Length: 2\r\n\r\n{}and more"), "{}");
    EXPECT_EQ(document(head + "Content-Length: 0\r\n\r\n"), "");
    EXPECT_EQ(document(head + "Content-Length: 3\r\n\r\n{}"), "incomplete");
    EXPECT_EQ(document(head + "Content-Length: 3\r\n\r\n{}", true), "refused");
    EXPECT_EQ(document("HTTP/1.0 200\r\ncontent-type:application/json;x=y\r\nCONTENT-LENGTH:\t2 \r\n\r\n[]"),
              "[]");
}

TEST(HttpAnswer, ADocumentInChunksIsPutTogether) {
    const std::string chunked = head + "Transfer-Encoding: Chunked\r\n\r\n";
    EXPECT_EQ(document(chunked + "1\r\n{\r\n00a;x=\"y\"\r\n0123456789\r\n1\r\n}\r\n0\r\n\r\nmore"),
              "{0123456789}");
    EXPECT_EQ(document(chunked + "2\r\n{}\r\n0\r\nTrailing: field\r\nAnother: one\r\n\r\n"), "{}");
    EXPECT_EQ(document(chunked + "2\r\n{}\r\n0\r\n"), "incomplete");
    EXPECT_EQ(document(chunked + "2\r\n{}\r\n0\r\n", true), "refused");
    EXPECT_EQ(document(chunked + "2\r\n{", true), "refused");
}

TEST(HttpAnswer, ADocumentWithoutALengthEndsWithTheConnection) {
    EXPECT_EQ(document(head + "\r\n{}", true), "{}");
    EXPECT_EQ(document(head + "\r\n{}", false), "incomplete");
}

TEST(HttpAnswer, WrongChunksAreRefused) {
    const std::string chunked = head + "Transfer-Encoding: chunked\r\n\r\n";
    for (const char* wrong : {"zz\r\n", "\r\n", "-1\r\n", "+1\r\n", "0x1\r\n", "1\n{", "1\r\n{}\r\n",
                              "1\r\n{\n", "ffffffffffffffffff\r\n", "65\r\n", "1 1\r\n"})
        EXPECT_EQ(document(chunked + wrong), "refused") << wrong;
    EXPECT_EQ(document(chunked + "1;" + std::string(100, 'x') + "\r\n"), "refused");
}

TEST(HttpAnswer, OnlyStatus200IsTaken) {
    const std::string rest = "\r\nContent-Type: application/json\r\nContent-Length: 2\r\n\r\n{}";
    for (const char* status :
         {"HTTP/1.1 100 Continue", "HTTP/1.1 201 Created", "HTTP/1.1 204 Nothing", "HTTP/1.1 206 Part",
          "HTTP/1.1 302 Found", "HTTP/1.1 404 None", "HTTP/1.1 500 Broken", "HTTP/1.1 2000", "HTTP/1.1 20",
          "HTTP/2 200 OK", "HTTP/1.2 200 OK", "ICY 200 OK", "http/1.1 200 OK", "200 OK", "",
          " HTTP/1.1 200 OK"})
        EXPECT_EQ(document(status + rest), "refused") << status;
}

TEST(HttpAnswer, OnlyPlainJsonIsTaken) {
    const std::string status = "HTTP/1.1 200 OK\r\n";
    const std::string rest = "Content-Length: 2\r\n\r\n{}";
    EXPECT_EQ(document(status + rest), "refused");
    for (const char* type : {"", "text/html", "text/html, application/json", "application/jsonp",
                             "application", "multipart/mixed; application/json"})
        EXPECT_EQ(document(status + "Content-Type: " + type + "\r\n" + rest), "refused") << type;
    EXPECT_EQ(document(head + "Content-Encoding: gzip\r\n" + rest), "refused");
    EXPECT_EQ(document(head + "Content-Encoding: identity\r\n" + rest), "{}");
    EXPECT_EQ(document(head + "Transfer-Encoding: gzip, chunked\r\n\r\n0\r\n\r\n"), "refused");
}

TEST(HttpAnswer, LengthsThatDisagreeAreRefused) {
    EXPECT_EQ(document(head + "Content-Length: 2\r\nContent-Length: 3\r\n\r\n{}"), "refused");
    EXPECT_EQ(document(head + "Content-Length: 2\r\nTransfer-Encoding: chunked\r\n\r\n"), "refused");
    for (const char* length : {"", "-1", "+2", "2, 2", "0x2", "2 2", "99999999999999999999", "2.0"})
        EXPECT_EQ(document(head + "Content-Length: " + length + "\r\n\r\n{}"), "refused") << length;
}

TEST(HttpAnswer, ADocumentThatIsTooLongIsRefused) {
    const std::string ten(10, ' ');
    EXPECT_EQ(document(head + "Content-Length: 10\r\n\r\n" + ten, false, 10), ten);
    EXPECT_EQ(document(head + "Content-Length: 11\r\n\r\n", false, 10), "refused");
    EXPECT_EQ(document(head + "\r\n" + ten, true, 10), ten);
    EXPECT_EQ(document(head + "\r\n" + ten + " ", false, 10), "refused");
    const std::string chunked = head + "Transfer-Encoding: chunked\r\n\r\n";
    EXPECT_EQ(document(chunked + "a\r\n" + ten + "\r\n0\r\n\r\n", false, 10), ten);
    EXPECT_EQ(document(chunked + "b\r\n", false, 10), "refused");
    EXPECT_EQ(document(chunked + "a\r\n" + ten + "\r\n1\r\n", false, 10), "refused");
}

TEST(HttpAnswer, AHeadOrATrailerThatIsTooLongIsRefused) {
    const std::string line = "X-More: " + std::string(1000, 'x') + "\r\n";
    std::string lines;
    for (int i = 0; i < 17; ++i) lines += line;
    EXPECT_EQ(read(head + lines, 1 << 20).state, State::refused);
    EXPECT_EQ(read(head + lines, 7).state, State::refused);
    EXPECT_EQ(read(std::string(20'000, 'H'), 1 << 20).state, State::refused);
    EXPECT_EQ(read(head + std::string(20'000, 'x'), 999).state, State::refused);
    const std::string chunked = head + "Transfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n";
    EXPECT_EQ(read(chunked + lines, 1 << 20).state, State::refused);
    EXPECT_EQ(read(head + line + "Content-Length: 2\r\n\r\n{}", 1 << 20).state, State::complete);
}

TEST(HttpAnswer, WhatIsNoHeadIsRefused) {
    for (const char* wrong :
         {"220 mail.example.com ready\r\n", "HTTP/1.1 200 OK\nContent-Length: 2\n\n{}", "\r\n\r\n"})
        EXPECT_EQ(document(wrong), "refused") << wrong;
    EXPECT_EQ(document(head + "no field\r\n\r\n"), "refused");
    EXPECT_EQ(document(std::string(100, '\0') + "\r\n"), "refused");
    EXPECT_EQ(document("", true), "refused");
    EXPECT_EQ(document("HTTP/1.1 200 OK\r\nContent-Type: appli", true), "refused");
}

} // namespace
} // namespace vesko
