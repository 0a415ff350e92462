#include "sidebar/SidebarPanel.h"

#include "platform/Desktop.h"
#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "sidebar/CardRegion.h"
#include "sidebar/PanelKeyboard.h"
#include "sidebar/SidebarModel.h"
#include "sidebar/SidebarUIState.h"

#include <QLoggingCategory>
#include <QMouseEvent>
#include <QQmlEngine>
#include <QQmlProperty>
#include <QQuickItem>

#include <algorithm>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcPanel, "quillbar.panel", QtInfoMsg)

/// The radius of the quick settings' corners in points.
constexpr double quickRadius = 16.0;

} // namespace

SidebarPanel::SidebarPanel(QQmlEngine &engine, AppSettings &settings, ModuleRegistry &registry,
                           SidebarUIState &uiState, Desktop &desktop)
    : QQuickView(&engine, nullptr)
    , m_settings(settings)
    , m_uiState(uiState)
    , m_desktop(desktop)
    , m_keyboard(std::make_unique<PanelKeyboard>(*this, uiState))
    , m_model(new SidebarModel(settings, registry, this))
{
    QSurfaceFormat surfaceFormat = format();
    surfaceFormat.setAlphaBufferSize(8);
    setFormat(surfaceFormat);
    setColor(Qt::transparent);
    setTitle(u"Quillbar"_s);
    setResizeMode(SizeRootObjectToView);
    setInitialProperties({
        {u"model"_s, QVariant::fromValue(m_model)},
        {u"settings"_s, QVariant::fromValue(&settings)},
        {u"uiState"_s, QVariant::fromValue(&uiState)},
        {u"composited"_s, desktop.isComposited()},
    });
    setSource(viewSource());
    connect(rootObject(), SIGNAL(openSettingsRequested()), this, SIGNAL(openSettingsRequested()));
    connect(rootObject(), SIGNAL(dismissRequested()), this, SIGNAL(dismissRequested()));
    QQmlProperty(rootObject(), u"cardShapes"_s).connectNotifySignal(this, SLOT(followShapes()));
    QQmlProperty(rootObject(), u"quickShape"_s).connectNotifySignal(this, SLOT(followShapes()));
    QQmlProperty(rootObject(), u"blurShapes"_s).connectNotifySignal(this, SLOT(followBlur()));
    connect(&desktop, &Desktop::compositedChanged, this, &SidebarPanel::followCompositing);
    connect(&settings, &AppSettings::alwaysVisibleChanged, this, &SidebarPanel::followShapes);
    // Whatever comes over the cards comes with a frame.
    connect(this, &QQuickWindow::afterAnimating, this, &SidebarPanel::followPopups);
    connect(this, &QWindow::activeChanged, this, [this] {
        if (!isActive())
            closeOpen();
    });
    followShapes();
    followBlur();
}

SidebarPanel::~SidebarPanel()
{
    // The views go before the model that they show, and what they held open is open no longer.
    disconnect(this, &QWindow::activeChanged, this, nullptr);
    m_keyboard.reset();
    delete rootObject();
    m_uiState.setKeepOpen(false);
    m_uiState.setPressed(false);
    m_desktop.watchPresses(false);
}

QUrl SidebarPanel::viewSource()
{
    return QUrl(u"qrc:/qt/qml/Randblatt/Sidebar/SidebarView.qml"_s);
}

bool SidebarPanel::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto *press = static_cast<QMouseEvent *>(event);
        m_uiState.setPressed(true);
        // The right button opens what it closes.
        if (press->button() != Qt::RightButton)
            followPress(press->position());
        break;
    }
    case QEvent::MouseButtonRelease:
        m_uiState.setPressed(static_cast<QMouseEvent *>(event)->buttons() != Qt::NoButton);
        break;
    case QEvent::KeyPress:
        // Wherever in the panel the keyboard is.
        if (static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape && m_popups.isEmpty() &&
            !quickArea().isEmpty()) {
            closeOpen();
            return true;
        }
        break;
    case QEvent::Resize:
        followShapes();
        break;
    case QEvent::Show:
        // At once, on the thread that draws: this one may be at work on the contents.
        if (lcPanel().isDebugEnabled())
            connect(
                this, &QQuickWindow::frameSwapped, this, [] { qCDebug(lcPanel, "Bild gezeigt"); },
                static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
        break;
    case QEvent::Hide:
        m_uiState.setPressed(false);
        break;
    default:
        break;
    }
    return QQuickView::event(event);
}

void SidebarPanel::followPress(const QPointF &place)
{
    const auto lies = [&](const RoundedShape &shape) { return shape.rect.contains(place); };
    if (quickArea().contains(place.toPoint()) || std::any_of(m_popups.begin(), m_popups.end(), lies))
        return;
    // Popups close by themselves if the press reaches the window.
    if (m_inputRegion.contains(place.toPoint()))
        QMetaObject::invokeMethod(rootObject(), "closeQuick");
    else
        closeOpen();
}

void SidebarPanel::closeOpen()
{
    closePopups(*this);
    QMetaObject::invokeMethod(rootObject(), "closeQuick");
}

void SidebarPanel::followCompositing()
{
    rootObject()->setProperty("composited", m_desktop.isComposited());
    followShapes();
    followBlur();
}

void SidebarPanel::followPopups()
{
    if (const auto popups = popupShapes(*this); popups != m_popups) {
        m_popups = popups;
        followShapes();
    }
}

void SidebarPanel::followShapes()
{
    if (rootObject() == nullptr)
        return;
    const QRegion seen = seenRegion();
    applyShape(seen);
    applyInput(seen);
    m_desktop.watchPresses(isVisible() && (!m_popups.isEmpty() || !quickArea().isEmpty()));
}

QRegion SidebarPanel::seenRegion() const
{
    QRegion seen = region("cardShapes") + roundedRegion(quickArea(), quickRadius);
    for (const RoundedShape &popup : m_popups)
        seen += roundedRegion(popup.rect.toAlignedRect(), popup.radius);
    return seen & QRect(QPoint(), size());
}

void SidebarPanel::applyShape(const QRegion &seen)
{
    const bool isCut = !m_desktop.isComposited();
    // A mask that is not ours is left alone.
    if (isCut || m_isCut)
        setMask(isCut ? seen : QRegion());
    m_isCut = isCut;
}

void SidebarPanel::applyInput(const QRegion &seen)
{
    QRegion wanted = seen;
    if (!m_desktop.knowsPointerEverywhere() && !m_settings.alwaysVisible())
        wanted += QRect(0, 0, width(), seen.boundingRect().bottom() + 1);
    if (wanted == m_inputRegion)
        return;
    m_inputRegion = wanted;
    Q_EMIT inputRegionChanged();
}

QRect SidebarPanel::quickArea() const
{
    return rootObject()->property("quickShape").toRectF().toAlignedRect();
}

void SidebarPanel::followBlur()
{
    const QRegion wanted = m_desktop.isComposited() ? region("blurShapes") : QRegion();
    if (wanted == m_blurRegion)
        return;
    m_blurRegion = wanted;
    Q_EMIT blurRegionChanged();
}

QRegion SidebarPanel::region(const char *shapes) const
{
    QList<QRectF> cards;
    const auto values = rootObject()->property(shapes).toList();
    for (const QVariant &value : values)
        cards.append(value.toRectF());
    return cardRegion(cards, size());
}

} // namespace randblatt
