#pragma once

#include <QWidget>

namespace plinket3 {

/// The picture and version that stand on the screen while the program starts.
class frmSplash : public QWidget {
public:
    frmSplash();

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace plinket3
