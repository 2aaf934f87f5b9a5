#pragma once

#include <QFrame>

#include <string>
#include <vector>

class QLabel;

namespace plinket3 {

/// A bar above the editors, hidden until a save by the kept rules has written what games read otherwise. It says what
/// and offers engine rules; it never asks.
class RulesBar : public QFrame {
    Q_OBJECT
public:
    RulesBar();

    /// Shows these values, a line for each; hides the bar when there are none.
    void Tell(const std::vector<std::string>& values);

signals:
    void EngineRulesWanted();

private:
    QLabel* text_;
};

} // namespace plinket3
