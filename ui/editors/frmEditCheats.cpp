#include "ui/editors/frmEditCheats.h"

#include "patch/TextReplace.h"
#include "ui/LatinText.h"
#include "ui/NewButton.h"
#include "ui/fields/FieldBox.h"
#include "ui/fields/Marking.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr int fewestCharacters = 14, mostCharacters = 28; // that a box has room for
constexpr int noLimit = 32767;                            // characters; what a line edit takes without being told
constexpr std::size_t firstColumn = 9;

// By cheat.
constexpr std::array<const char*, cheatLabels.size()> boxNames{
    "txtChangeMus", "txtChainsaw", "txtGodMode", "txtAmmokeys", "txtAmmo",    "txtNoClip1",
    "txtNoClip2",   "txtInvinc",   "txtBerserk", "txtInvis",    "txtRadSuit", "txtAutomap",
    "txtGoggles",   "txtBehold",   "txtWarp",    "txtPosition", "txtMap"};

Cell CellOf(std::size_t cheat) { return {RecordKind::Cheat, static_cast<std::int32_t>(cheat), textField}; }

class CheatEdit : public FieldBox {
public:
    CheatEdit(std::size_t cheat, const QString& label, const EditorContext& context)
        : FieldBox(QString::fromLatin1(boxNames[cheat]), label, context), cell_(CellOf(cheat)) {
        setAlignment(Qt::AlignLeft);
    }

protected:
    void AddRestore(QMenu& menu) override {
        const QString standard = ShownStart(std::get<std::string>(edits_.DefaultValue(cell_)));
        AddRestoreEntry(menu, tr("Restore default (%1)").arg(standard), !edits_.IsDefault(cell_),
                        [this] { edits_.RestoreCell(cell_); });
    }

private:
    Cell cell_;
};

} // namespace

frmEditCheats::frmEditCheats(const EditorContext& context)
    : EditorWindow("frmEditCheats", tr("Cheat editor"), context) {}

void frmEditCheats::Build() {
    auto* group = new QGroupBox(tr("Cheat codes"));
    auto* columns = new QHBoxLayout(group);
    QFormLayout* form = nullptr;
    for (std::size_t cheat = 0; cheat < boxes_.size(); ++cheat) {
        if (cheat % firstColumn == 0) {
            form = new QFormLayout;
            columns->addLayout(form);
        }
        const QString label = ShownText(cheatLabels[cheat]);
        boxes_[cheat] = new CheatEdit(cheat, label, context_);
        boxes_[cheat]->setMinimumWidth(WidthForDigits(*boxes_[cheat], fewestCharacters));
        boxes_[cheat]->setMaximumWidth(WidthForDigits(*boxes_[cheat], mostCharacters));
        form->addRow(QString(label).replace(QLatin1Char('&'), QStringLiteral("&&")), boxes_[cheat]);
        connect(boxes_[cheat], &QLineEdit::textEdited, this, [this, cheat] { Store(cheat); });
    }
    auto* cmdRestoreAll = NewButton("cmdRestoreAll", tr("&Restore all"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(group);
    layout->addStretch();
    layout->addWidget(cmdRestoreAll, 0, Qt::AlignRight);
    setFocusProxy(boxes_.front());
    connect(cmdRestoreAll, &QPushButton::clicked, this, &frmEditCheats::RestoreAll);
}

void frmEditCheats::fillStaticData() {
    for (std::size_t cheat = 0; cheat < boxes_.size(); ++cheat) {
        const bool exists = cheat < Current().cheats.size();
        boxes_[cheat]->setEnabled(exists);
        if (!exists)
            continue;
        const CheatRecord& record = Current().cheats[cheat];
        const int limit = RoomFor(context_.program, CellOf(cheat)).value_or(noLimit);
        // A text that a patch brought along is never cut off by being shown.
        boxes_[cheat]->setMaxLength(std::max(limit, std::min(noLimit, static_cast<int>(record.text.size()))));
    }
}

void frmEditCheats::updateForm() {
    for (std::size_t cheat = 0; cheat < boxes_.size(); ++cheat) {
        boxes_[cheat]->clear(); // not what is being typed: another patch
        Update(cheat);
    }
}

void frmEditCheats::Update(std::size_t cheat) {
    if (cheat >= Current().cheats.size())
        return;
    const std::string& stored = Current().cheats[cheat].text;
    const bool whole = stored.size() <= static_cast<std::size_t>(noLimit);
    const QString text = whole ? ShownText(stored) : ShownStart(stored);
    boxes_[cheat]->setReadOnly(!whole); // what is not shown is not lost by typing
    if (boxes_[cheat]->text() != text)
        boxes_[cheat]->setText(text);
    if (!whole)
        boxes_[cheat]->home(false);
    const Cell cell = CellOf(cheat);
    MarkDifference(*boxes_[cheat], !context_.edits.IsDefault(cell),
                   ShownStart(std::get<std::string>(context_.edits.DefaultValue(cell))));
}

void frmEditCheats::ShowCells(const std::vector<Cell>& cells) {
    for (const Cell& cell : cells)
        if (cell.kind == RecordKind::Cheat && static_cast<std::size_t>(cell.index) < boxes_.size())
            Update(static_cast<std::size_t>(cell.index));
}

std::optional<std::int32_t> frmEditCheats::CurrentRecord() const {
    const auto box = std::ranges::find(boxes_, focusWidget());
    return box == boxes_.end() ? std::nullopt : std::optional(static_cast<std::int32_t>(box - boxes_.begin()));
}

bool frmEditCheats::SelectRecord(std::int32_t cheat) {
    if (!HasRecord(Current(), RecordKind::Cheat, cheat) || static_cast<std::size_t>(cheat) >= boxes_.size())
        return false;
    boxes_[static_cast<std::size_t>(cheat)]->setFocus();
    return true;
}

void frmEditCheats::Store(std::size_t cheat) {
    const QString text = boxes_[cheat]->text();
    if (context_.program.engine.dialect.EngineRules() && text != text.trimmed())
        context_.links.ShowStatus(tr("A cheat with blanks at its ends cannot be saved: games would not read them."));
    context_.edits.Store(CellOf(cheat), StoredText(text), true);
}

void frmEditCheats::RestoreAll() {
    if (context_.program.notifier.Ask("Are you sure you want to restore ALL cheat strings?", Buttons::YesNo) ==
        Answer::No)
        return;
    std::vector<Cell> cells;
    for (std::size_t cheat = 0; cheat < Current().cheats.size(); ++cheat)
        cells.push_back(CellOf(cheat));
    context_.edits.Restore(cells, "restore all cheats");
}

} // namespace plinket3
