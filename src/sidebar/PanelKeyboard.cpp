#include "sidebar/PanelKeyboard.h"

#include "sidebar/PanelPopups.h"
#include "sidebar/SidebarUIState.h"

#include <QKeyEvent>
#include <QLoggingCategory>
#include <QQuickItem>
#include <QQuickView>

namespace randblatt {

namespace {

Q_LOGGING_CATEGORY(lcPanel, "quillbar.panel", QtInfoMsg)

/// Whether a key does nothing by itself: pressed for a shortcut of the desktop's, it means nothing here.
bool isModifier(int key)
{
    return key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock;
}

/// Takes the keyboard from what would get it with the window, unless it is a text.
void dropFocus(QQuickView &window)
{
    QQuickItem *view = window.rootObject();
    if (!view)
        return;
    // A menu may have had it.
    view->setFocus(true);
    QQuickItem *leaf = view;
    while (QQuickItem *inner = leaf->scopedFocusItem())
        leaf = inner;
    if (leaf != view && !leaf->flags().testFlag(QQuickItem::ItemAcceptsInputMethod))
        view->scopedFocusItem()->setFocus(false);
}

} // namespace

PanelKeyboard::PanelKeyboard(QQuickView &window, SidebarUIState &uiState, QObject *parent)
    : QObject(parent)
    , m_window(window)
    , m_uiState(uiState)
{
    m_window.installEventFilter(this);
    connect(&m_window, &QWindow::activeChanged, this, [this] {
        if (m_window.isActive())
            qCDebug(lcPanel, "Tastatur da");
        m_uiState.setHasKeyboard(m_window.isActive());
    });
    connect(&m_window, &QWindow::focusObjectChanged, this, &PanelKeyboard::followFocus);
    m_uiState.setHasKeyboard(m_window.isActive());
    followFocus(m_window.focusObject());
}

PanelKeyboard::~PanelKeyboard()
{
    // Another window may have taken over already.
    if (!m_window.isActive())
        return;
    m_uiState.setHasKeyboard(false);
    m_uiState.setComposing(false);
}

bool PanelKeyboard::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &m_window && event->type() == QEvent::KeyPress)
        followKey(static_cast<const QKeyEvent &>(*event));
    else if (watched == &m_window && event->type() == QEvent::Hide)
        followHide();
    else if (watched == m_focus && event->type() == QEvent::InputMethod)
        followInputMethod(static_cast<const QInputMethodEvent &>(*event));
    return false;
}

void PanelKeyboard::followFocus(QObject *object)
{
    // The window itself is named while none of its items has the focus.
    QObject *item = object == &m_window ? nullptr : object;
    if (m_focus == item)
        return;
    if (m_focus)
        m_focus->removeEventFilter(this);
    m_focus = item;
    if (m_focus)
        m_focus->installEventFilter(this);
    m_uiState.setComposing(false);
}

void PanelKeyboard::followKey(const QKeyEvent &event)
{
    if (!isModifier(event.key()))
        m_uiState.noteTyping();
}

void PanelKeyboard::followHide()
{
    closePopups(m_window);
    dropFocus(m_window);
}

void PanelKeyboard::followInputMethod(const QInputMethodEvent &event)
{
    m_uiState.setComposing(!event.preeditString().isEmpty());
    m_uiState.noteTyping();
}

} // namespace randblatt
