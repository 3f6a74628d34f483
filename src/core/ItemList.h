#pragma once
#include "core/ScannableItem.h"
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace vesko {

/// An immutable list of items that copies share, so that a snapshot of 100,000 items handed to a worker or
/// kept beside the live list costs a reference count. Equality is by value.
class ItemList {
public:
    using value_type = ScannableItem;
    using const_iterator = std::vector<ScannableItem>::const_iterator;

    ItemList() = default;
    ItemList(std::vector<ScannableItem> items)
        : items_(items.empty() ? nullptr
                               : std::make_shared<const std::vector<ScannableItem>>(std::move(items))) {}
    ItemList(std::initializer_list<ScannableItem> items) : ItemList(std::vector<ScannableItem>(items)) {}

    const_iterator begin() const noexcept { return values().begin(); }
    const_iterator end() const noexcept { return values().end(); }
    std::size_t size() const noexcept { return values().size(); }
    bool empty() const noexcept { return values().empty(); }
    const ScannableItem& operator[](std::size_t index) const noexcept { return values()[index]; }
    const ScannableItem& front() const noexcept { return values().front(); }
    const std::vector<ScannableItem>& values() const noexcept {
        static const std::vector<ScannableItem> none;
        return items_ ? *items_ : none;
    }

    /// Whether both lists are one and the same memory: a quick "nothing changed".
    bool sharesMemory(const ItemList& other) const noexcept { return items_ == other.items_; }

    friend bool operator==(const ItemList& a, const ItemList& b) {
        return a.items_ == b.items_ || a.values() == b.values();
    }

private:
    std::shared_ptr<const std::vector<ScannableItem>> items_;
};

} // namespace vesko
