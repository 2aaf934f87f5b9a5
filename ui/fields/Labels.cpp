#include "ui/fields/Labels.h"

#include "ui/fields/FrameForm.h"

namespace plinket3 {

QString StateLabelText(const PatchSet& set, std::int32_t state) {
    if (state <= 0 || static_cast<std::size_t>(state) >= set.states.size())
        return QStringLiteral("-");
    const StateRecord& record = set.states[static_cast<std::size_t>(state)];
    return ShownText(set.SpriteName(record.sprite)) + FrameText(record.subnumber & ~litBit, FrameForm::Letter);
}

QString SoundLabelText(const PatchSet& set, std::int32_t sound) {
    return sound == 0 ? QStringLiteral("-") : ShownText(set.SoundName(sound));
}

} // namespace plinket3
