#pragma once

#include <QObject>

namespace plinket3 {

/// While it lives, every tooltip of the program shows its text as it is. The toolkit would take one for markup when
/// something in it looks like that, and names of records and texts of patches stand in many.
class PlainToolTips : public QObject {
public:
    PlainToolTips();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace plinket3
