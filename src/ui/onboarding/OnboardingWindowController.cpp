#include "ui/onboarding/OnboardingWindowController.h"

#include "settings/AppSettings.h"
#include "ui/forms/FormWindow.h"

#include <QQuickItem>

namespace randblatt {

using namespace Qt::StringLiterals;

OnboardingWindowController::OnboardingWindowController(QQmlEngine &engine, AppSettings &settings)
    : m_engine(engine)
    , m_settings(settings)
{
}

OnboardingWindowController::~OnboardingWindowController() = default;

void OnboardingWindowController::show()
{
    if (!m_window) {
        const QVariantMap tints{
            {u"todo"_s, moduleAccentColor(u"todo"_s)},
            {u"spotify"_s, moduleAccentColor(u"spotify"_s)},
            {u"notes"_s, moduleAccentColor(u"notes"_s)},
        };
        m_window = std::make_unique<FormWindow>(
            m_engine, FormWindow::Description{
                          QUrl(u"qrc:/qt/qml/Randblatt/Onboarding/OnboardingView.qml"_s),
                          {
                              {u"settings"_s, QVariant::fromValue(&m_settings)},
                              {u"accent"_s, sharedAccentColor()},
                              {u"tints"_s, tints},
                          },
                          u"Willkommen bei Quillbar"_s,
                          QSize(540, 596),
                          QSize(460, 400),
                      });
        if (m_window->rootObject() != nullptr)
            QObject::connect(m_window->rootObject(), SIGNAL(finished()), m_window.get(), SLOT(close()));
    }
    m_window->bringToFront();
}

QQuickView *OnboardingWindowController::window() const
{
    return m_window.get();
}

} // namespace randblatt
