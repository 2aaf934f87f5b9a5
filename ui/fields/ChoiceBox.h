#pragma once

#include "ui/fields/SelectedValue.h"

#include <QComboBox>

namespace plinket3 {

/// A list for a number of the selected records that stands for one of few things: no and yes, a weapon, an item. It may
/// also be unset where the field may be. A number that stands for none of them shows and stays until an entry is
/// chosen.
class ChoiceBox : public QComboBox {
    Q_OBJECT
public:
    ChoiceBox(const QString& name, const QString& accessibleName, const SelectedValue& value);

    void Hint(const QString& hint) { hint_ = hint; }
    /// Shows what the selected records have, by the names that there are now. Stores nothing.
    void Update();

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    using Choice = EngineConfiguration::Choice;

    void Fill();
    QString WordOf(const CellValue& value) const;

    SelectedValue value_;
    std::vector<Choice> choices_;
    QString hint_;
    QAction* restore_;
};

} // namespace plinket3
