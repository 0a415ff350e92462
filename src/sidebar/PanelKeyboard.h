#pragma once

#include <QObject>
#include <QPointer>

class QInputMethodEvent;
class QKeyEvent;
class QQuickView;

namespace randblatt {

class SidebarUIState;

/// Tells what the keyboard does in the panel's window: whether it is there, and when something is typed, also
/// through an input method. When the window hides, the keyboard stays at most in a text: no button or row has
/// it, unseen, when the window comes again.
class PanelKeyboard : public QObject
{
    Q_OBJECT

public:
    /// Both are borrowed and must outlive the object; with it, what it told ends.
    PanelKeyboard(QQuickView &window, SidebarUIState &uiState, QObject *parent = nullptr);
    ~PanelKeyboard() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followFocus(QObject *object);
    void followKey(const QKeyEvent &event);
    void followInputMethod(const QInputMethodEvent &event);
    void followHide();

    QQuickView &m_window;
    SidebarUIState &m_uiState;
    /// What takes the input method's events.
    QPointer<QObject> m_focus;
};

} // namespace randblatt
