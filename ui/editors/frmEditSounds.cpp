#include "ui/editors/frmEditSounds.h"

#include "patch/NewRecords.h"
#include "ui/NewButton.h"
#include "ui/editors/frmPropSound.h"

#include <QBoxLayout>
#include <QHeaderView>

#include <algorithm>

namespace plinket3 {

frmEditSounds::frmEditSounds(const EditorContext& context)
    : RecordTableEditor("frmEditSounds", tr("Sound editor"), context, RecordKind::Sound, model_,
                        {.list = "lvwSounds",
                         .many = "sounds",
                         .restoreOne = "Are you sure you want to restore this sound?",
                         .restoreMany = "Are you sure you want to restore these sounds?"}),
      model_(context) {}

void frmEditSounds::SizeColumns() {
    constexpr int characters[]{6, 12, 11, 6, 6, 11, 7, 7};
    List().header()->setStretchLastSection(false);
    for (int column = 0; const int width : characters)
        List().setColumnWidth(column++, fontMetrics().horizontalAdvance(QString(width, '0')));
    connect(&List(), &RecordList::RightPressed, this, [this](int sound) { context_.links.PlaySoundLump(sound); });
}

void frmEditSounds::AddButtons(QBoxLayout& buttons) {
    auto* play = NewButton("cmdPlay", tr("&Play"));
    play->setToolTip(tr("Hear the selected sound, as by a right click on it"));
    connect(play, &QPushButton::clicked, this, [this] {
        if (const std::optional<int> sound = SelectedRow())
            context_.links.PlaySoundLump(*sound);
    });
    buttons.addWidget(play);
}

/// The selected sounds, when the one that was chosen is among them.
void frmEditSounds::EditRecord(int record) {
    std::vector<std::int32_t> sounds = List().SelectedRecords();
    if (std::find(sounds.begin(), sounds.end(), record) == sounds.end())
        sounds = {record};
    startEditSound(sounds);
}

void frmEditSounds::startEditSound(const std::vector<std::int32_t>& sounds) {
    const auto edited = dialog_ != nullptr ? dialog_->Edit(sounds) : std::nullopt;
    if (!edited)
        return;
    std::vector<Assignment> values;
    std::vector<std::int32_t> changed;
    for (const std::int32_t sound : sounds) {
        const SoundRecord record = *RecordOrNew(Current().sounds, sound);
        const std::int32_t priority = edited->priority.value_or(record.value);
        if (priority == -1)
            continue; // Kept: a sound that has this priority counts as cancelled. docs/kept-behaviour.md
        values.push_back({{RecordKind::Sound, sound, RowOf(&SoundRecord::value)}, priority});
        values.push_back(
            {{RecordKind::Sound, sound, RowOf(&SoundRecord::zeroOne)}, edited->singularity.value_or(record.zeroOne)});
        if (edited->name)
            values.push_back({{RecordKind::Sound, sound, lumpNameField}, *edited->name});
        changed.push_back(sound);
    }
    if (!changed.empty())
        context_.edits.StoreGroup(values, context_.edits.RecordsName(RecordKind::Sound, changed, "sounds"));
}

} // namespace plinket3
