#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// What the views tell the edge trigger; not stored.
class SidebarUIState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one state object.")
    Q_PROPERTY(bool keepOpen READ keepOpen WRITE setKeepOpen NOTIFY keepOpenChanged FINAL)

public:
    using QObject::QObject;

    /// The one instance of the process, made on first use.
    [[nodiscard]] static SidebarUIState &shared();

    /// While it is set the trigger never hides the panel.
    [[nodiscard]] bool keepOpen() const { return m_keepOpen; }
    void setKeepOpen(bool keepOpen);

Q_SIGNALS:
    void keepOpenChanged();

private:
    bool m_keepOpen = false;
};

} // namespace randblatt
