#pragma once

#include "ui/EditorContext.h"

#include <QObject>

#include <vector>

class QAction;
class QBoxLayout;
class QPushButton;
class QWidget;

namespace plinket3 {

/// "New..." and "Remove" beside a list of records that patches make: two buttons, and two actions of the list with the
/// keys Ins and Del. They are there only for engines that know no limits.
class RecordMaker : public QObject {
    Q_OBJECT
public:
    /// `many` names the records together. `list` owns this object.
    RecordMaker(RecordKind kind, const char* many, QWidget& list, const EditorContext& context);

    void AddButtons(QBoxLayout& layout);
    /// For a menu of the list.
    std::vector<QAction*> Actions() const { return {new_, remove_}; }
    /// The engine may be another one.
    void Reload();
    /// These records are selected now: "Remove" is for those that the patch made.
    void ShowSelection(std::vector<std::int32_t> records);

signals:
    /// A record was made, and the list has it.
    void Made(std::int32_t record);

private:
    void Make();
    void Remove();

    RecordKind kind_;
    const char* many_;
    EditorContext context_;
    QWidget& list_;
    QAction* new_;
    QAction* remove_;
    QPushButton* newButton_;
    QPushButton* removeButton_;
    std::vector<std::int32_t> selected_;
};

} // namespace plinket3
