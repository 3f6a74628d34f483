#include "platform/posix/FolderReader.h"

#include "AttributeRecord.h"
#include "platform/posix/WalkCounts.h"
#include <cerrno>
#include <sys/attr.h>
#include <unistd.h>

/// getattrlistbulk(2) gives names and attributes of many entries with one call.
namespace vesko {

struct FolderReader::Buffer {
    explicit Buffer(std::size_t size) : capacity(size), bytes(new char[size]) {}
    std::size_t capacity;
    std::unique_ptr<char[]> bytes;
    std::string_view unread;
    int left = 0; ///< records in `unread`
    std::uint32_t user = 0;
};

FolderReader::FolderReader(std::size_t bufferBytes) : buffer_(std::make_unique<Buffer>(bufferBytes)) {}
FolderReader::~FolderReader() = default;

void FolderReader::begin(const FolderHandle& folder, Details details) {
    folder_ = &folder;
    details_ = details;
    buffer_->left = 0;
    buffer_->user = ::geteuid();
}

FolderReader::Step FolderReader::next() {
    for (;;) {
        if (buffer_->left == 0) {
            attrlist wanted = recordAttributes();
            const int got = ::getattrlistbulk(folder_->descriptor(), &wanted, buffer_->bytes.get(),
                                              buffer_->capacity, FSOPT_NOFOLLOW);
            if (got < 0) {
                error_ = {errno, std::system_category()};
                return Step::stopped;
            }
            ++callsOfThisThread.readingCalls;
            if (got == 0) return Step::end;
            buffer_->left = got;
            buffer_->unread = {buffer_->bytes.get(), buffer_->capacity};
        }
        const std::optional<AttributeRecord> entry = takeRecord(buffer_->unread, buffer_->user);
        if (!entry) { // where the next record begins is not known either
            buffer_->left = 0;
            error_ = std::make_error_code(std::errc::bad_message);
            return Step::stopped;
        }
        --buffer_->left;
        if (entry->name.empty() || entry->error == ENOENT) continue; // nothing can be said of it; gone
        ++callsOfThisThread.entriesRead;
        name_ = entry->name;
        status_ = entry->status;
        isKindKnown_ = entry->hasKind;
        if (entry->error == 0) return Step::entry;
        error_ = {entry->error, std::system_category()};
        return Step::failed;
    }
}

} // namespace vesko
