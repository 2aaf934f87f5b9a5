#pragma once

#include "patch/Program.h"

#include <QString>

#include <cstdint>

namespace plinket3 {

/// How frame indices of sprites stand in boxes: as numbers, or as the letters that sprite lumps have.
enum class FrameForm { Number, Letter };

inline constexpr std::int32_t lastFrame = 31;

/// The user's choice.
FrameForm FrameFormOf(const Settings& settings);
/// "3" or "D".
QString FrameText(std::int32_t frame, FrameForm form);
/// The index that the first character of `text` stands for in the letter form, limited to 0..31; 0 for an empty text.
std::int32_t FrameOfLetter(const QString& text);

} // namespace plinket3
