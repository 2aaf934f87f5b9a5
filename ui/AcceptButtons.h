#pragma once

#include "ui/NewButton.h"

#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>

namespace plinket3 {

/// The row of `accept`, which is the default and closes the dialog, and "Cancel".
inline QDialogButtonBox* AcceptButtons(QDialog& dialog, QPushButton& accept) {
    accept.setDefault(true);
    QObject::connect(&accept, &QPushButton::clicked, &dialog, &QDialog::accept);
    auto* cancel = NewButton("cmdCancel", QCoreApplication::translate("AcceptButtons", "Cancel"));
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(&accept, QDialogButtonBox::AcceptRole);
    buttons->addButton(cancel, QDialogButtonBox::RejectRole);
    return buttons;
}

} // namespace plinket3
