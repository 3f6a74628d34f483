#include "platform/qt/ModelExchange.h"
#include <QByteArray>
#include <QNetworkProxy>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace vesko {

namespace {
constexpr qint64 pieceBytes = 1 << 16;
}

/// The socket may be in the middle of telling something.
void ModelExchange::CloseLater::operator()(QTcpSocket* socket) const {
    socket->disconnect();
    socket->abort();
    socket->deleteLater();
}

ModelExchange::ModelExchange(LoopbackAddress server, std::string request, ExchangeLimits limits)
    : server_(std::move(server)), request_(std::move(request)), limits_(limits), answer_(limits.bytes) {}

ModelExchange::~ModelExchange() {
    for (const std::optional<Clock::Id> timer : {end_, silence_})
        if (timer) clock_->cancel(*timer);
}

bool ModelExchange::start(std::coroutine_handle<> asking, const TaskContext& context) {
    if (context.stop.stopRequested()) return false;
    const auto wakeup = std::make_shared<Wakeup>(asking, *context.home);
    wakeup_ = wakeup;
    clock_ = context.clock;
    setTimer(end_, limits_.total, "no answer in time");
    open();
    onStop_.emplace(context.stop, [wakeup] { wakeup->fire(Wakeup::Reason::Cancelled); });
    wakeup->arm();
    return true;
}

void ModelExchange::open() {
    socket_.reset(new QTcpSocket);
    QTcpSocket* socket = socket_.get();
    socket->setProxy(QNetworkProxy::NoProxy);
    // What nobody has read yet waits with the sender.
    socket->setReadBufferSize(pieceBytes);
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [this] { take(); });
    QObject::connect(socket, &QTcpSocket::disconnected, socket, [this] { closed(); });
    QObject::connect(socket, &QTcpSocket::errorOccurred, socket, [this](QAbstractSocket::SocketError error) {
        // The end of a connection is told once more, when all of it was read.
        if (error != QAbstractSocket::RemoteHostClosedError) fail("no connection");
    });
    QObject::connect(socket, &QTcpSocket::connected, socket, [this, socket] {
        socket->write(request_.data(), static_cast<qint64>(request_.size()));
    });
    socket->connectToHost(server_.host, server_.port);
}

std::string ModelExchange::await_resume() {
    onStop_.reset();
    socket_.reset();
    if (!wakeup_ || wakeup_->cancelled()) throw Cancelled{};
    if (failure_) throw std::runtime_error(failure_);
    return answer_.takeBody();
}

void ModelExchange::take() {
    if (failure_) return;
    setTimer(silence_, limits_.silence, "an answer that breaks off");
    HttpAnswer::State state = answer_.state();
    while (state == HttpAnswer::State::incomplete && socket_->bytesAvailable() > 0) {
        const QByteArray piece = socket_->read(pieceBytes);
        if (piece.isEmpty()) break;
        state = answer_.feed(std::string_view(piece.constData(), static_cast<std::size_t>(piece.size())));
    }
    if (state == HttpAnswer::State::refused) return fail(answer_.refusal());
    if (state == HttpAnswer::State::complete) wake();
}

void ModelExchange::closed() {
    if (failure_) return;
    take();
    if (failure_) return;
    if (answer_.close() == HttpAnswer::State::refused) return fail(answer_.refusal());
    wake();
}

void ModelExchange::fail(const char* why) {
    if (!failure_) failure_ = why;
    wake();
}

/// Hangs up at once; the task goes on in a turn of its own.
void ModelExchange::wake() {
    if (socket_) {
        socket_->disconnect();
        socket_->abort();
    }
    wakeup_->fire(Wakeup::Reason::Ready);
}

void ModelExchange::setTimer(std::optional<Clock::Id>& timer, Duration duration, const char* why) {
    if (timer) clock_->cancel(*timer);
    timer = clock_->at(clock_->now() + duration, [this, why] { fail(why); });
}

} // namespace vesko
