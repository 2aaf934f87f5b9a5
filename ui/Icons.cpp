#include "ui/Icons.h"

#include "ui/IconPicture.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>

/// Resources of a static library are there only when somebody asks for them; the macro wants no namespace around it.
static void InitialiseResources() { Q_INIT_RESOURCE(resources); }

namespace plinket3 {

namespace {

/// Draws the picture anew for each size that is asked for, so that it is sharp at every scaling of the desktop.
class IconEngine : public QIconEngine {
public:
    explicit IconEngine(IconPicture picture) : picture_(std::move(picture)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        if (mode == QIcon::Disabled)
            painter->setOpacity(0.35);
        picture_.Paint(*painter, rect);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new IconEngine(picture_); }

private:
    IconPicture picture_;
};

} // namespace

QIcon ProgramIcon(const char* name, const QPalette& palette) {
    InitialiseResources();
    QFile file(QStringLiteral(":/plinket3/icons/%1.svg").arg(QLatin1String(name)));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray picture = file.readAll();
    picture.replace("#foreground", palette.color(QPalette::ButtonText).name().toLatin1());
    return QIcon(new IconEngine(IconPicture(picture)));
}

} // namespace plinket3
