#pragma once

#include <QPushButton>

namespace plinket3 {

/// A push button with its object name.
inline QPushButton* NewButton(const char* name, const QString& text) {
    auto* button = new QPushButton(text);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

} // namespace plinket3
