// Draws an SVG picture as a PNG of a given size, since places that want pictures of fixed sizes are not given
// files that nobody can read.
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>
#include <cstdlib>

int main(int count, char** words) {
    if (count != 4) {
        std::fprintf(stderr, "Usage: draw-icon PICTURE.svg PIXELS RESULT.png\n");
        return 2;
    }
    const int pixels = std::atoi(words[2]);
    constexpr int most = 4096;
    if (pixels < 1 || pixels > most) {
        std::fprintf(stderr, "draw-icon: %s is no size from 1 to %d\n", words[2], most);
        return 2;
    }
    QSvgRenderer drawing(QString::fromLocal8Bit(words[1]));
    if (!drawing.isValid()) {
        std::fprintf(stderr, "draw-icon: can't read %s\n", words[1]);
        return 1;
    }
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawing.render(&painter);
    painter.end();
    if (image.save(QString::fromLocal8Bit(words[3]), "PNG")) return 0;
    std::fprintf(stderr, "draw-icon: can't write %s\n", words[3]);
    return 1;
}
