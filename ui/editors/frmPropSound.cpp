#include "ui/editors/frmPropSound.h"

#include "patch/LumpNames.h"
#include "ui/AcceptButtons.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/fields/LumpNameEdit.h"
#include "ui/fields/NumberBox.h"
#include "ui/lists/SoundsModel.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSlider>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr int highestPriority = 255; // engines' own stay below 128
constexpr int digits = 11;           // room for "leave as is"
constexpr std::int32_t cancelled = -1;

/// The number that all sounds have; absent when they differ.
std::optional<std::int32_t> Common(const std::vector<const SoundRecord*>& sounds, std::int32_t SoundRecord::*member) {
    const std::int32_t first = sounds.front()->*member;
    const bool common =
        std::all_of(sounds.begin(), sounds.end(), [&](const SoundRecord* sound) { return sound->*member == first; });
    return common ? std::optional(first) : std::nullopt;
}

} // namespace

frmPropSound::frmPropSound(const EditorContext& context, QWidget* parent)
    : QDialog(parent), context_(context), name_(new LumpNameEdit(QStringLiteral("txtName"), RecordKind::Sound)),
      nameNote_(new QLabel), priority_(new QSlider(Qt::Horizontal)), priorityNumber_(new QLineEdit),
      singularity_(new QCheckBox(tr("Only &one of these is heard at a time (singularity)"))), reference_(new QLabel),
      note_(new QLabel(tr("This sound has the priority -1, with which nothing is changed. Choose another one."))),
      accept_(NewButton("cmdAccept", tr("OK"))), form_(new QFormLayout(this)) {
    setObjectName(QStringLiteral("frmPropSound"));
    context_.program.log.Add("  Loaded frmPropSound");

    priority_->setObjectName(QStringLiteral("scrlPriority"));
    priority_->setAccessibleName(tr("Priority"));
    priority_->setRange(0, highestPriority);
    priority_->setPageStep(16);
    priority_->setMinimumWidth(priority_->fontMetrics().horizontalAdvance(QString(32, '0')));
    priorityNumber_->setObjectName(QStringLiteral("txtPriority"));
    priorityNumber_->setAccessibleName(tr("Priority"));
    priorityNumber_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    priorityNumber_->setAlignment(Qt::AlignRight);
    priorityNumber_->setFixedWidth(WidthForDigits(*priorityNumber_, digits));
    connect(priorityNumber_, &QLineEdit::textEdited, this, &frmPropSound::TakeTyped);
    connect(priority_, &QSlider::valueChanged, this, [this](int value) {
        edited_.priority = value;
        priorityNumber_->setText(QString::number(value));
    });
    singularity_->setObjectName(QStringLiteral("chkSingularity"));
    connect(singularity_, &QCheckBox::clicked, this, [this] {
        if (singularity_->checkState() == Qt::PartiallyChecked) // a click leads away from "leave as is"
            singularity_->setCheckState(Qt::Checked);
        singularity_->setTristate(false);
        edited_.singularity = singularity_->isChecked() ? 1 : 0;
    });
    reference_->setObjectName(QStringLiteral("lblRefSound"));
    reference_->setTextFormat(Qt::PlainText);

    nameNote_->setObjectName(QStringLiteral("lblNameNote"));
    nameNote_->setTextFormat(Qt::PlainText);
    nameNote_->setWordWrap(true);
    connect(name_, &QLineEdit::textEdited, this, &frmPropSound::TakeName);
    QDialogButtonBox* buttons = AcceptButtons(*this, *accept_);

    auto* priorityRow = new QHBoxLayout;
    priorityRow->addWidget(priority_);
    priorityRow->addWidget(priorityNumber_);
    priorityRow->setStretch(0, 1);
    form_->addRow(tr("&Name"), name_);
    form_->addRow(QString(), nameNote_);
    auto* priorityLabel = new QLabel(tr("&Priority"));
    priorityLabel->setBuddy(priorityNumber_);
    form_->addRow(priorityLabel, priorityRow);
    note_->setWordWrap(true);
    form_->addRow(QString(), note_);
    form_->addRow(QString(), singularity_);
    form_->addRow(tr("Plays instead"), reference_);
    form_->addRow(buttons);
}

std::optional<frmPropSound::Values> frmPropSound::Edit(const std::vector<std::int32_t>& sounds) {
    const PatchSet& current = context_.program.patch.current;
    std::vector<const SoundRecord*> records;
    for (const std::int32_t sound : sounds)
        if (const SoundRecord* record = current.sounds.Find(sound))
            records.push_back(record);
    if (records.empty())
        return std::nullopt;
    setWindowTitle(records.size() == 1
                       ? tr("Sound %1 (%2)").arg(sounds.front()).arg(ShownText(current.SoundName(sounds.front())))
                       : tr("%n sounds", nullptr, static_cast<int>(records.size())));
    SetupData(records);
    SetupName(sounds);
    return exec() == Accepted ? std::optional(edited_) : std::nullopt;
}

/// Chooses nothing, even when a priority is beyond the slider.
void frmPropSound::SetupData(const std::vector<const SoundRecord*>& sounds) {
    edited_ = {};
    const std::optional<std::int32_t> priority = Common(sounds, &SoundRecord::value);
    const QSignalBlocker blocker(priority_);
    priority_->setMaximum(std::max(highestPriority, priority.value_or(0)));
    priority_->setValue(priority.value_or(0));
    priorityNumber_->setText(priority ? QString::number(*priority) : QString());
    priorityNumber_->setPlaceholderText(priority ? QString() : tr("leave as is"));
    priorityNumber_->setFocus();
    priorityNumber_->selectAll();
    note_->setVisible(priority == cancelled);

    const std::optional<std::int32_t> singular = Common(sounds, &SoundRecord::zeroOne);
    singularity_->setTristate(!singular);
    singularity_->setCheckState(!singular ? Qt::PartiallyChecked : *singular == 1 ? Qt::Checked : Qt::Unchecked);
    reference_->setText(sounds.size() == 1 ? ReferenceText(context_.program, *sounds.front()) : QString());
}

/// Several sounds keep their names.
void frmPropSound::SetupName(const std::vector<std::int32_t>& sounds) {
    const Dialect& dialect = context_.program.engine.dialect;
    const PatchData& patch = context_.program.patch;
    form_->setRowVisible(name_, CanRenameLumps(dialect));
    form_->setRowVisible(nameNote_, false);
    name_->setEnabled(sounds.size() == 1 && CanRenameLump(dialect, patch.defaults, RecordKind::Sound, sounds.front()));
    name_->setPlaceholderText(sounds.size() == 1 ? QString() : tr("leave as is"));
    name_->ShowName(sounds.size() == 1 ? patch.current.SoundName(sounds.front()) : std::string());
    accept_->setEnabled(true);
}

void frmPropSound::TakeName() {
    edited_.name = name_->Name();
    const Status status = name_->Check();
    nameNote_->setText(ShownText(status.Reason()));
    form_->setRowVisible(nameNote_, !status);
    accept_->setEnabled(static_cast<bool>(status));
}

/// An emptied box leaves the priorities as they are.
void frmPropSound::TakeTyped() {
    edited_.priority.reset();
    if (priorityNumber_->text().isEmpty())
        return;
    edited_.priority = ReadRangedField(*priorityNumber_, {0, priority_->maximum()});
    const QSignalBlocker blocker(priority_);
    priority_->setValue(*edited_.priority);
}

} // namespace plinket3
