#include "ui/frmSplash.h"

#include "core/Version.h"
#include "ui/Icons.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

namespace plinket3 {

namespace {

constexpr int splashWidth = 420, splashHeight = 220, margin = 28, pictureSide = 112;

} // namespace

frmSplash::frmSplash() {
    setObjectName(QStringLiteral("frmSplash"));
    setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
    setFixedSize(splashWidth, splashHeight);
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void frmSplash::paintEvent(QPaintEvent*) {
    // The splash has colours of its own, on every desktop the same.
    constexpr QRgb top = 0xff343a48, bottom = 0xff1f222b, text = 0xfff1ece0, softText = 0xffb5b0a3;
    QPainter painter(this);
    QLinearGradient background(0, 0, 0, height());
    background.setColorAt(0, QColor::fromRgb(top));
    background.setColorAt(1, QColor::fromRgb(bottom));
    painter.fillRect(rect(), background);
    ProgramIcon("plinket3", palette())
        .paint(&painter, QRect(margin, (height() - pictureSide) / 2, pictureSide, pictureSide));

    const QRect words = rect().adjusted(margin * 2 + pictureSide, margin, -margin, -margin);
    QFont font = painter.font();
    font.setPointSizeF(font.pointSizeF() * 2.4);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor::fromRgb(text));
    painter.drawText(words.adjusted(0, 36, 0, 0), Qt::AlignLeft | Qt::AlignTop, QString::fromLatin1(programTitle));
    painter.setFont(QFont());
    painter.drawText(words.adjusted(0, 92, 0, 0), Qt::AlignLeft | Qt::AlignTop, tr("An editor for DeHackEd patches"));
    painter.setPen(QColor::fromRgb(softText));
    painter.drawText(words, Qt::AlignRight | Qt::AlignBottom, QString::fromLatin1(programVersionLabel));
}

} // namespace plinket3
