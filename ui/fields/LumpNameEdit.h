#pragma once

#include "core/Status.h"
#include "patch/modTableDef.h"

#include <QLineEdit>

#include <string>

namespace plinket3 {

/// A box for the name of a sprite, which is in upper case as it is typed, or of a sound.
class LumpNameEdit : public QLineEdit {
    Q_OBJECT
public:
    LumpNameEdit(const QString& name, RecordKind kind);

    void ShowName(const std::string& name);
    std::string Name() const;
    /// Why the name cannot be, in a word for the user.
    Status Check() const;

private:
    RecordKind kind_;
};

} // namespace plinket3
