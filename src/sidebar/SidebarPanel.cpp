#include "sidebar/SidebarPanel.h"

#include "platform/Desktop.h"
#include "settings/AppSettings.h"
#include "settings/ModuleRegistry.h"
#include "sidebar/CardRegion.h"
#include "sidebar/PanelKeyboard.h"
#include "sidebar/SidebarModel.h"
#include "sidebar/SidebarUIState.h"

#include <QLoggingCategory>
#include <QQmlEngine>
#include <QQmlProperty>
#include <QQuickItem>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

Q_LOGGING_CATEGORY(lcPanel, "quillbar.panel")

} // namespace

SidebarPanel::SidebarPanel(QQmlEngine &engine, AppSettings &settings, ModuleRegistry &registry,
                           SidebarUIState &uiState, const Desktop &desktop)
    : QQuickView(&engine, nullptr)
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
    QQmlProperty(rootObject(), u"cardShapes"_s).connectNotifySignal(this, SLOT(applyShape()));
    QQmlProperty(rootObject(), u"blurShapes"_s).connectNotifySignal(this, SLOT(followBlur()));
    // At once, on the thread that draws: this one may be at work on the contents.
    connect(
        this, &QQuickWindow::frameSwapped, this, [] { qCDebug(lcPanel, "Bild gezeigt"); },
        static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
    connect(&desktop, &Desktop::compositedChanged, this, &SidebarPanel::followCompositing);
    applyShape();
    followBlur();
}

SidebarPanel::~SidebarPanel()
{
    // The views go before the model that they show, and what they held open is open no longer.
    m_keyboard.reset();
    delete rootObject();
    m_uiState.setKeepOpen(false);
}

QUrl SidebarPanel::viewSource()
{
    return QUrl(u"qrc:/qt/qml/Randblatt/Sidebar/SidebarView.qml"_s);
}

void SidebarPanel::followCompositing()
{
    rootObject()->setProperty("composited", m_desktop.isComposited());
    applyShape();
    followBlur();
}

void SidebarPanel::applyShape()
{
    if (m_desktop.isComposited()) {
        setMask({});
        return;
    }
    setMask(region("cardShapes"));
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
