// velmora-render-icon: draws an SVG picture as a square PNG of the given size,
// for the icon theme folders of the package.
// Usage: velmora-render-icon INPUT.svg SIZE OUTPUT.png
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const int size = argc == 4 ? QString::fromLocal8Bit(argv[2]).toInt() : 0;
    QSvgRenderer renderer(QString::fromLocal8Bit(argc == 4 ? argv[1] : ""));
    if (size <= 0 || !renderer.isValid()) {
        std::fprintf(stderr, "usage: velmora-render-icon INPUT.svg SIZE OUTPUT.png\n");
        return 2;
    }
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    painter.end();
    return image.save(QString::fromLocal8Bit(argv[3])) ? 0 : 1;
}
