#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace vesko {

/// Tells listeners that something of its owner changed. Main thread only. A listener may subscribe, end its
/// subscription or change the owner again while it is being told.
class ChangeSource {
public:
    using Listener = std::function<void()>;

    /// Ends the subscription when it goes away. Outliving the source is allowed.
    class Subscription {
    public:
        Subscription() = default;
        explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
        Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
        Subscription& operator=(Subscription&& other) noexcept {
            std::swap(end_, other.end_);
            return *this;
        }
        ~Subscription() {
            if (end_) end_();
        }

    private:
        std::function<void()> end_;
    };

    ChangeSource() = default;
    ChangeSource(const ChangeSource&) = delete;
    ChangeSource& operator=(const ChangeSource&) = delete;

    [[nodiscard]] Subscription subscribe(Listener listener) {
        const std::uint64_t id = ++listeners_->last;
        listeners_->byID.emplace(id, std::move(listener));
        return Subscription([list = std::weak_ptr(listeners_), id] {
            if (const auto alive = list.lock()) alive->byID.erase(id);
        });
    }

    void notify() const {
        const auto kept = listeners_;
        std::uint64_t next = 0;
        for (;;) {
            const auto found = kept->byID.upper_bound(next);
            if (found == kept->byID.end()) return;
            next = found->first;
            const Listener told = found->second;
            told();
        }
    }

private:
    struct Listeners {
        std::map<std::uint64_t, Listener> byID;
        std::uint64_t last = 0;
    };
    std::shared_ptr<Listeners> listeners_ = std::make_shared<Listeners>();
};

/// A value whose changes are told through a source; assigning an equal value tells nobody. Main thread only.
template <class Value> class Observed {
public:
    explicit Observed(ChangeSource& source, Value initial = Value())
        : source_(source), value_(std::move(initial)) {}
    Observed(const Observed&) = delete;
    Observed& operator=(const Observed&) = delete;

    const Value& operator*() const noexcept { return value_; }
    const Value* operator->() const noexcept { return &value_; }
    operator const Value&() const noexcept { return value_; }

    Observed& operator=(Value value) {
        if constexpr (requires { value_ == value; }) {
            if (value_ == value) return *this;
        }
        value_ = std::move(value);
        ++revision_;
        source_.notify();
        return *this;
    }

    /// Changes the value in place and tells the listeners once, whatever `change` did.
    template <class Change> void modify(Change change) {
        change(value_);
        ++revision_;
        source_.notify();
    }

    /// Counts the changes, so that what is worked out from the value can be kept until it changes.
    std::uint64_t revision() const noexcept { return revision_; }

private:
    ChangeSource& source_;
    Value value_;
    std::uint64_t revision_ = 0;
};

} // namespace vesko
