#pragma once

#include "patch/Clip.h"
#include "patch/Edits.h"
#include "patch/PastePlan.h"

#include <QList>
#include <QObject>

#include <optional>
#include <set>
#include <string>
#include <vector>

class QAction;
class QWidget;

namespace plinket3 {

class EditorSet;

/// Copy, Paste and Duplicate for the records that are selected in the editor in front. The clipboard holds them as a
/// patch's text. The keys are for lists and fields of the editors; boxes with text keep them for their text.
class ClipCommands : public QObject {
    Q_OBJECT
public:
    /// All must outlive this object; the editors, which stand in `area`, need not be made yet.
    ClipCommands(Program& program, Edits& edits, EditorSet& editors, QWidget& area);

    /// For menus; they belong to this object.
    QList<QAction*> Actions() const { return {copy_, copyWith_, paste_, duplicate_}; }
    /// Other records are selected, or another patch is open.
    void Update();
    void Duplicate();

private:
    struct Verb;
    static const Verb pasting, duplicating;

    /// What is selected, if records of its kind can be copied.
    std::vector<RecordId> Selected() const;
    void Copy();
    void CopyWith();
    void Paste();
    void ToClipboard(const std::vector<RecordId>& subjects, const std::set<RecordId>& records);
    void AskAndPaste(const std::string& text, const Verb& verb);
    void Store(const Clip& clip, const PastePlan& plan, const Verb& verb);

    Program& program_;
    Edits& edits_;
    EditorSet& editors_;
    QWidget& area_;
    QAction *copy_, *copyWith_, *paste_, *duplicate_;
};

} // namespace plinket3
