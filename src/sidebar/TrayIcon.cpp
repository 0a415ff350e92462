#include "sidebar/TrayIcon.h"

#include "ui/controls/SymbolProvider.h"

#include <QIconEngine>
#include <QPainter>

#include <algorithm>
#include <array>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

constexpr auto themeName = "com.randblatt.Quillbar-symbolic"_L1;
// Sizes that trays ask for, in pixels.
constexpr std::array traySizes{16, 22, 24, 32, 48};
constexpr double edgeOpacity = 0.7;

QColor opposite(const QColor &color)
{
    return color.lightnessF() < 0.5F ? Qt::white : Qt::black;
}

class TrayIconEngine final : public QIconEngine
{
public:
    explicit TrayIconEngine(const QColor &color)
        : m_color(color)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        painter->drawPixmap(rect.topLeft(), pixmap(rect.size(), mode, state));
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode, QIcon::State) override
    {
        const int extent = std::min(size.width(), size.height());
        const auto drawn = [extent](const QColor &color) {
            return SymbolProvider::image(u"sparkles"_s, color, extent);
        };
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.translate((size.width() - extent) / 2, (size.height() - extent) / 2);
        painter.setOpacity(edgeOpacity);
        const QImage edge = drawn(opposite(m_color));
        for (const QPoint &offset : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)})
            painter.drawImage(offset, edge);
        painter.setOpacity(1.0);
        painter.drawImage(0, 0, drawn(m_color));
        return pixmap;
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const int size : traySizes)
            sizes.append({size, size});
        return sizes;
    }

    QString iconName() override { return QIcon::hasThemeIcon(themeName) ? QString(themeName) : QString(); }
    [[nodiscard]] QString key() const override { return u"TrayIconEngine"_s; }
    [[nodiscard]] QIconEngine *clone() const override { return new TrayIconEngine(m_color); }

private:
    QColor m_color;
};

} // namespace

QIcon trayIcon(const QColor &color)
{
    return QIcon(new TrayIconEngine(color));
}

} // namespace randblatt
