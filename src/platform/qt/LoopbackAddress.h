#pragma once
#include <QHostAddress>
#include <optional>
#include <string_view>

namespace vesko {

/// Where a server on this very machine listens.
struct LoopbackAddress {
    QHostAddress host; ///< in 127.0.0.0/8, or ::1
    quint16 port = 0;

    /// Reads "http://", then 127.0.0.0/8, [::1] or the name localhost, then perhaps a port (else 80), and
    /// nothing behind. Nothing for every other address, so that no question can leave the machine. No
    /// resolver is asked: localhost is 127.0.0.1 by its definition (RFC 6761, 6.3), whatever the machine's
    /// tables say.
    static std::optional<LoopbackAddress> parse(std::string_view text);
};

} // namespace vesko
