#include "ui/frmGoTo.h"

#include "patch/StepNames.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <array>

namespace plinket3 {

namespace {

/// By `RecordKind`; %1 is the range of numbers.
constexpr std::array prompts{QT_TRANSLATE_NOOP("frmGoTo", "&Thing number (%1) or name"),
                             QT_TRANSLATE_NOOP("frmGoTo", "&State number (%1), sprite or action"),
                             QT_TRANSLATE_NOOP("frmGoTo", "&Sound number (%1) or name"),
                             QT_TRANSLATE_NOOP("frmGoTo", "&Sprite number (%1) or name"),
                             QT_TRANSLATE_NOOP("frmGoTo", "&String number (%1), key or text"),
                             QT_TRANSLATE_NOOP("frmGoTo", "&Weapon number (%1) or name"),
                             QT_TRANSLATE_NOOP("frmGoTo", "&Ammo number (%1) or name"),
                             QT_TRANSLATE_NOOP("frmGoTo", "&Cheat, by its name or text"),
                             QT_TRANSLATE_NOOP("frmGoTo", "&Value, by its name"),
                             QT_TRANSLATE_NOOP("frmGoTo", "&Level, as MAP01 or E1M1")};

} // namespace

frmGoTo::frmGoTo(const Session& session, RecordKind kind, QWidget* parent)
    : QDialog(parent), session_(session), kind_(kind), text_(new QLineEdit), note_(new QLabel),
      accept_(NewButton("cmdAccept", tr("&Go"))) {
    setObjectName(QStringLiteral("frmGoTo"));
    setWindowTitle(tr("Go to"));
    const QString prompt = Prompt();
    auto* label = new QLabel(prompt);
    label->setObjectName(QStringLiteral("lblPrompt"));
    label->setBuddy(text_);
    text_->setObjectName(QStringLiteral("txtGoTo"));
    text_->setAccessibleName(QString(prompt).remove(QLatin1Char('&')));
    connect(text_, &QLineEdit::textChanged, this, &frmGoTo::Check);
    note_->setObjectName(QStringLiteral("lblNote"));
    note_->setTextFormat(Qt::PlainText);
    note_->setMinimumWidth(fontMetrics().averageCharWidth() * 48);
    accept_->setDefault(true);
    connect(accept_, &QPushButton::clicked, this, &QDialog::accept);
    auto* cancel = NewButton("cmdCancel", tr("Cancel"));
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(accept_, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(text_);
    layout->addWidget(note_);
    layout->addWidget(buttons);
    Check();
}

/// Records beyond the engine's own table may have any numbers: of these it says only how many there are.
QString frmGoTo::Prompt() const {
    QString range;
    VisitKind(kind_, [&](const auto& list) {
        const auto& records = list.In(session_.patch.current);
        const auto last = static_cast<std::int32_t>(records.DenseSize()) - 1;
        range = tr("%1 to %2").arg(PatchNumber(kind_, 0)).arg(PatchNumber(kind_, last));
        if (const std::size_t others = records.size() - records.DenseSize(); others > 0)
            range += tr(" and %1 more").arg(static_cast<qulonglong>(others));
    });
    const QString prompt = tr(prompts[static_cast<std::size_t>(kind_)]);
    return prompt.contains(QLatin1String("%1")) ? prompt.arg(range) : prompt;
}

void frmGoTo::Check() {
    found_ = FindRecord(session_, kind_, StoredText(text_->text()));
    accept_->setEnabled(found_.has_value());
    const bool empty = text_->text().trimmed().isEmpty();
    note_->setText(found_ ? ShownStart(found_->title) : empty ? QString() : tr("There is none."));
}

std::optional<Cell> frmGoTo::Choose() {
    return exec() == Accepted && found_ ? std::optional(found_->cell) : std::nullopt;
}

} // namespace plinket3
