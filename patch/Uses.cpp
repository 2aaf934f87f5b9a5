#include "patch/Uses.h"

#include "patch/StepNames.h"

namespace plinket3 {

namespace {

std::string ActionName(const EngineConfiguration& engine, std::int32_t action) {
    const std::string* mnemonic = engine.MnemonicOf(action);
    return mnemonic == nullptr ? "action " + std::to_string(action) : *mnemonic;
}

std::string FrameWithAction(const EngineConfiguration& engine, std::int32_t state, std::int32_t action) {
    return "frame " + std::to_string(state) + " (" + ActionName(engine, action) + ")";
}

std::string LinkText(const PatchSet& set, const EngineConfiguration& engine, const Link& link) {
    const Cell& cell = link.from;
    if (link.argument != nullptr)
        return FrameWithAction(engine, cell.index, set.states[cell.index].codePointer) + ": " + link.argument->name;
    const std::string name = RecordName(set, cell.kind, cell.index), field = FieldName(cell);
    return name.empty() ? field : name + ": " + field;
}

} // namespace

std::vector<Use> UsesOf(const PatchSet& set, const EngineConfiguration& engine, std::span<const FixedUse> fixedUses,
                        const Target& target) {
    std::vector<Use> uses;
    if (target.IsNone())
        return uses;
    LinkWalk(set, engine).ForEach([&](const Link& link) {
        if (link.to == target && (TargetKindOf(link.from.kind) != target.kind || link.from.index != target.number))
            uses.push_back({link.from, LinkText(set, engine, link)});
    });
    for (const FixedUse& fixed : fixedUses) {
        if (fixed.target != target)
            continue;
        if (!fixed.action) {
            uses.push_back({std::nullopt, "the game: " + fixed.what});
            continue;
        }
        std::size_t frames = 0;
        Use use;
        for (const auto& [number, state] : set.states)
            if (state.codePointer == *fixed.action && frames++ == 0)
                use.cell = {RecordKind::State, number, codePointerField};
        use.text = frames == 1
                       ? FrameWithAction(engine, use.cell->index, *fixed.action)
                       : ActionName(engine, *fixed.action) +
                             (frames == 0 ? ", which no frame has" : ", in " + std::to_string(frames) + " frames");
        use.text += ": " + fixed.what;
        uses.push_back(std::move(use));
    }
    return uses;
}

} // namespace plinket3
