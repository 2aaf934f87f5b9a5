#pragma once

#include "patch/NewChain.h"
#include "ui/EditorContext.h"

#include <QDialog>

#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLayout;
class QPushButton;
class QSpinBox;
class QTableView;

namespace plinket3 {

class ChainModel;

/// Asks what a run of new states is to be, and says at once how many free ones it takes, or why it cannot be made.
class frmNewStates : public QDialog {
    Q_OBJECT
public:
    /// Proposes the sprite, frame and light of the state `like`, if there is such.
    frmNewStates(const EditorContext& context, std::int32_t like, QWidget* parent);

    /// Nothing when the user cancels.
    std::optional<MadeChain> Ask();

private:
    QLayout* BuildSprite();
    QTableView* BuildFrames();
    QLayout* BuildEnd();
    QLayout* BuildBegins();
    void ShowSprite();
    void PickSprite();
    void PickNext();
    void ProposeNext();
    NewChain Chain() const;
    void Check();

    EditorContext context_;
    FreeRecords free_;
    MadeChain made_;
    std::int32_t sprite_ = 0;
    bool nextTyped_ = false; // or chosen
    ChainModel* frames_;
    QSpinBox* count_;
    QPushButton* cmdSprite_;
    QCheckBox* lit_;
    QComboBox* end_;
    QSpinBox* next_;
    QPushButton* cmdNext_;
    QLabel* nextLabel_;
    QComboBox *thing_, *thingField_;
    QLabel* note_;
    QPushButton* accept_;
};

} // namespace plinket3
