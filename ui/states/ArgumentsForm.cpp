#include "ui/states/ArgumentsForm.h"

#include "patch/NewRecords.h"
#include "ui/LatinText.h"

#include <QVBoxLayout>

#include <algorithm>

namespace plinket3 {

namespace {

using Argument = EngineConfiguration::Argument;

QString KindWord(Argument::Kind kind) {
    switch (kind) {
    case Argument::Kind::Unsigned:
        return ArgumentsForm::tr("number from 0");
    case Argument::Kind::Fixed16:
        return ArgumentsForm::tr("fixed point");
    case Argument::Kind::Angle:
    case Argument::Kind::Degrees:
        return ArgumentsForm::tr("degrees");
    case Argument::Kind::Flag:
        return ArgumentsForm::tr("yes or no");
    case Argument::Kind::Thing:
        return ArgumentsForm::tr("thing");
    case Argument::Kind::State:
        return ArgumentsForm::tr("state");
    case Argument::Kind::Sound:
        return ArgumentsForm::tr("sound");
    case Argument::Kind::Bits:
        return ArgumentsForm::tr("bits");
    case Argument::Kind::Bits21:
        return ArgumentsForm::tr("MBF21 bits");
    default:
        return ArgumentsForm::tr("number");
    }
}

} // namespace

ArgumentsForm::ArgumentsForm(std::shared_ptr<const RecordSelection> selection, const EditorContext& context)
    : selection_(std::move(selection)), context_(context), grid_(new QGridLayout) {
    setObjectName(QStringLiteral("framArguments"));
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* form = new QWidget;
    auto* layout = new QVBoxLayout(form);
    layout->setContentsMargins({});
    grid_->setContentsMargins({});
    layout->addLayout(grid_);
    layout->addStretch();
    setWidget(form);
    form->setAutoFillBackground(false); // as the group around it
    viewport()->setAutoFillBackground(false);
}

void ArgumentsForm::Fill() { Build({}); }

void ArgumentsForm::ShowSelection() {
    Update();
    for (ValueRow* row : rows_)
        row->ShowSelection();
}

void ArgumentsForm::Update() {
    if (std::vector<Entry> wanted = Wanted(); wanted != entries_)
        Build(std::move(wanted));
    for (ValueRow* row : rows_)
        row->Update();
}

bool ArgumentsForm::Shows(int field) const {
    return std::ranges::find(entries_, field, &Entry::field) != entries_.end();
}

QSize ArgumentsForm::minimumSizeHint() const {
    return {widget()->minimumSizeHint().width(), fontMetrics().height() * 4};
}

std::vector<ArgumentsForm::Entry> ArgumentsForm::Wanted() const {
    const PatchSet& set = context_.program.patch.current;
    const ArgumentTable table(context_.program.engine);
    std::vector<const StateRecord*> states;
    for (const std::int32_t state : selection_->records)
        if (const StateRecord* record = set.states.Find(state))
            states.push_back(record);
    if (states.empty() || table.Empty() || std::ranges::any_of(states, [&](const StateRecord* state) {
            return state->codePointer != states.front()->codePointer;
        }))
        return {};
    std::vector<Entry> entries;
    for (const StateArgument& argument : table.Of(states.front()->codePointer))
        entries.push_back({*argument.facts, argument.field, true});
    for (std::size_t row = 0; row < fieldTable<StateRecord>.size(); ++row) {
        const Field<StateRecord>& field = fieldTable<StateRecord>[row];
        const int number = static_cast<int>(row);
        const bool isTaken = std::ranges::find(entries, number, &Entry::field) != entries.end();
        if (field.unit == FieldUnit::Argument && !isTaken &&
            std::ranges::any_of(states,
                                [&field](const StateRecord* state) { return ValueOf(*state, field).has_value(); })) {
            const std::string label(field.label);
            entries.push_back({{label, label, Argument::Kind::Number, 0, {}, {}}, number, false});
        }
    }
    return entries;
}

QString ArgumentsForm::Hint(const Entry& entry) const {
    if (!entry.taken)
        return tr("The action takes no such argument: games refuse to start with one that is not 0. Empty the box.");
    QString hint = ShownText(entry.argument.meaning);
    if (!entry.argument.zero.empty())
        hint += QLatin1Char('\n') + tr("0: %1").arg(ShownText(entry.argument.zero));
    return hint + QLatin1Char('\n') + ShownText(entry.argument.field);
}

void ArgumentsForm::Build(std::vector<Entry> entries) {
    for (ValueRow* row : rows_)
        row->Remove();
    rows_.clear();
    entries_ = std::move(entries);
    const auto label = [](const Entry& entry) {
        const QString name = ShownText(entry.argument.name);
        const QString word = entry.taken ? KindWord(entry.argument.kind) : tr("not taken");
        return name == word ? name : tr("%1 (%2)").arg(name, word);
    };
    int width = 0;
    for (const Entry& entry : entries_) {
        const SelectedValue value({selection_, RecordKind::State, entry.field, "frames"}, context_,
                                  std::make_shared<Argument>(entry.argument));
        QString stem = ShownText(entry.argument.field);
        rows_.push_back(
            new ValueRow(stem.remove(QLatin1Char(' ')), label(entry), Hint(entry), value, context_, *grid_, this));
        rows_.back()->ShowSelection();
        width = std::max(width, rows_.back()->LabelWidth());
    }
    for (ValueRow* row : rows_)
        row->LabelWidth(width);
}

} // namespace plinket3
