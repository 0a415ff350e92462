#pragma once

#include "modules/media/CoverCache.h"

#include <QImage>
#include <QQuickItem>

namespace randblatt {

/// Shows a cover with rounded corners, filling the item. It is loaded and drawn aside; until then, and where
/// there is none, the item shows nothing. Only what an item shows is held in memory.
class CoverImage : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(randblatt::CoverCache *cache MEMBER m_cache NOTIFY cacheChanged REQUIRED FINAL)
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged FINAL)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY radiusChanged FINAL)
    Q_PROPERTY(bool isLoaded READ isLoaded NOTIFY isLoadedChanged FINAL)

public:
    explicit CoverImage(QQuickItem *parent = nullptr);

    [[nodiscard]] QUrl url() const { return m_url; }
    void setUrl(const QUrl &url);
    [[nodiscard]] bool isLoaded() const { return !m_image.isNull(); }

Q_SIGNALS:
    void cacheChanged();
    void urlChanged();
    void radiusChanged();
    void isLoadedChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;

private:
    void load();
    void draw(const QString &file);
    void setImage(const QImage &image);

    CoverCache *m_cache = nullptr;
    QUrl m_url;
    double m_radius = 0.0;
    QImage m_image;
    bool m_isTextureOld = false;
    /// Changes when what is being loaded is no longer wanted.
    int m_turn = 0;
};

} // namespace randblatt
