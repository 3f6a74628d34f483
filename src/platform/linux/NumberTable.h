#pragma once
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace vesko {

/// Numbers that are found by what they stand for, at four bytes a slot: `Hash` gives the hash of a number
/// that is in the table, so it must not change meanwhile. Several may have the same. One thread.
template <class Hash> class NumberTable {
public:
    using Number = std::uint32_t;
    static constexpr Number none = ~Number{0};

    explicit NumberTable(Hash hash) : hash_(std::move(hash)), slots_(16, none) {}

    void insert(Number number) {
        if ((count_ + 1) * 4 > slots_.size() * 3) grow();
        put(number);
        ++count_;
    }

    /// Closes the gap, so that no search ends in it.
    void erase(Number number) {
        std::size_t hole = hash_(number) & mask();
        while (slots_[hole] != number) {
            if (slots_[hole] == none) return;
            hole = (hole + 1) & mask();
        }
        for (std::size_t next = (hole + 1) & mask(); slots_[next] != none; next = (next + 1) & mask()) {
            const std::size_t wanted = hash_(slots_[next]) & mask();
            if (((next - wanted) & mask()) < ((next - hole) & mask())) continue;
            slots_[hole] = slots_[next];
            hole = next;
        }
        slots_[hole] = none;
        --count_;
    }

    /// The first number with this hash that `matches` accepts, or none.
    template <class Match> Number find(std::size_t hash, const Match& matches) const {
        for (std::size_t slot = hash & mask(); slots_[slot] != none; slot = (slot + 1) & mask())
            if (matches(slots_[slot])) return slots_[slot];
        return none;
    }

private:
    std::size_t mask() const noexcept { return slots_.size() - 1; }

    void put(Number number) {
        std::size_t slot = hash_(number) & mask();
        while (slots_[slot] != none) slot = (slot + 1) & mask();
        slots_[slot] = number;
    }

    void grow() {
        std::vector<Number> old(slots_.size() * 2, none);
        old.swap(slots_);
        for (const Number number : old)
            if (number != none) put(number);
    }

    Hash hash_;
    std::vector<Number> slots_; ///< a power of two of them
    std::size_t count_ = 0;
};

} // namespace vesko
