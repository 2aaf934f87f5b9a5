#include "ui/editors/frmPropSound.h"

#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/lists/SoundsModel.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr int highestPriority = 255; // engines' own stay below 128
constexpr std::int32_t cancelled = -1;

} // namespace

frmPropSound::frmPropSound(const EditorContext& context, QWidget* parent)
    : QDialog(parent), context_(context), priority_(new QSlider(Qt::Horizontal)), priorityNumber_(new QLabel),
      singularity_(new QCheckBox(tr("Only &one of these is heard at a time (singularity)"))), reference_(new QLabel),
      note_(new QLabel(tr("This sound has the priority -1, with which nothing is changed. Choose another one."))) {
    setObjectName(QStringLiteral("frmPropSound"));
    context_.program.log.Add("  Loaded frmPropSound");

    priority_->setObjectName(QStringLiteral("scrlPriority"));
    priority_->setAccessibleName(tr("Priority"));
    priority_->setRange(0, highestPriority);
    priority_->setPageStep(16);
    priority_->setMinimumWidth(priority_->fontMetrics().horizontalAdvance(QString(32, '0')));
    priorityNumber_->setObjectName(QStringLiteral("lblPriorityN"));
    priorityNumber_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    priorityNumber_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    priorityNumber_->setMinimumWidth(priorityNumber_->fontMetrics().horizontalAdvance(QStringLiteral("00000")));
    connect(priority_, &QSlider::valueChanged, this, [this](int value) {
        edited_.value = value;
        priorityNumber_->setText(QString::number(value));
    });
    singularity_->setObjectName(QStringLiteral("chkSingularity"));
    connect(singularity_, &QCheckBox::clicked, this, [this](bool checked) { edited_.zeroOne = checked ? 1 : 0; });
    reference_->setObjectName(QStringLiteral("lblRefSound"));
    reference_->setTextFormat(Qt::PlainText);

    auto* accept = NewButton("cmdAccept", tr("OK"));
    accept->setDefault(true);
    connect(accept, &QPushButton::clicked, this, &QDialog::accept);
    auto* cancel = NewButton("cmdCancel", tr("Cancel"));
    connect(cancel, &QPushButton::clicked, this, &frmPropSound::reject);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(accept, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);

    auto* priorityRow = new QHBoxLayout;
    priorityRow->addWidget(priority_);
    priorityRow->addWidget(priorityNumber_);
    auto* form = new QFormLayout(this);
    auto* priorityLabel = new QLabel(tr("&Priority"));
    priorityLabel->setBuddy(priority_);
    form->addRow(priorityLabel, priorityRow);
    note_->setWordWrap(true);
    form->addRow(QString(), note_);
    form->addRow(QString(), singularity_);
    form->addRow(tr("Plays instead"), reference_);
    form->addRow(buttons);
}

std::optional<SoundRecord> frmPropSound::Edit(int sound) {
    const PatchSet& current = context_.program.patch.current;
    if (sound < 0 || static_cast<std::size_t>(sound) >= current.sounds.size())
        return std::nullopt;
    edited_ = current.sounds[static_cast<std::size_t>(sound)];
    setWindowTitle(tr("Sound %1 (%2)").arg(sound).arg(ShownText(current.SoundName(sound))));
    SetupData();
    exec();
    // Kept: the priority tells whether the dialog was cancelled, so -1 is never given. docs/kept-behaviour.md
    return edited_.value == cancelled ? std::nullopt : std::optional(edited_);
}

void frmPropSound::reject() {
    edited_.value = cancelled;
    QDialog::reject();
}

/// Changes nothing of the record, even when its priority is below the slider.
void frmPropSound::SetupData() {
    const QSignalBlocker blocker(priority_);
    priority_->setMaximum(std::max(highestPriority, edited_.value));
    priority_->setValue(edited_.value);
    priority_->setFocus();
    note_->setVisible(edited_.value == cancelled);
    priorityNumber_->setText(QString::number(edited_.value));
    singularity_->setChecked(edited_.zeroOne == 1);
    reference_->setText(ReferenceText(context_.program, edited_));
}

} // namespace plinket3
