#include "ui/RulesBar.h"

#include "ui/LatinText.h"
#include "ui/NewButton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace plinket3 {

namespace {

constexpr std::size_t mostInToolTip = 20;

} // namespace

RulesBar::RulesBar() : text_(new QLabel) {
    setObjectName(QStringLiteral("rulesBar"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    text_->setObjectName(QStringLiteral("lblRulesBar"));
    text_->setForegroundRole(QPalette::ToolTipText);
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    auto* cmdEngineRules = NewButton("cmdEngineRules", tr("Use &engine rules"));
    cmdEngineRules->setToolTip(tr("Goes on with all values as they are here; the next save writes them so that games "
                                  "read them."));
    auto* cmdHide = NewButton("cmdHideRulesBar", tr("&Hide"));
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(text_, 1);
    layout->addWidget(cmdEngineRules);
    layout->addWidget(cmdHide);
    connect(cmdEngineRules, &QPushButton::clicked, this, &RulesBar::EngineRulesWanted);
    connect(cmdHide, &QPushButton::clicked, this, &QWidget::hide);
    hide();
}

void RulesBar::Tell(const std::vector<std::string>& values) {
    setVisible(!values.empty());
    if (values.empty())
        return;
    const std::size_t others = values.size() - 1;
    QString text = tr("The file is saved, but games read it otherwise: %1").arg(ShownStart(values.front()));
    if (others > 0)
        text += others == 1 ? tr(", and one more value") : tr(", and %1 more values").arg(others);
    text_->setText(text + QLatin1Char('.'));
    QStringList all;
    for (std::size_t i = 0; i < std::min(values.size(), mostInToolTip); ++i)
        all.append(ShownStart(values[i]));
    if (values.size() > mostInToolTip)
        all.append(tr("..."));
    text_->setToolTip(all.join(QLatin1Char('\n')));
}

} // namespace plinket3
