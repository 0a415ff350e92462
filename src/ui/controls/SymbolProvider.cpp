#include "ui/controls/SymbolProvider.h"

#include <QColor>
#include <QPainter>
#include <QSvgRenderer>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr int defaultExtent = 24;

} // namespace

SymbolProvider::SymbolProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

QImage SymbolProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const QString name = id.section(u'/', 0, 0);
    const QColor color = QColor::fromString(u'#' + id.section(u'/', 1, 1));
    const QImage drawn =
        image(name, color, requestedSize.width() > 0 ? requestedSize.width() : defaultExtent);
    if (drawn.isNull())
        qWarning("Symbol fehlt: %ls", qUtf16Printable(name));
    if (size != nullptr)
        *size = drawn.size();
    return drawn;
}

QImage SymbolProvider::image(const QString &name, const QColor &color, int extent)
{
    QSvgRenderer renderer(u":/symbols/"_s + name + ".svg"_L1);
    if (!renderer.isValid())
        return {};
    QImage drawn(extent, extent, QImage::Format_ARGB32_Premultiplied);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    renderer.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(drawn.rect(), color);
    painter.end();
    // The picture that was painted on keeps the painting engine, several times its own size.
    return drawn.copy();
}

} // namespace randblatt
