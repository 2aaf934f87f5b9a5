#include "ui/fields/ExtraFields.h"

#include "ui/LatinText.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <climits>
#include <string_view>

namespace plinket3 {

namespace {

/// By `FieldLevel`.
constexpr std::array<std::string_view, 4> levelNames{"", "DEHEXTRA", "MBF21", "ID24"};

/// Beside each other under a group, each as high as its rows.
std::array<QGridLayout*, 2> AddColumns(QGroupBox& group) {
    auto* columns = new QHBoxLayout(&group);
    const std::array made{new QGridLayout, new QGridLayout};
    for (QGridLayout* form : made) {
        if (form == made.back())
            columns->addSpacing(group.fontMetrics().averageCharWidth() * 2);
        auto* column = new QVBoxLayout;
        column->addLayout(form);
        column->addStretch();
        columns->addLayout(column);
    }
    return made;
}

/// A group's columns, with a space between them.
void Direct(QGroupBox& group, bool stacked) {
    auto* columns = static_cast<QBoxLayout*>(group.layout());
    columns->setDirection(stacked ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    columns->setStretch(0, stacked ? 0 : 2);
    columns->setStretch(2, stacked ? 1 : 3);
}

/// A field's label as a group's row shows it: "Pickup sound" is "Sound" under "Pickup".
QString Caption(std::string_view label, const char* group) {
    QString caption = ShownText(label);
    const QString heading = QString::fromLatin1(group) + QLatin1Char(' ');
    if (caption.startsWith(heading)) {
        caption.remove(0, heading.size());
        caption[0] = caption[0].toUpper();
    }
    return caption;
}

/// How many rows stand under one heading from `rows` on.
std::size_t GroupSize(std::span<const ExtraField> rows) {
    const auto next = std::ranges::find_if(rows.subspan(1), [](const ExtraField& row) { return row.group != nullptr; });
    return static_cast<std::size_t>(next - rows.subspan(1).begin()) + 1;
}

} // namespace

ExtraFields::ExtraFields(std::span<const ExtraField> rows, const char* words,
                         const std::function<SelectedField(int row)>& field, const EditorContext& context,
                         QObject* owner)
    : QObject(owner), context_(context) {
    while (!rows.empty()) {
        auto* group = new QGroupBox(QCoreApplication::translate(words, rows.front().group));
        group->setObjectName(QString::fromLatin1(rows.front().group));
        groups_.push_back(group);
        const auto columns = AddColumns(*group);
        Direct(*group, false);
        const std::size_t size = GroupSize(rows);
        for (std::size_t i = 0; i < size; ++i) {
            const SelectedValue value(field(rows[i].row), context);
            const TextField* text = TextFieldAt(value.Field());
            const RowFacts facts = text == nullptr ? FactsOf(value.Kind(), value.Field()) : RowFacts{};
            const FieldLevel since = text == nullptr ? facts.since : text->since;
            auto* row = new ValueRow(QString::fromLatin1(rows[i].stem),
                                     Caption(text == nullptr ? facts.label : text->label, rows.front().group),
                                     QCoreApplication::translate(words, rows[i].hint), value, context,
                                     *columns[i < (size + 1) / 2 ? 0 : 1], this);
            rows_.push_back({row, since, group});
        }
        rows = rows.subspan(size);
    }
}

void ExtraFields::Stack(bool stacked) {
    for (QGroupBox* group : groups_) {
        Direct(*group, stacked);
        int width = 0; // so that the boxes of both columns line up
        for (const Row& each : rows_)
            if (each.group == group && stacked)
                width = std::max(width, each.row->LabelWidth());
        for (const Row& each : rows_)
            if (each.group == group)
                each.row->LabelWidth(width);
    }
}

int ExtraFields::StackedWidth() const {
    int width = 0;
    for (const QGroupBox* group : groups_) {
        group->layout()->activate(); // those of hidden pages still know the widths of another engine's fields
        int shortest = INT_MAX, longest = 0;
        for (const Row& each : rows_)
            if (each.group == group) {
                shortest = std::min(shortest, each.row->LabelWidth());
                longest = std::max(longest, each.row->LabelWidth());
            }
        const QMargins margins = group->layout()->contentsMargins();
        for (const int column : {0, 2})
            width = std::max(width, group->layout()->itemAt(column)->sizeHint().width() + margins.left() +
                                        margins.right() + longest - shortest);
    }
    return width;
}

void ExtraFields::Reload() {
    const FieldLevel level = context_.program.engine.dialect.fields;
    for (QGroupBox* group : groups_) {
        auto newest = FieldLevel::Doom;
        for (const Row& each : rows_)
            if (each.group == group && each.since <= level)
                newest = std::max(newest, each.since);
        group->setVisible(newest != FieldLevel::Doom);
        if (group->objectName().isEmpty())
            group->setTitle(ShownText(levelNames[static_cast<std::size_t>(newest)]));
    }
    for (const Row& each : rows_) {
        each.row->Reload();
        each.row->SetVisible(each.since <= level);
    }
}

void ExtraFields::ShowSelection() {
    for (const Row& each : rows_)
        each.row->ShowSelection();
}

void ExtraFields::Update() {
    for (const Row& each : rows_)
        each.row->Update();
}

} // namespace plinket3
