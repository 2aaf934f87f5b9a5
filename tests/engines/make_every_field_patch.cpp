#include "core/Files.h"
#include "patch/modPatchFiles.h"
#include "tests/support/EveryField.h"

#include <exception>
#include <iostream>
#include <string>

using namespace plinket3;

namespace {

/// Texts that an engine starts without: names of lumps and formats of messages have to stay.
bool IsProse(const std::string& text) {
    return text.find(' ') != std::string::npos && text.find_first_of("%\r") == std::string::npos;
}

} // namespace

/// make_every_field_patch DATA ENGINE OUT: writes a patch that changes every field that ENGINE has, to values with
/// which a game engine can still start.
int main(int argc, char** argv) try {
    if (argc != 4) {
        std::cerr << "usage: make_every_field_patch DATA ENGINE OUT\n";
        return 2;
    }
    EngineConfiguration engine;
    PatchData patch = test::BuiltEngine(argv[1], argv[2], engine);
    const FieldLevel level = engine.dialect.fields;
    test::ChangeEveryNumber(patch.current, level, test::UsableValue(patch.defaults));
    test::ChangeEveryCodePointer(patch.current, engine);
    if (level >= FieldLevel::Mbf21) {
        constexpr std::size_t firstFreeState = 1100;
        test::UseEveryAction(patch.current, engine, firstFreeState);
        test::GiveEveryArgument(patch.current, engine);
        for (const auto& [number, state] : patch.current.states) // the one bit there is
            state.bits21 = patch.defaults.states[number].bits21 ^ 1;
        for (const auto& [number, weapon] : patch.current.weapons)
            weapon.bits21 = patch.defaults.weapons[number].bits21 ^ 2;
    }
    if (engine.dialect.unlimited)
        test::MakeRecords(patch.current, engine);
    // By engine rules texts of several lines go on in further ones, of some lengths of which dsda-doom 0.25.6 writes
    // behind its memory.
    test::ChangeEveryText(patch.current, engine, [&engine](const std::string& text) {
        return IsProse(text) && !(engine.dialect.EngineRules() && text.find('\n') != std::string::npos);
    });
    // Kept: sounds are written under the number after theirs, and after the last one there is none.
    // docs/kept-behaviour.md
    if (!engine.dialect.EngineRules())
        patch.current.sounds.back() = patch.defaults.sounds.back();
    patch.current.pars = {{0, 1, 31}, {0, 32, 62}, {1, 1, 93}, {3, 9, 124}};
    const Status written = WriteFileAtomically(argv[3], modPatchFiles::FormatPatch(patch, engine));
    if (!written)
        std::cerr << argv[3] << ": " << written.Reason() << '\n';
    return written ? 0 : 2;
} catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 2;
}
