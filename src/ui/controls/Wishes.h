#pragma once

#include "platform/DesktopAppearance.h"

#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// What the desktop wishes of the views.
class Wishes : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Whether anybody says if it is to be dark.
    Q_PROPERTY(bool knowsDark READ knowsDark NOTIFY changed FINAL)
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed FINAL)
    Q_PROPERTY(bool highContrast READ highContrast NOTIFY changed FINAL)
    Q_PROPERTY(bool hasAccent READ hasAccent NOTIFY changed FINAL)
    Q_PROPERTY(QColor accent READ accent NOTIFY changed FINAL)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY changed FINAL)
    Q_PROPERTY(double textScale READ textScale NOTIFY changed FINAL)

public:
    explicit Wishes(QObject *parent = nullptr);

    /// The source for the views of all engines that are used from now on; borrowed. While there is none, the
    /// desktop wishes for nothing.
    static void follow(DesktopAppearance *source);

    [[nodiscard]] bool knowsDark() const { return wishes().isDark.has_value(); }
    [[nodiscard]] bool isDark() const { return wishes().isDark.value_or(false); }
    [[nodiscard]] bool highContrast() const { return wishes().highContrast; }
    [[nodiscard]] bool hasAccent() const { return wishes().accent.has_value(); }
    [[nodiscard]] QColor accent() const { return wishes().accent.value_or(QColor()); }
    [[nodiscard]] bool reducedMotion() const { return wishes().reducedMotion; }
    [[nodiscard]] double textScale() const { return wishes().textScale; }

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] DesktopAppearance::Wishes wishes() const;

    QPointer<DesktopAppearance> m_source;
};

} // namespace randblatt
