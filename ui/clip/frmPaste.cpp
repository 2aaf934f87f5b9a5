#include "ui/clip/frmPaste.h"

#include "patch/StepNames.h"
#include "ui/AcceptButtons.h"
#include "ui/LatinText.h"

#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace plinket3 {

namespace {

QRadioButton* NewRadioButton(const char* name, const QString& text, const QString& tip) {
    auto* button = new QRadioButton(text);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(tip);
    return button;
}

} // namespace

QString PlanNotes(const PastePlan& plan, const std::vector<std::string>& ignored) {
    const struct {
        QString heading;
        const std::vector<std::string>& lines;
    } parts[]{{frmPaste::tr("What is lost:"), plan.lost},
              {frmPaste::tr("Good to know:"), plan.told},
              {frmPaste::tr("Lines of the text that are not pasted:"), ignored}};
    QStringList text;
    for (const auto& part : parts) {
        if (part.lines.empty())
            continue;
        text << part.heading;
        for (const std::string& line : part.lines)
            text << QStringLiteral("  ") + ShownStart(line);
    }
    return text.join(QLatin1Char('\n'));
}

frmPaste::frmPaste(const Clip& clip, const Session& open, QWidget* parent)
    : QDialog(parent), clip_(clip), open_(open),
      optFree_(NewRadioButton("optFree", tr("At &free numbers"),
                              tr("Things and states go where nothing is in use. What they refer to of each other is "
                                 "put right."))),
      optSame_(NewRadioButton("optSame", tr("At the &same numbers"),
                              tr("Everything goes over what has its number here, just what the text says of it."))),
      places_(new QTreeWidget), lblNote_(new QLabel), txtTold_(new QPlainTextEdit),
      accept_(NewButton("cmdAccept", tr("&Paste"))) {
    setObjectName(QStringLiteral("frmPaste"));
    setWindowTitle(tr("Paste"));
    auto* from = new QLabel(tr("From a patch for %1").arg(ShownStart(clip.engine.name)));
    from->setTextFormat(Qt::PlainText);
    optFree_->setChecked(true);
    places_->setObjectName(QStringLiteral("lvwPlaces"));
    places_->setAccessibleName(tr("Where the records go"));
    places_->setHeaderLabels({tr("Record"), tr("From"), tr("To"), tr("In place of")});
    places_->setRootIsDecorated(false);
    places_->setUniformRowHeights(true);
    places_->setAllColumnsShowFocus(true);
    lblNote_->setObjectName(QStringLiteral("lblNote"));
    lblNote_->setTextFormat(Qt::PlainText);
    lblNote_->setWordWrap(true);
    txtTold_->setObjectName(QStringLiteral("txtTold"));
    txtTold_->setAccessibleName(tr("What is lost, and what is good to know"));
    txtTold_->setReadOnly(true);
    txtTold_->setTabChangesFocus(true);
    QDialogButtonBox* buttons = AcceptButtons(*this, *accept_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(from);
    layout->addWidget(optFree_);
    layout->addWidget(optSame_);
    layout->addWidget(places_, 1);
    layout->addWidget(lblNote_);
    layout->addWidget(txtTold_);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 88, fontMetrics().height() * 32);
    connect(optFree_, &QRadioButton::toggled, this, &frmPaste::Plan);
    Plan();
    accept_->setFocus();
}

void frmPaste::Plan() {
    plan_ = PastePlan();
    const Status status = PlanPaste(clip_, open_, optFree_->isChecked() ? PasteTo::Free : PasteTo::Same, {}, plan_);
    const PatchSet &from = clip_.patch.current, &here = open_.patch.current;
    const auto number = [](RecordKind kind, std::int32_t index) { return QString::number(PatchNumber(kind, index)); };
    QList<QTreeWidgetItem*> rows;
    for (const PastePlan::Place& place : plan_.places) {
        const auto [kind, index] = place.from;
        if (kind == RecordKind::Misc) { // of which there is one, everywhere
            rows.append(new QTreeWidgetItem({tr("Misc.")}));
            continue;
        }
        const bool there = HasRecord(here, kind, place.to);
        rows.append(
            new QTreeWidgetItem({ShownStart(RecordName(from, kind, index)), number(kind, index), number(kind, place.to),
                                 place.isThere ? tr("is there already")
                                 : there       ? ShownStart(RecordName(here, kind, place.to))
                                               : tr("new")}));
    }
    places_->clear();
    places_->addTopLevelItems(rows);
    for (int column = 0; column < places_->columnCount(); ++column)
        places_->resizeColumnToContents(column);
    const bool changes = !plan_.assignments.empty();
    QString note = ShownText(status.Reason());
    if (!status && optFree_->isChecked())
        note += QLatin1Char(' ') + tr("Paste at the same numbers, or copy fewer records (Copy with...).");
    lblNote_->setText(status && !changes ? tr("The patch has all of this already.") : note);
    lblNote_->setVisible(!lblNote_->text().isEmpty());
    const QString notes = PlanNotes(plan_, clip_.ignored);
    txtTold_->setPlainText(notes);
    txtTold_->setVisible(!notes.isEmpty());
    constexpr qsizetype mostLines = 7;
    const auto lines = static_cast<int>(std::min(notes.count(QLatin1Char('\n')) + 1, mostLines));
    txtTold_->setFixedHeight(fontMetrics().lineSpacing() * (lines + 1));
    accept_->setEnabled(status && changes);
}

std::optional<PastePlan> frmPaste::Ask() { return exec() == Accepted ? std::optional(plan_) : std::nullopt; }

} // namespace plinket3
