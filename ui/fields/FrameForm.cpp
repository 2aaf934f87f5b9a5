#include "ui/fields/FrameForm.h"

#include <algorithm>

namespace plinket3 {

namespace {

constexpr std::int32_t firstLetter = 'A';

} // namespace

FrameForm FrameFormOf(const Settings& settings) {
    return settings.Number("frameCharacter") == 0 ? FrameForm::Number : FrameForm::Letter;
}

QString FrameText(std::int32_t frame, FrameForm form) {
    if (form == FrameForm::Number)
        return QString::number(frame);
    return QString(QChar(static_cast<char16_t>((firstLetter + frame) & 0xff)));
}

std::int32_t FrameOfLetter(const QString& text) {
    if (text.isEmpty())
        return 0;
    return std::clamp<std::int32_t>(text.toUpper().at(0).unicode() - firstLetter, 0, lastFrame);
}

} // namespace plinket3
