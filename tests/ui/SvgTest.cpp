#include "tests/support/TestSupport.h"
#include "tests/ui/WindowTest.h"
#include "ui/IconPicture.h"
#include "ui/graph/GraphOutput.h"
#include "ui/graph/GraphView.h"

#include <QAction>
#include <QDirIterator>
#include <QPainter>
#include <QSvgRenderer>

namespace plinket3::test {
namespace {

/// How far the colours of two pictures are apart, 0 to 255: on average, and in the worst block of `side` by `side`
/// pixels. Two programs that smooth edges differ by a little along them.
struct Difference {
    double average = 0, worst = 0;
};

Difference Between(const QImage& one, const QImage& other, int side) {
    const QSize blocks(one.width() / side, one.height() / side);
    const auto averaged = [blocks](const QImage& image) {
        return image.scaled(blocks, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    };
    const QImage first = averaged(one), second = averaged(other);
    Difference difference;
    for (int y = 0; y < blocks.height(); ++y)
        for (int x = 0; x < blocks.width(); ++x) {
            const QRgb a = first.pixel(x, y), b = second.pixel(x, y);
            const double here = std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                          std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
            difference.average += here / (blocks.width() * blocks.height());
            difference.worst = std::max(difference.worst, here);
        }
    return difference;
}

using SvgTest = WindowTest;

TEST_F(SvgTest, IconsAreDrawnAsQtDrawsThem) {
    ShowWindow(); // the icons are there from then on
    int count = 0;
    for (QDirIterator icons(QStringLiteral(":/plinket3/icons")); icons.hasNext(); ++count) {
        const QString name = icons.next();
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray svg = file.readAll().replace("#foreground", "#202020");
        for (const int size : {16, 32, 120}) {
            const auto drawn = [size](const auto& draw) {
                QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
                image.fill(Qt::transparent);
                QPainter painter(&image);
                draw(painter, QRectF(0, 0, size, size));
                return image;
            };
            const QImage ours =
                drawn([&](QPainter& painter, const QRectF& all) { IconPicture(svg).Paint(painter, all); });
            const QImage theirs =
                drawn([&](QPainter& painter, const QRectF& all) { QSvgRenderer(svg).render(&painter, all); });
            const Difference difference = Between(ours, theirs, 2);
            EXPECT_LT(difference.worst, 30) << name.toStdString() << " at " << size;
            EXPECT_LT(difference.average, 0.5) << name.toStdString() << " at " << size;
        }
    }
    EXPECT_GT(count, 15);
}

TEST_F(SvgTest, AGraphIsThePictureThatIsExportedAsPixels) {
    constexpr int imp = 11;
    LoadEngine("dsdhacked", true);
    ShowWindow();
    Editors().ShowRecord(RecordKind::Thing, imp);
    Find<QAction>("ViewStateGraph").trigger();
    QTest::qWait(1);
    const auto exported = [this](const char* name) {
        dialogs.Expect("Export state graph", (folder / name).string());
        Find<QAction>("GraphExport").trigger();
        return QByteArray::fromStdString(ReadFile(folder / name));
    };
    QSvgRenderer renderer(exported("imp.svg"));
    ASSERT_TRUE(renderer.isValid());
    const QImage pixels = QImage::fromData(exported("imp.png"));
    EXPECT_NEAR(renderer.viewBoxF().width() * 2, pixels.width(), 4);
    QImage drawn(pixels.size(), QImage::Format_RGB32);
    drawn.fill(Qt::black);
    QPainter painter(&drawn);
    renderer.render(&painter);
    painter.end();
    const Difference difference = Between(drawn, pixels, 16);
    EXPECT_LT(difference.worst, 40);
    EXPECT_LT(difference.average, 2);

    edits.Store({RecordKind::Thing, imp, nameField}, "Imp\x01 & <Co>\"");
    QTest::qWait(1);
    const QByteArray named = exported("named.svg");
    EXPECT_TRUE(QSvgRenderer(named).isValid()) << "names hold what XML does not";
    EXPECT_TRUE(named.contains("Imp &amp; &lt;Co&gt;&quot;"));
}

} // namespace
} // namespace plinket3::test
