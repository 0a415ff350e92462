#include "app/WarmUp.h"

#include "platform/ExceptionText.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QOpenGLContext>
#include <QQuickWindow>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

template <typename Work>
std::unique_ptr<QThread> started(Work work)
{
    std::unique_ptr<QThread> thread(QThread::create([work] {
        try {
            work();
        } catch (...) {
            qWarning("Vorbereitung abgebrochen: %ls", qUtf16Printable(currentExceptionText()));
        }
    }));
    thread->start();
    return thread;
}

/// Other platforms load their driver when the application object is made, or share it less well.
bool drawsWithGlx()
{
    return QGuiApplication::platformName() == "xcb"_L1 && QQuickWindow::sceneGraphBackend() != "software"_L1;
}

} // namespace

WarmUp::WarmUp()
    : m_fonts(started([] { return QFontMetricsF(QFont()).horizontalAdvance(u"Quillbar"_s); }))
    , m_graphics(drawsWithGlx() ? started([] { return QOpenGLContext().create(); }) : nullptr)
{
}

WarmUp::~WarmUp()
{
    finishGraphics();
    m_fonts->wait();
}

void WarmUp::finishGraphics()
{
    if (m_graphics)
        m_graphics->wait();
}

} // namespace randblatt
