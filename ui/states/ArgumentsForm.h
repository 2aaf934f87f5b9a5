#pragma once

#include "patch/Arguments.h"
#include "ui/fields/ValueRow.h"

#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>

#include <memory>
#include <vector>

namespace plinket3 {

/// What the action of the selected states takes from them: a row for each argument, with the kind of box that it asks
/// for. Arguments that are given but not taken have rows, too, so that they can be seen and unset. Empty where the
/// states have different actions.
class ArgumentsForm : public QScrollArea {
    Q_OBJECT
public:
    ArgumentsForm(std::shared_ptr<const RecordSelection> selection, const EditorContext& context);

    /// The engine is another one: forgets the rows. To be called before anything else is shown.
    void Fill();
    /// Others are selected.
    void ShowSelection();
    /// The states' values or actions are others now.
    void Update();
    /// Whether a row stands for this field of states.
    bool Shows(int field) const;

    QSize minimumSizeHint() const override;

private:
    struct Entry {
        EngineConfiguration::Argument argument;
        int field;
        bool taken;
        bool operator==(const Entry&) const = default;
    };
    std::vector<Entry> Wanted() const;
    void Build(std::vector<Entry> entries);
    QString Hint(const Entry& entry) const;

    std::shared_ptr<const RecordSelection> selection_;
    EditorContext context_;
    std::vector<Entry> entries_;
    std::vector<ValueRow*> rows_;
    QGridLayout* grid_;
};

} // namespace plinket3
