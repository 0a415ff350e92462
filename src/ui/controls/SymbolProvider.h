#pragma once

#include <QQuickImageProvider>

namespace randblatt {

/// Draws the symbols for QML: `image://symbol/<name>/<colour>` is the symbol of that name, tinted in the
/// colour (`#AARRGGBB` without the `#`), in the requested size in pixels. An unknown name gives no image and
/// a warning.
class SymbolProvider : public QQuickImageProvider
{
public:
    SymbolProvider();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

    /// The symbol in a square of `extent` pixels; null for an unknown name.
    [[nodiscard]] static QImage image(const QString &name, const QColor &color, int extent);
};

} // namespace randblatt
