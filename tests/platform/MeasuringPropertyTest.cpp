#include "core/FastDirectorySize.h"

#include "platform/OddTree.h"
#include "platform/ShellCommand.h"
#include "platform/UsageSum.h"
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace vesko {
namespace {

/// One step of growing a tree. Numbers choose among what is there, so that every list of steps makes a tree.
struct Step {
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

std::ostream& operator<<(std::ostream& stream, const Step& step) {
    return stream << '{' << static_cast<int>(step.kind) << ", " << step.parent << ", " << step.other << ", "
                  << step.bytes << ", " << step.odd << '}';
}

std::string nameFor(const Step& step, std::size_t number) {
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

class Gardener {
public:
    explicit Gardener(const OddTree& tree) : tree_(tree) { tree_.folder("t"); }

    void grow(const Step& step) {
        const std::string path = pick(folders_, step.parent) + "/" + nameFor(step, ++count_);
        switch (step.kind) {
        case Step::Kind::folder: folders_.push_back(made(path, [&] { tree_.folder(path); })); break;
        case Step::Kind::file: files_.push_back(made(path, [&] { tree_.file(path, step.bytes); })); break;
        case Step::Kind::sparse:
            files_.push_back(made(path, [&] { tree_.sparse(path, step.bytes * 1000LL); }));
            break;
        case Step::Kind::preallocated:
            files_.push_back(made(path, [&] { tree_.preallocated(path, step.bytes + 1); }));
            break;
        case Step::Kind::hardLink:
            if (!files_.empty()) tree_.hardLink(path, pick(files_, step.other));
            break;
        case Step::Kind::link:
            if (!files_.empty() && step.odd % 2)
                tree_.link(path, tree_.path(pick(files_, step.other)));
            else
                tree_.link(path, tree_.path(pick(folders_, step.other)));
            break;
        case Step::Kind::loop: tree_.link(path, step.odd % 2 ? "." : ".."); break;
        case Step::Kind::dangling: tree_.link(path, std::string(100 + step.bytes % 3000, 'x')); break;
        case Step::Kind::pipe: tree_.pipe(path); break;
        case Step::Kind::socket:
            if (tree_.path(path).size() < 100) tree_.socket(path);
            break;
        case Step::Kind::deep: tree_.chain(path, "d", 1 + step.bytes % 12, step.bytes % 9000, 3); break;
        }
    }

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

rc::Gen<Step> anyStep() {
    return rc::gen::build<Step>(
        rc::gen::set(&Step::kind,
                     rc::gen::map(rc::gen::inRange(0, 11), [](int k) { return static_cast<Step::Kind>(k); })),
        rc::gen::set(&Step::parent, rc::gen::inRange(0U, 1000U)),
        rc::gen::set(&Step::other, rc::gen::inRange(0U, 1000U)),
        rc::gen::set(&Step::bytes, rc::gen::inRange<std::uint32_t>(0, 100'000)),
        rc::gen::set(&Step::odd, rc::gen::inRange(0U, 64U)));
}

RC_GTEST_PROP(MeasuringProperty, AnyTreeEqualsDuToTheKibibyte, ()) {
    const auto steps = *rc::gen::container<std::vector<Step>>(anyStep());
    const OddTree tree;
    Gardener gardener(tree);
    for (const Step& step : steps) gardener.grow(step);
    const std::string root = tree.path("t");
    for (const bool followLinks : {false, true}) {
        const std::int64_t expected = duBytes(root, followLinks);
        const auto quick = fastDirectorySize(tree.url("t"), followLinks);
        if (expected > 4096)
            RC_ASSERT(quick == std::optional(expected));
        else
            RC_ASSERT(quick == std::nullopt);
        for (const unsigned threads : {1U, 2U, 8U})
            RC_ASSERT(usageByThreads(root, followLinks, threads) == std::optional(expected));
    }
}

} // namespace
} // namespace vesko
