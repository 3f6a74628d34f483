#include "Fuzzing.h"
#include "platform/qt/ChatProtocol.h"
#include "platform/qt/HttpAnswer.h"
#include <algorithm>

using namespace vesko;
using fuzzing::require;

namespace {

constexpr std::size_t mostBytes = 512;

/// The answer as it is read when it comes in pieces of so many bytes, up to its end or the connection's.
HttpAnswer answered(std::string_view bytes, std::size_t piece) {
    HttpAnswer answer(mostBytes);
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size())))
        answer.feed(bytes.substr(0, piece));
    answer.close();
    return answer;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text = fuzzing::textOf(bytes, size);
    HttpAnswer whole = answered(text, text.size());
    HttpAnswer pieces = answered(text, 1 + size % 7);
    require(whole.state() != HttpAnswer::State::incomplete, "nothing comes after the connection's end");
    require(whole.state() == pieces.state(), "it does not matter in which pieces an answer comes");
    if (whole.state() == HttpAnswer::State::refused) return 0;
    const std::string body = whole.takeBody();
    require(body.size() <= mostBytes, "no more is held than an answer may have");
    require(pieces.takeBody() == body, "the document does not depend on the pieces either");
    if (const auto said = chatAnswer(body))
        require(said->size() <= body.size() * 3, "an answer says what it holds");
    if (const auto model = firstModel(body)) require(!model->empty(), "a model has a name");
    return 0;
}
