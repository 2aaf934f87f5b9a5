#include "core/clsConfiguration.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string_view>

using namespace plinket3;

namespace {

using Tree = std::shared_ptr<SettingTree>;

/// Written text does not carry the precision of a number, only its value.
float SingleOf(double value) {
    constexpr double limit = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -limit, limit));
}

bool Same(const SettingTree& left, const SettingTree& right);

bool Same(const SettingValue& left, const SettingValue& right) {
    const auto* leftTree = std::get_if<Tree>(&left);
    const auto* rightTree = std::get_if<Tree>(&right);
    if (leftTree != nullptr && rightTree != nullptr)
        return Same(**leftTree, **rightTree);
    const auto leftNumber = NumberIn(left);
    const auto rightNumber = NumberIn(right);
    if (leftNumber && rightNumber)
        return SingleOf(*leftNumber) == SingleOf(*rightNumber);
    return left == right;
}

bool Same(const SettingTree& left, const SettingTree& right) {
    return std::ranges::equal(left.Entries(), right.Entries(), [](const auto& a, const auto& b) {
        return a.first == b.first && Same(a.second, b.second);
    });
}

/// A text under the empty key ends at its first ";" when it is read, so such a tree cannot be written.
bool CanBeWritten(const SettingTree& tree) {
    return std::ranges::all_of(tree.Entries(), [](const auto& entry) {
        if (const auto* structure = std::get_if<Tree>(&entry.second))
            return CanBeWritten(**structure);
        const auto* text = std::get_if<std::string>(&entry.second);
        return text == nullptr || !entry.first.empty() || text->find(';') == std::string::npos;
    });
}

} // namespace

/// Whatever a text means, the text written from it means the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    clsConfiguration configuration;
    if (!configuration.InputConfiguration({reinterpret_cast<const char*>(data), size}))
        return 0;
    const Tree root = configuration.Root(true);
    if (!Same(*root, *configuration.Root(false)))
        std::abort();
    if (!CanBeWritten(*root))
        return 0;
    for (const bool whiteSpace : {true, false}) {
        clsConfiguration again;
        if (!again.InputConfiguration(configuration.OutputConfiguration("\r\n", whiteSpace)) ||
            !Same(*root, *again.Root(true)))
            std::abort();
    }
    return 0;
}
