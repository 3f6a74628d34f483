#pragma once
#include "platform/OddTree.h"
#include <cstddef>
#include <cstdint>
#include <rapidcheck.h>
#include <string>
#include <vector>

namespace vesko {

/// One step of growing a tree. Numbers choose among what is there, so that every list of steps makes a tree.
struct GrowthStep {
    enum class Kind {
        folder,
        file,
        sparse,
        preallocated,
        hardLink,
        link,
        loop,
        dangling,
        pipe,
        socket,
        deep
    } kind;
    unsigned parent;
    unsigned other;
    std::uint32_t bytes;
    unsigned odd; ///< chooses a strange name now and then
};

inline std::ostream& operator<<(std::ostream& stream, const GrowthStep& step) {
    return stream << '{' << static_cast<int>(step.kind) << ", " << step.parent << ", " << step.other << ", "
                  << step.bytes << ", " << step.odd << '}';
}

inline std::string nameFor(const GrowthStep& step, std::size_t number) {
    const std::string plain = std::to_string(number);
    switch (step.odd % 8) {
    case 0: return plain + "\n" + plain;
    case 1: return "-rf " + plain;
    case 2: return plain + "\xff\xfe\x80";
    case 3: return "." + plain;
    case 4: return plain + std::string(255 - plain.size(), 'n');
    case 5: return plain + " \t'\"\\*";
    default: return plain;
    }
}

/// Grows a tree in the folder "t".
class Gardener {
public:
    explicit Gardener(const OddTree& tree) : tree_(tree) { tree_.folder("t"); }

    void grow(const GrowthStep& step) {
        const std::string path = pick(folders_, step.parent) + "/" + nameFor(step, ++count_);
        switch (step.kind) {
        case GrowthStep::Kind::folder: folders_.push_back(made(path, [&] { tree_.folder(path); })); break;
        case GrowthStep::Kind::file:
            files_.push_back(made(path, [&] { tree_.file(path, step.bytes); }));
            break;
        case GrowthStep::Kind::sparse:
            files_.push_back(made(path, [&] { tree_.sparse(path, step.bytes * 1000LL); }));
            break;
        case GrowthStep::Kind::preallocated:
            files_.push_back(made(path, [&] { tree_.preallocated(path, step.bytes + 1); }));
            break;
        case GrowthStep::Kind::hardLink:
            if (!files_.empty()) tree_.hardLink(path, pick(files_, step.other));
            break;
        case GrowthStep::Kind::link:
            if (!files_.empty() && step.odd % 2)
                tree_.link(path, tree_.path(pick(files_, step.other)));
            else
                tree_.link(path, tree_.path(pick(folders_, step.other)));
            break;
        case GrowthStep::Kind::loop: tree_.link(path, step.odd % 2 ? "." : ".."); break;
        case GrowthStep::Kind::dangling: tree_.link(path, std::string(100 + step.bytes % 3000, 'x')); break;
        case GrowthStep::Kind::pipe: tree_.pipe(path); break;
        case GrowthStep::Kind::socket:
            if (tree_.path(path).size() < 100) tree_.socket(path);
            break;
        case GrowthStep::Kind::deep: tree_.chain(path, "d", 1 + step.bytes % 12, step.bytes % 9000, 3); break;
        }
    }

    const std::vector<std::string>& folders() const noexcept { return folders_; }

private:
    template <class Make> static std::string made(const std::string& path, Make make) {
        make();
        return path;
    }
    static const std::string& pick(const std::vector<std::string>& list, unsigned number) {
        return list[number % list.size()];
    }
    const OddTree& tree_;
    std::vector<std::string> folders_{"t"};
    std::vector<std::string> files_;
    std::size_t count_ = 0;
};

inline rc::Gen<GrowthStep> anyStep() {
    return rc::gen::build<GrowthStep>(
        rc::gen::set(&GrowthStep::kind, rc::gen::map(rc::gen::inRange(0, 11),
                                                     [](int k) { return static_cast<GrowthStep::Kind>(k); })),
        rc::gen::set(&GrowthStep::parent, rc::gen::inRange(0U, 1000U)),
        rc::gen::set(&GrowthStep::other, rc::gen::inRange(0U, 1000U)),
        rc::gen::set(&GrowthStep::bytes, rc::gen::inRange<std::uint32_t>(0, 100'000)),
        rc::gen::set(&GrowthStep::odd, rc::gen::inRange(0U, 64U)));
}

} // namespace vesko
