#pragma once

#include "patch/PatchSet.h"
#include "ui/LatinText.h"

#include <QString>

#include <cstdint>

namespace plinket3 {

/// A row of a record's table as forms label it.
template <class Record> QString FieldLabel(std::int32_t Record::*member) { return ShownText(FieldOf(member).label); }

/// A state as lists and labels show it: "-" for state 0, else its sprite's name and the letter of its frame.
QString StateLabelText(const PatchSet& set, std::int32_t state);

/// A sound as labels show it: "-" for sound 0, else its name.
QString SoundLabelText(const PatchSet& set, std::int32_t sound);

} // namespace plinket3
