#include "ui/fields/FrameSpinBox.h"

#include "core/Numbers.h"
#include "ui/LatinText.h"

#include <QFocusEvent>
#include <QLineEdit>
#include <QTimer>

#include <algorithm>

namespace plinket3 {

FrameSpinBox::FrameSpinBox() {
    setObjectName(QStringLiteral("udFrame"));
    lineEdit()->setObjectName(QStringLiteral("txtFrame"));
    lineEdit()->setAccessibleName(tr("Frame"));
    setAccessibleName(tr("Frame"));
    setRange(0, lastFrame);
}

int FrameSpinBox::valueFromText(const QString& text) const {
    return form_ == FrameForm::Letter ? FrameOfLetter(text) : std::clamp(LeadingInt32(StoredText(text)), 0, lastFrame);
}

QValidator::State FrameSpinBox::validate(QString& text, int& position) const {
    if (text.isEmpty())
        return QValidator::Acceptable;
    // A text that already says its value, like "07", is left to the user.
    if (const int value = valueFromText(text); form_ == FrameForm::Letter || LeadingReal(StoredText(text)) != value) {
        text = FrameText(value, form_);
        position = static_cast<int>(std::min<qsizetype>(position, text.size()));
    }
    return QValidator::Acceptable;
}

void FrameSpinBox::focusInEvent(QFocusEvent* event) {
    QSpinBox::focusInEvent(event);
    QTimer::singleShot(0, this, &QSpinBox::selectAll);
}

} // namespace plinket3
