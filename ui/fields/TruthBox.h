#pragma once

#include "ui/fields/SelectedValue.h"

#include <QComboBox>

namespace plinket3 {

/// A list for a number of the selected records that means no or yes, or is unset where it may be. A number other than 0
/// and 1 shows beside its "yes" and stays until another entry is chosen.
class TruthBox : public QComboBox {
    Q_OBJECT
public:
    TruthBox(const QString& name, const QString& accessibleName, const SelectedValue& value);

    void Hint(const QString& hint) { hint_ = hint; }
    /// Shows what the selected records have. Stores nothing.
    void Update();

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    SelectedValue value_;
    QString hint_;
    QAction* restore_;
};

} // namespace plinket3
