#include "ui/frmChangeEngine.h"

#include "patch/modTables.h"
#include "ui/LatinText.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <utility>

namespace plinket3 {

frmChangeEngine::frmChangeEngine(const Program& program, QWidget* parent)
    : QDialog(parent), program_(program), cmbEngines_(new QComboBox), lblLost_(new QLabel), lstLost_(new QListWidget) {
    setObjectName(QStringLiteral("frmChangeEngine"));
    setWindowTitle(tr("Engine"));
    cmbEngines_->setObjectName(QStringLiteral("cmbEngines"));
    lblLost_->setObjectName(QStringLiteral("lblLost"));
    lblLost_->setWordWrap(true);
    lstLost_->setObjectName(QStringLiteral("lstLost"));
    lstLost_->setAccessibleName(tr("What the engine cannot hold"));
    for (std::size_t i = 0; i < program.engines.size(); ++i)
        if (program.engines[i].configuration != nullptr &&
            program.engines[i].file.filename() != program.engine.fileName)
            cmbEngines_->addItem(ShownText(program.engines[i].name), static_cast<int>(i));

    auto* engines = new QFormLayout;
    engines->addRow(tr("Engine now:"), new QLabel(ShownText(program.engine.name)));
    engines->addRow(tr("&Open under:"), cmbEngines_);
    auto* steps = new QLabel(tr("Undo begins anew. The file stays as it is until you save."));
    steps->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    cmdAccept_ = buttons->button(QDialogButtonBox::Ok);
    cmdAccept_->setObjectName(QStringLiteral("cmdAccept"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(cmbEngines_, &QComboBox::currentIndexChanged, this, &frmChangeEngine::Try);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(engines);
    layout->addWidget(lblLost_);
    layout->addWidget(lstLost_, 1);
    layout->addWidget(steps);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 22);
    Try();
}

void frmChangeEngine::Try() {
    change_.reset();
    lstLost_->clear();
    const QVariant place = cmbEngines_->currentData();
    PatchSet defaults;
    if (place.isValid() &&
        modTables::ReadEngine(program_.programFolder, program_.engines[static_cast<std::size_t>(place.toInt())],
                              engine_, defaults)) {
        engine_.dialect = engine_.dialect.By(program_.engine.dialect.rules);
        change_ = ChangeEngine(program_.patch, program_.engine, engine_, defaults);
        for (const std::string& line : change_->lost)
            lstLost_->addItem(ShownText(line));
    }
    lblLost_->setText(!change_                ? tr("This engine cannot be loaded.")
                      : change_->lost.empty() ? tr("It can hold all of the patch.")
                                              : tr("It cannot hold this, which would be left out:"));
    lstLost_->setVisible(lstLost_->count() > 0);
    cmdAccept_->setEnabled(change_.has_value());
}

std::optional<frmChangeEngine::Choice> frmChangeEngine::Choose() {
    if (exec() != Accepted || !change_)
        return std::nullopt;
    return Choice{std::move(engine_), std::move(change_->patch)};
}

} // namespace plinket3
