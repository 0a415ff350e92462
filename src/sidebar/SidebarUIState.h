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

    /// Whether keys arrive in the panel.
    [[nodiscard]] bool hasKeyboard() const { return m_hasKeyboard; }
    void setHasKeyboard(bool hasKeyboard);

    /// Whether an input method has a word in the making there.
    [[nodiscard]] bool isComposing() const { return m_isComposing; }
    void setComposing(bool isComposing);

    /// Whether a mouse button that was pressed in the panel has not been let go, as far as the panel knows.
    [[nodiscard]] bool isPressed() const { return m_isPressed; }
    void setPressed(bool isPressed);

    /// Something is being typed in the panel, text or not.
    void noteTyping() { Q_EMIT typed(); }

Q_SIGNALS:
    void keepOpenChanged();
    void hasKeyboardChanged();
    void isComposingChanged();
    void isPressedChanged();
    /// Comes before the key reaches its view.
    void typed();

private:
    bool m_keepOpen = false;
    bool m_hasKeyboard = false;
    bool m_isComposing = false;
    bool m_isPressed = false;
};

} // namespace randblatt
