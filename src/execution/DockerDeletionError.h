#pragma once
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vesko {

/// Why an object inside the container tool was not deleted. Compared by value.
class DockerDeletionError {
public:
    /// The tool ran and did not exit with 0.
    struct DeleteFailed {
        std::vector<std::string> command; ///< the executable followed by all its arguments
        std::int32_t exitCode = 0;
        friend bool operator==(const DeleteFailed&, const DeleteFailed&) = default;
    };
    /// No working executable was found.
    struct DockerNotAvailable {
        friend bool operator==(const DockerNotAvailable&, const DockerNotAvailable&) = default;
    };
    /// The item can be measured, not deleted.
    struct UnsupportedOfflineTarget {
        friend bool operator==(const UnsupportedOfflineTarget&, const UnsupportedOfflineTarget&) = default;
    };
    using Case = std::variant<DeleteFailed, DockerNotAvailable, UnsupportedOfflineTarget>;

    static DockerDeletionError deleteFailed(std::vector<std::string> command, std::int32_t exitCode) {
        return DockerDeletionError(DeleteFailed{std::move(command), exitCode});
    }
    static DockerDeletionError dockerNotAvailable() { return DockerDeletionError(DockerNotAvailable{}); }
    static DockerDeletionError unsupportedOfflineTarget() {
        return DockerDeletionError(UnsupportedOfflineTarget{});
    }

    const Case& value() const noexcept { return value_; }
    /// One plain sentence in the current language.
    std::string localizedDescription() const;

    friend bool operator==(const DockerDeletionError&, const DockerDeletionError&) = default;

private:
    explicit DockerDeletionError(Case value) : value_(std::move(value)) {}
    Case value_;
};

} // namespace vesko
