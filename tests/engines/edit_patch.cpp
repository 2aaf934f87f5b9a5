#include "core/Files.h"
#include "patch/PatchDocument.h"
#include "tests/support/EveryField.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <random>
#include <string>

using namespace plinket3;

namespace {

/// Changes something that a game engine can still start with.
void EditOne(PatchData& patch, const EngineConfiguration& engine, std::mt19937& random) {
    PatchSet& set = patch.current;
    const auto below = [&random](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    const auto number = static_cast<std::int32_t>(below(200)) + 1;
    const std::size_t thing = below(set.things.DenseSize());
    // Behind the weapons' states, whose actions are not for things.
    const std::size_t firstState = 100, state = firstState + below(set.states.DenseSize() - firstState);
    switch (below(engine.dialect.unlimited ? 10 : 8)) {
    case 0:
        set.things[thing].hitPoints = number;
        break;
    case 1:
        set.things[thing] = patch.defaults.things[thing];
        break;
    case 2:
        set.states[state].duration = number;
        break;
    case 3:
        set.states[state] = patch.defaults.states[state];
        break;
    case 4:
        set.ammo[below(set.ammo.DenseSize())].maxAmmo = number;
        break;
    case 5:
        set.misc.initialHealth = number;
        break;
    case 6:
        set.notes[{RecordKind::Thing, static_cast<std::int32_t>(thing)}] =
            "Thing 5 (a note)\nMass = " + std::to_string(number);
        break;
    case 8:
        WriteCell(set, {RecordKind::State, set.states.FirstFree(), existsField}, 1);
        break;
    case 9:
        for (const auto& [made, state] : set.states)
            if (!patch.defaults.states.Has(made))
                state.duration = number;
        break;
    default:
        if (!engine.dialect.IsExtended())
            return;
        // Texts of the original program are not those of all its successors, but most keys are.
        for (std::size_t i = 0; i < engine.strings.size(); ++i)
            if (engine.strings[i].mnemonic == "GOTARMOR")
                WriteCell(set, {RecordKind::String, static_cast<std::int32_t>(i), textField},
                          "edited " + std::to_string(number));
        set.pars.push_back({0, number % 32 + 1, number});
    }
}

} // namespace

/// edit_patch DATA ENGINE IN OUT SEED: reads IN by engine rules, changes a few values, which SEED chooses, and saves
/// it.
int main(int argc, char** argv) try {
    if (argc != 6) {
        std::cerr << "usage: edit_patch DATA ENGINE IN OUT SEED\n";
        return 2;
    }
    EngineConfiguration engine;
    PatchData patch = test::BuiltEngine(argv[1], argv[2], engine);
    engine.dialect = engine.dialect.AsEngines();
    std::string bytes;
    auto document = std::make_shared<PatchDocument>();
    Status status = ReadWholeFile(argv[3], bytes);
    if (status)
        status = document->Read(bytes, engine, patch.defaults, patch.current).status;
    patch.document = document;
    BytePieces saved;
    if (status)
        status = modPatchFiles::FormatForSaving(patch, engine, saved);
    if (status && saved.Joined() != document->Bytes())
        status = Status::Failure("was not saved as it is");
    std::mt19937 random(static_cast<unsigned>(std::stoul(argv[5])));
    for (int edits = 0; edits < 4; ++edits)
        EditOne(patch, engine, random);
    if (status)
        status = modPatchFiles::FormatForSaving(patch, engine, saved);
    if (status)
        status = WriteFileAtomically(argv[4], saved);
    if (!status)
        std::cerr << argv[3] << ": " << status.Reason() << '\n';
    return status ? 0 : 2;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 2;
}
