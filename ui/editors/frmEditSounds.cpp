#include "ui/editors/frmEditSounds.h"

#include "ui/NewButton.h"
#include "ui/editors/frmPropSound.h"

#include <QBoxLayout>
#include <QHeaderView>

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

void frmEditSounds::startEditSound(int sound) {
    const std::optional<SoundRecord> edited = dialog_ != nullptr ? dialog_->Edit(sound) : std::nullopt;
    if (!edited)
        return;
    context_.edits.StoreGroup({{{RecordKind::Sound, sound, RowOf(&SoundRecord::value)}, edited->value},
                               {{RecordKind::Sound, sound, RowOf(&SoundRecord::zeroOne)}, edited->zeroOne}},
                              context_.edits.RecordName(RecordKind::Sound, sound));
}

} // namespace plinket3
