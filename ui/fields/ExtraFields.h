#pragma once

#include "ui/fields/SelectedField.h"
#include "ui/fields/ValueRow.h"

#include <QBoxLayout>
#include <QGroupBox>

#include <functional>
#include <span>
#include <vector>

namespace plinket3 {

/// A field that some engines have. The kind of its box follows from what it means.
struct ExtraField {
    const char* group; // its heading, or empty for one after the engines that have such fields; null to go on
    const char* stem;  // of the names of its controls
    int row;           // of the kind's table, or a text field
    const char* hint;
};

/// Groups of fields that only some engines have, made from rows in two columns. What the engine of the open patch does
/// not know is hidden.
class ExtraFields : public QObject {
    Q_OBJECT
public:
    /// `field` gives a row of the kind's table for its box. Hints and headings are translated in the context `words`.
    ExtraFields(std::span<const ExtraField> rows, const char* words, const std::function<SelectedField(int row)>& field,
                const EditorContext& context, QObject* owner);

    /// The boxes of the groups, for a layout.
    const std::vector<QGroupBox*>& Groups() const { return groups_; }
    /// Puts the two columns of each group under each other, or beside each other again.
    void Stack(bool stacked);
    /// What the groups take that way.
    int StackedWidth() const;
    /// The engine may be another one now.
    void Reload();
    void ShowSelection();
    void Update();

private:
    struct Row {
        ValueRow* row;
        FieldLevel since;
        QGroupBox* group;
    };

    EditorContext context_;
    std::vector<QGroupBox*> groups_; // those without a heading have an empty object name
    std::vector<Row> rows_;
};

} // namespace plinket3
