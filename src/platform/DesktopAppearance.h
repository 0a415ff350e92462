#pragma once

#include <QColor>
#include <QObject>

#include <optional>

namespace randblatt {

/// How the desktop's user wants programs to look and to move. By itself it wishes for nothing in particular.
class DesktopAppearance : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    struct Wishes
    {
        /// None where nobody says.
        std::optional<bool> isDark;
        bool highContrast = false;
        /// None where the desktop has no colour of its own.
        std::optional<QColor> accent;
        /// Nothing is to slide, spring or drift.
        bool reducedMotion = false;
        /// Factor on text sizes, 0.5…3.
        double textScale = 1.0;

        friend bool operator==(const Wishes &, const Wishes &) = default;
    };
    [[nodiscard]] const Wishes &wishes() const { return m_wishes; }

Q_SIGNALS:
    void wishesChanged();

protected:
    void setWishes(const Wishes &wishes)
    {
        if (wishes == m_wishes)
            return;
        m_wishes = wishes;
        Q_EMIT wishesChanged();
    }

private:
    Wishes m_wishes;
};

} // namespace randblatt
