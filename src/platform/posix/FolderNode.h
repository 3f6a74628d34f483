#pragma once
#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace vesko {

class FolderNodeRef;

/// A folder's place in a walked tree: its name and the node above. Holds no descriptor, so a tree of any
/// depth can be remembered. Never changes; shared by threads through FolderNodeRef.
class FolderNode {
public:
    const FolderNode* parent() const noexcept { return parent_; }
    const std::string& name() const noexcept { return name_; } ///< of the root: its whole path
    std::uint32_t depth() const noexcept { return depth_; }    ///< 0 for the root
    bool isThroughLink() const noexcept { return isThroughLink_; }
    /// Whether a link leads here or to a folder above.
    bool isBeyondLink() const noexcept { return isBeyondLink_; }
    std::uint32_t number() const noexcept { return number_; } ///< given by its walk; 0 for the root

    /// The root's path and the names below it.
    std::string path() const;
    std::string pathOf(std::string_view entry) const;

private:
    friend class FolderNodeRef;
    FolderNode(const FolderNode* parent, std::string name, bool isThroughLink, std::uint32_t number)
        : parent_(parent), name_(std::move(name)), depth_(parent ? parent->depth_ + 1 : 0), number_(number),
          isThroughLink_(isThroughLink), isBeyondLink_(isThroughLink || (parent && parent->isBeyondLink_)) {}

    const FolderNode* parent_; ///< one reference is held
    std::string name_;
    std::uint32_t depth_;
    std::uint32_t number_;
    bool isThroughLink_;
    bool isBeyondLink_;
    mutable std::atomic<std::uint32_t> references_{1};
};

/// A counted reference. Letting go of the last one frees the nodes above one by one in a loop, since a chain
/// of 20,000 destructors would not fit on a small stack.
class FolderNodeRef {
public:
    FolderNodeRef() = default;
    FolderNodeRef(const FolderNodeRef& other) noexcept : node_(other.node_) {
        if (node_) node_->references_.fetch_add(1, std::memory_order_relaxed);
    }
    FolderNodeRef(FolderNodeRef&& other) noexcept : node_(std::exchange(other.node_, nullptr)) {}
    FolderNodeRef& operator=(FolderNodeRef other) noexcept {
        std::swap(node_, other.node_);
        return *this;
    }
    ~FolderNodeRef() { release(); }

    static FolderNodeRef root(std::string path);
    /// A further reference to a node that someone holds already.
    static FolderNodeRef to(const FolderNode& node) noexcept {
        node.references_.fetch_add(1, std::memory_order_relaxed);
        return FolderNodeRef(&node);
    }
    static FolderNodeRef below(const FolderNodeRef& parent, std::string name, bool isThroughLink = false,
                               std::uint32_t number = 0);

    const FolderNode* operator->() const noexcept { return node_; }
    const FolderNode& operator*() const noexcept { return *node_; }
    const FolderNode* node() const noexcept { return node_; }
    explicit operator bool() const noexcept { return node_ != nullptr; }

private:
    explicit FolderNodeRef(const FolderNode* node) noexcept : node_(node) {}
    void release() noexcept;
    const FolderNode* node_ = nullptr;
};

} // namespace vesko
