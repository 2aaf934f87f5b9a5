#include "ui/fields/LumpNameEdit.h"

#include "patch/LumpNames.h"
#include "ui/LatinText.h"

namespace plinket3 {

LumpNameEdit::LumpNameEdit(const QString& name, RecordKind kind) : kind_(kind) {
    setObjectName(name);
    setAccessibleName(tr("Name"));
    if (kind == RecordKind::Sprite)
        connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
            const int place = cursorPosition();
            setText(text.toUpper());
            setCursorPosition(place);
        });
}

void LumpNameEdit::ShowName(const std::string& name) { setText(ShownText(name)); }

std::string LumpNameEdit::Name() const { return StoredText(text()); }

Status LumpNameEdit::Check() const { return MayBeLumpName(kind_, Name()); }

} // namespace plinket3
