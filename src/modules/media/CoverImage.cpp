#include "modules/media/CoverImage.h"

#include "modules/media/RunAside.h"

#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <QSGImageNode>

namespace randblatt {

namespace {

/// The picture in `file`, cropped and scaled to fill `size` pixels.
QImage rounded(const QString &file, const QSize &size, double radius)
{
    QImageReader reader(file);
    reader.setScaledSize(reader.size().scaled(size, Qt::KeepAspectRatioByExpanding));
    const QImage picture = reader.read();
    if (picture.isNull())
        return {};
    QImage drawn(size, QImage::Format_ARGB32_Premultiplied);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(drawn.rect()), radius, radius);
    painter.setPen(Qt::NoPen);
    QBrush brush(picture);
    const QPoint middle = drawn.rect().center() - picture.rect().center();
    brush.setTransform(QTransform::fromTranslate(middle.x(), middle.y()));
    painter.setBrush(brush);
    painter.drawPath(outline);
    return drawn;
}

} // namespace

CoverImage::CoverImage(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

void CoverImage::setUrl(const QUrl &url)
{
    if (m_url == url)
        return;
    m_url = url;
    setImage({});
    load();
    Q_EMIT urlChanged();
}

void CoverImage::componentComplete()
{
    QQuickItem::componentComplete();
    load();
}

void CoverImage::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        load();
    update();
}

void CoverImage::load()
{
    const int turn = ++m_turn;
    if (!isComponentComplete() || m_cache == nullptr || m_url.isEmpty() || width() <= 0 || height() <= 0)
        return;
    m_cache->request(m_url, this, [this, turn](const QString &file) {
        if (turn == m_turn && !file.isEmpty())
            draw(file);
    });
}

void CoverImage::draw(const QString &file)
{
    const double ratio = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1.0;
    const QSize pixels = (size() * ratio).toSize();
    runAside(
        this, [file, pixels, radius = m_radius * ratio] { return rounded(file, pixels, radius); },
        [this, turn = m_turn](const QImage &image) {
            if (turn == m_turn)
                setImage(image);
        });
}

void CoverImage::setImage(const QImage &image)
{
    const bool wasLoaded = isLoaded();
    m_image = image;
    m_isTextureOld = true;
    update();
    if (isLoaded() != wasLoaded)
        Q_EMIT isLoadedChanged();
}

QSGNode *CoverImage::updatePaintNode(QSGNode *node, UpdatePaintNodeData *)
{
    auto *imageNode = static_cast<QSGImageNode *>(node);
    if (m_image.isNull()) {
        delete imageNode;
        return nullptr;
    }
    if (imageNode == nullptr) {
        imageNode = window()->createImageNode();
        imageNode->setOwnsTexture(true);
        imageNode->setFiltering(QSGTexture::Linear);
        m_isTextureOld = true;
    }
    if (m_isTextureOld) {
        imageNode->setTexture(
            window()->createTextureFromImage(m_image, QQuickWindow::TextureHasAlphaChannel));
        m_isTextureOld = false;
    }
    imageNode->setRect(boundingRect());
    return imageNode;
}

} // namespace randblatt
