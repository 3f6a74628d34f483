#pragma once
#include "execution/DockerDeletionError.h"
#include "execution/RemovalFailure.h"
#include "execution/SimulatorDeletionError.h"
#include <string>
#include <utility>
#include <variant>

namespace vesko {

/// Why an item was not deleted. Compared by value.
class CleanupError {
public:
    using Case = std::variant<RemovalFailure, DockerDeletionError, SimulatorDeletionError>;

    CleanupError(RemovalFailure failure) : value_(std::move(failure)) {}
    CleanupError(DockerDeletionError error) : value_(std::move(error)) {}
    CleanupError(SimulatorDeletionError error) : value_(std::move(error)) {}

    const Case& value() const noexcept { return value_; }
    /// The error as the given type; null when it is another one.
    template <class Error> const Error* as() const noexcept { return std::get_if<Error>(&value_); }

    /// One plain sentence in the current language.
    std::string localizedDescription() const;

    friend bool operator==(const CleanupError&, const CleanupError&) = default;

private:
    Case value_;
};

} // namespace vesko
