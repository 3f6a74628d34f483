#include "ui/Icon.h"
#include <QFile>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>
#include <memory>

namespace vesko {

namespace {

QString iconPath(const QString& name) { return QStringLiteral(":/icons/") + name + QStringLiteral(".svg"); }

// The drawings are black; the colour is laid over what they cover. A finished picture is kept, since lists
// show the same few icons over and over.
QImage picture(const QString& name, const QColor& color, const QSize& size) {
    static QHash<QString, QImage> kept;
    const QString key =
        QStringLiteral("%1/%2/%3x%4").arg(name).arg(color.rgba()).arg(size.width()).arg(size.height());
    if (const auto found = kept.constFind(key); found != kept.constEnd()) return *found;

    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer drawing(iconPath(name));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    if (drawing.isValid()) drawing.render(&painter, QRectF(QPointF(), QSizeF(size)));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    if (kept.size() > 256) kept.clear();
    kept.insert(key, image);
    return image;
}

} // namespace

Icon::Icon(QQuickItem* parent) : QQuickPaintedItem(parent) { setImplicitSize(20, 20); }

void Icon::setName(const QString& name) {
    if (name == name_) return;
    name_ = name;
    Q_EMIT nameChanged();
    update();
}

void Icon::setColor(const QColor& color) {
    if (color == color_) return;
    color_ = color;
    Q_EMIT colorChanged();
    update();
}

void Icon::paint(QPainter* painter) {
    if (name_.isEmpty() || width() < 1 || height() < 1) return;
    const QRectF area = boundingRect();
    const QTransform& scale = painter->deviceTransform();
    const QSize pixels(qCeil(area.width() * qMax(scale.m11(), 1.0)),
                       qCeil(area.height() * qMax(scale.m22(), 1.0)));
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(area, picture(name_, color_, pixels));
}

bool hasIcon(const QString& name) { return QFile::exists(iconPath(name)); }

} // namespace vesko
