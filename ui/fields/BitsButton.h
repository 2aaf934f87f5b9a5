#pragma once

#include "ui/lists/FlagListModel.h"

#include <QToolButton>

class QListView;

namespace plinket3 {

/// A button under which the bits of a value are switched one by one.
class BitsButton : public QToolButton {
    Q_OBJECT
public:
    BitsButton(const QString& name, const QString& accessibleName, const SelectedValue& value,
               const EditorContext& context);

    /// The engine may have other bits now.
    void Reload();
    /// The value is another one.
    void Update() { bits_.FlagsChanged(); }

private:
    FlagListModel bits_;
    QListView* list_;
};

} // namespace plinket3
