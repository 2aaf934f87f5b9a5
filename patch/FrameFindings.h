#pragma once

#include "core/modConfig.h"
#include "patch/Cells.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace plinket3::modPatchCheck {

/// The place of the line of a patch that has set a cell last; null when none has.
using LineOfCell = std::function<const std::size_t*(const Cell& cell)>;
/// Whether there is a picture of a sprite's frame, which counts from 0.
using HasPicture = std::function<bool(std::string_view sprite, int frame)>;

/// How bad a finding is, the worst first.
enum class Severity : std::uint8_t {
    Refused, // a game refuses the patch, crashes or hangs, or writes into other memory
    Wrong,   // it does nothing, or something else than it says
    Odd,     // it works where the patch was made for, but stands out or is not kept
};

/// A finding about the line at `offset`; `reason` ends the sentence that the line begins.
struct FrameFinding {
    std::size_t offset = 0;
    std::string reason;
    Severity severity = Severity::Wrong;
};

/// What goes wrong in the game with how the frames of a patch follow each other: things that begin in a frame of 0
/// tics, circles of such frames and, where `hasPicture` tells of pictures, frames that a thing or weapon comes to and
/// that have none. Only what a line of the patch has brought about.
std::vector<FrameFinding> FindingsOfFrames(const PatchSet& set, const EngineConfiguration& engine,
                                           const LineOfCell& lineOf, const HasPicture& hasPicture);

} // namespace plinket3::modPatchCheck
