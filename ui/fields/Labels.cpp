#include "ui/fields/Labels.h"

#include "ui/fields/FrameForm.h"

namespace plinket3 {

QString StateLabelText(const PatchSet& set, std::int32_t state) {
    const StateRecord* record = set.states.Find(state);
    if (state == 0 || record == nullptr)
        return QStringLiteral("-");
    return ShownText(set.SpriteName(record->sprite)) + FrameText(record->subnumber & ~litBit, FrameForm::Letter);
}

QString SoundLabelText(const PatchSet& set, std::int32_t sound) {
    return sound == 0 ? QStringLiteral("-") : ShownText(set.SoundName(sound));
}

} // namespace plinket3
