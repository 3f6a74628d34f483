#pragma once
#include "platform/posix/FolderHandle.h"
#include <cstddef>
#include <memory>
#include <string_view>
#include <system_error>

namespace vesko {

/// Reads the entries of one open folder after the other with one buffer; "." and ".." are left out. One
/// thread. The system's own way of reading stands behind it: entries come in its order, which may be none.
class FolderReader {
public:
    enum class Details { namesOnly, status };
    enum class Step {
        entry,   ///< `name`, `kind` and, where asked for, `status` are set
        failed,  ///< `name` could not be asked for the reason in `error`; reading goes on
        stopped, ///< the folder itself could not be read further for the reason in `error`
        end,
    };

    explicit FolderReader(std::size_t bufferBytes = std::size_t{64} * 1024);
    ~FolderReader();
    FolderReader(const FolderReader&) = delete;
    FolderReader& operator=(const FolderReader&) = delete;

    /// Begins with the folder, which must stay open until the end; a handle is read from its present
    /// position.
    void begin(const FolderHandle& folder, Details details);
    Step next();

    std::string_view name() const noexcept { return name_; } ///< a zero byte follows; valid until next()
    /// With Details::namesOnly only the kind (where the file system tells it) and the inode are set.
    const EntryStatus& status() const noexcept { return status_; }
    bool isKindKnown() const noexcept { return isKindKnown_; }
    std::error_code error() const noexcept { return error_; }

private:
    struct Buffer;
    std::unique_ptr<Buffer> buffer_;
    const FolderHandle* folder_ = nullptr;
    Details details_ = Details::status;
    std::string_view name_;
    EntryStatus status_;
    bool isKindKnown_ = false;
    std::error_code error_;
};

} // namespace vesko
