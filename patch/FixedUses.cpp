#include "patch/FixedUses.h"

#include "core/Files.h"
#include "core/Numbers.h"
#include "core/Paths.h"
#include "core/Text.h"

#include <array>

namespace plinket3 {

namespace {

constexpr std::size_t cellCount = 4;

std::optional<FixedUse> ParseLine(std::string_view line, const EngineConfiguration& engine) {
    std::array<std::string_view, cellCount> cells;
    for (std::string_view& cell : cells)
        cell = TakeUpTo(line, '\t');
    const auto& [word, number, action, what] = cells;
    FixedUse use;
    const auto kind = TargetKindNamed(word);
    const auto index = WholeNumber(number);
    if (!kind || !index)
        return std::nullopt;
    use.target = {*kind, *index};
    if (!action.empty()) {
        use.action = engine.CodePointerOf(action);
        if (!use.action)
            return std::nullopt;
    }
    use.what = what;
    return use;
}

} // namespace

std::vector<FixedUse> ParseFixedUses(std::string_view bytes, const EngineConfiguration& engine) {
    std::vector<FixedUse> uses;
    while (!bytes.empty())
        if (auto use = ParseLine(TakeUpTo(bytes, '\n'), engine))
            uses.push_back(*std::move(use));
    return uses;
}

std::vector<FixedUse> LoadFixedUses(const std::filesystem::path& programFolder, const EngineConfiguration& engine) {
    const std::filesystem::path name = PathOf(engine.fileName).replace_extension(".tsv");
    std::string bytes;
    if (!ReadWholeFile(programFolder / "uses" / name, bytes))
        return {};
    return ParseFixedUses(bytes, engine);
}

} // namespace plinket3
