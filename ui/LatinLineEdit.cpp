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

QString WhyNoName(const QString& text) {
    if (QString why = WhyNotStorable(text); !why.isEmpty())
        return why;
    for (const QChar end : {QLatin1Char(')'), QLatin1Char('=')})
        if (text.contains(end))
            return QObject::tr("A name cannot hold \"%1\": a patch that is read would end there.").arg(end);
    return {};
}

QValidator::State TextValidator::validate(QString& text, int&) const {
    const QString why = why_(text);
    if (why.isEmpty())
        return Acceptable;
    tell_(why);
    return Invalid;
}

LatinLineEdit::LatinLineEdit(const QString& name, const QString& accessibleName, const Tell& tell) {
    setObjectName(name);
    setAccessibleName(accessibleName);
    setValidator(new TextValidator(this, WhyNotStorable, tell));
    connect(this, &QLineEdit::inputRejected, this, [this, tell] {
        if (text().size() >= maxLength())
            tell(tr("There is room for %1 characters here.").arg(maxLength()));
    });
}

} // namespace plinket3
