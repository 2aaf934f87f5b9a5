#pragma once

#include "patch/Links.h"
#include "patch/Program.h"
#include "patch/modPatchFiles.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3 {

// Records that go from one place or patch to another, as a patch's text.

/// A record that could go along with others that are copied.
struct Companion {
    RecordId record;
    std::optional<std::size_t> parent; // the place in the list of what comes to it first; absent for what is copied
    Link why;                          // how that one comes to it
    bool differs = false;              // it is another one elsewhere: a state, or what the patch has made or changed
    bool proposed = false;             // it differs, and what comes to it is copied or proposed
};
/// What is copied (`records`, those that there are), and behind it all that its values lead to: states, things, sounds,
/// sprites and strings, each once. State 0 and the state that ends a flash are every engine's own and stay.
std::vector<Companion> CompanionsOf(const PatchData& patch, const EngineConfiguration& engine,
                                    const std::vector<RecordId>& records);
/// "Far attack frame of Imp", "thing of frame 454": how one record comes to another.
std::string WhyText(const PatchSet& set, const Link& link);
/// "Imp with 33 frames and 1 thing", "3 frames": the first ones, which are all of one kind, and what goes with them.
std::string ClipName(const PatchSet& set, const std::vector<RecordId>& subjects, const std::set<RecordId>& records);

/// The records of a text, read.
struct Clip {
    EngineConfiguration engine; // by whose rules it was read
    PatchData patch;            // that engine's own data, and what the text says
    std::set<RecordId> records;
    std::vector<Cell> said;           // the values that it gives, in order
    std::vector<std::string> ignored; // lines that say nothing, as "line 3: \"...\" is ...", the first of many
};
inline constexpr std::size_t mostClipRecords = 20000;

/// Reads a clip, or any text in a patch's form, by engine rules. Its engine is the one that it names or was made for;
/// that of `open` for a text that says nothing of it. Fails, for the user, when it holds no record or more than
/// `mostClipRecords`.
Status ReadClip(const Environment& environment, const Session& open, std::string_view text, Clip& clip);

/// What a clip is called after: its things, else its weapons, those to which none of its other records leads; without
/// any, all records of its first kind.
std::vector<RecordId> SubjectsOf(const Clip& clip);

} // namespace plinket3
