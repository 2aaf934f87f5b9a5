#include "ui/LatinLineEdit.h"

#include "ui/LatinText.h"

#include <algorithm>

namespace plinket3 {

QString WhyNotStorable(const QString& text) {
    const auto* const character =
        std::find_if(text.begin(), text.end(), [](QChar candidate) { return candidate.unicode() > 0xff; });
    if (character == text.end())
        return {};
    const qsizetype length = character->isHighSurrogate() ? 2 : 1;
    return QObject::tr("\"%1\" cannot be stored: the text of a patch is Latin-1.")
        .arg(text.mid(character - text.begin(), length));
}

QValidator::State LatinValidator::validate(QString& text, int&) const {
    if (IsStorable(text))
        return Acceptable;
    tell_(WhyNotStorable(text));
    return Invalid;
}

LatinLineEdit::LatinLineEdit(const QString& name, const QString& accessibleName, Tell tell) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    setValidator(new LatinValidator(this, tell));
    connect(this, &QLineEdit::inputRejected, this, [this, tell] {
        if (text().size() >= maxLength())
            tell(tr("There is room for %1 characters here.").arg(maxLength()));
    });
}

} // namespace plinket3
