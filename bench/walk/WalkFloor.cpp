#include "WalkFloor.h"

#include <atomic>
#include <condition_variable>
#include <dirent.h>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace vesko::bench {

namespace {

struct Record {
    std::uint64_t inode;
    std::int64_t offset;
    unsigned short length;
    unsigned char type;
};
constexpr std::size_t nameOffset = 19;
constexpr std::size_t bufferBytes = 65536;

class Floor {
public:
    Floor(const std::string& root, unsigned threads) : threads_(threads), waiting_{root} {}

    std::int64_t run() {
        std::vector<std::thread> workers;
        for (unsigned i = 0; i < threads_; ++i) workers.emplace_back([this] { work(); });
        for (std::thread& worker : workers) worker.join();
        return blocks_ * 512;
    }

private:
    bool take(std::vector<std::string>& own) {
        std::unique_lock lock(mutex_);
        ++idle_;
        while (waiting_.empty() && !done_) {
            if (idle_ == threads_) {
                done_ = true;
                changed_.notify_all();
                return false;
            }
            changed_.wait(lock);
        }
        if (waiting_.empty()) return false;
        --idle_;
        for (std::size_t wanted = std::min<std::size_t>(waiting_.size() / 2 + 1, 64); wanted > 0; --wanted) {
            own.push_back(std::move(waiting_.back()));
            waiting_.pop_back();
        }
        return true;
    }

    void give(std::vector<std::string>& own) {
        const std::lock_guard lock(mutex_);
        const auto half = own.begin() + static_cast<std::ptrdiff_t>(own.size() / 2);
        waiting_.insert(waiting_.end(), std::make_move_iterator(own.begin()), std::make_move_iterator(half));
        own.erase(own.begin(), half);
        changed_.notify_all();
    }

    static std::int64_t read(int folder, const std::string& path, char* buffer,
                             std::vector<std::string>& own) {
        std::int64_t blocks = 0;
        for (long got = 0; (got = ::syscall(SYS_getdents64, folder, buffer, bufferBytes)) > 0;) {
            for (const char* at = buffer; at < buffer + got;) {
                const auto* record = reinterpret_cast<const Record*>(at);
                const char* name = at + nameOffset;
                at += record->length;
                if (name[0] == '.' && (!name[1] || (name[1] == '.' && !name[2]))) continue;
                struct statx status;
                ::statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT,
                        STATX_BLOCKS | STATX_TYPE | STATX_NLINK | STATX_INO, &status);
                blocks += static_cast<std::int64_t>(status.stx_blocks);
                if (record->type == DT_DIR) own.push_back(path + "/" + name);
            }
        }
        return blocks;
    }

    void work() {
        std::vector<std::string> own;
        std::vector<char> buffer(bufferBytes);
        std::int64_t blocks = 0;
        while (!own.empty() || take(own)) {
            const std::string path = std::move(own.back());
            own.pop_back();
            const int folder =
                ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NOATIME);
            if (folder < 0) continue;
            blocks += read(folder, path, buffer.data(), own);
            ::close(folder);
            if (own.size() > 32) give(own);
        }
        blocks_ += blocks;
    }

    const unsigned threads_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::string> waiting_;
    unsigned idle_ = 0;
    bool done_ = false;
    std::atomic<std::int64_t> blocks_{0};
};

} // namespace

std::int64_t walkFloor(const std::string& root, unsigned threads) { return Floor(root, threads).run(); }

} // namespace vesko::bench
