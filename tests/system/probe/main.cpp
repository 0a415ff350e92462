// A window for the system tests, driven by lines on standard input and answering with lines of JSON on
// standard output. Without arguments it is a panel; with "plain" an ordinary window of another application,
// which may be one on a Wayland desktop, and out of which text and links can be dragged.

#include "platform/x11/X11Desktop.h"
#include "platform/x11/X11PanelWindow.h"

#include <QDrag>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>
#include <QRasterWindow>
#include <QSocketNotifier>
#include <QUrl>

#include <cstdio>
#include <iostream>
#include <optional>
#include <string>

#include <unistd.h>

using namespace randblatt;
using namespace Qt::StringLiterals;

namespace {

/// Paints one colour, and keeps what was typed and clicked.
class ProbeWindow final : public QRasterWindow
{
public:
    explicit ProbeWindow(const QColor &colour)
        : m_colour(colour)
    {
    }

    QString typed;
    int clicks = 0;
    /// What can be dragged out of the window: text, or links.
    QString text;
    QList<QUrl> urls;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.fillRect(QRect(QPoint(), size()), m_colour);
    }
    void keyPressEvent(QKeyEvent *event) override { typed += event->text(); }
    void mousePressEvent(QMouseEvent *) override { ++clicks; }
    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (event->buttons() != Qt::LeftButton || (text.isEmpty() && urls.isEmpty()))
            return;
        auto *data = new QMimeData;
        if (!text.isEmpty())
            data->setText(text);
        if (!urls.isEmpty())
            data->setUrls(urls);
        auto *drag = new QDrag(this);
        drag->setMimeData(data);
        drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    }

private:
    QColor m_colour;
};

void print(const QJsonObject &answer)
{
    std::cout << QJsonDocument(answer).toJson(QJsonDocument::Compact).constData() << std::endl;
}

QJsonArray json(const QRectF &rect)
{
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

QJsonArray json(const QList<Screen> &screens)
{
    QJsonArray array;
    for (const Screen &screen : screens)
        array.append(QJsonObject{{u"id"_s, screen.id},
                                 {u"frame"_s, json(screen.frame)},
                                 {u"visibleFrame"_s, json(screen.visibleFrame)}});
    return array;
}

class Probe
{
public:
    explicit Probe(bool isPlain)
        : m_isPlain(isPlain)
    {
        if (QGuiApplication::platformName() == "xcb"_L1)
            m_desktop.emplace();
        auto window = std::make_unique<ProbeWindow>(isPlain ? Qt::blue : Qt::red);
        m_window = window.get();
        if (isPlain) {
            m_window->setTitle(u"Probe plain"_s);
            m_plain = std::move(window);
            m_plain->create();
        } else {
            m_window->setTitle(u"Probe panel"_s);
            m_panel = std::make_unique<X11PanelWindow>(std::move(window), m_desktop.value());
        }
        if (!m_desktop)
            return;
        QObject::connect(&*m_desktop, &Desktop::screensChanged, m_window, [this] {
            print({{u"event"_s, u"screens"_s}, {u"screens"_s, json(m_desktop->screens())}});
        });
        QObject::connect(&*m_desktop, &Desktop::compositedChanged, m_window, [this] {
            print({{u"event"_s, u"composited"_s}, {u"composited"_s, m_desktop->isComposited()}});
        });
    }

    void run(const QStringList &words)
    {
        const QString &command = words.first();
        QList<double> numbers;
        for (const QString &word : words.mid(1))
            numbers.append(word.toDouble());
        if (command == "quit"_L1)
            QCoreApplication::quit();
        else if (command == "carry"_L1)
            m_window->text = QUrl::fromPercentEncoding(words.value(1).toUtf8());
        else if (command == "carry-links"_L1)
            m_window->urls = QUrl::fromStringList(words.mid(1));
        else if (m_isPlain)
            runPlain(command, numbers);
        else
            runPanel(command, numbers);
        QJsonObject answer{{u"command"_s, command},
                           {u"window"_s, static_cast<qint64>(m_window->winId())},
                           {u"active"_s, m_window->isActive()},
                           {u"exposed"_s, m_window->isExposed()},
                           {u"size"_s, QJsonArray{m_window->width(), m_window->height()}},
                           {u"typed"_s, m_window->typed},
                           {u"clicks"_s, m_window->clicks}};
        if (m_desktop) {
            const auto pointer = m_desktop->pointerLocation();
            answer[u"composited"] = m_desktop->isComposited();
            answer[u"pointer"] = pointer ? QJsonValue(QJsonArray{pointer->x(), pointer->y()}) : QJsonValue();
            answer[u"screens"] = json(m_desktop->screens());
        }
        print(answer);
    }

private:
    void runPanel(const QString &command, const QList<double> &numbers)
    {
        if (command == "frame"_L1)
            m_panel->setFrame({numbers[0], numbers[1], numbers[2], numbers[3]});
        else if (command == "alpha"_L1)
            m_panel->setAlpha(numbers[0]);
        else if (command == "front"_L1)
            m_panel->orderFront();
        else if (command == "out"_L1)
            m_panel->orderOut();
        else if (command == "key"_L1)
            m_panel->makeKey();
        else if (command == "blur"_L1)
            m_panel->setBlurRegion(QRegion(QRectF(numbers[0], numbers[1], numbers[2], numbers[3]).toRect()));
    }

    void runPlain(const QString &command, const QList<double> &numbers)
    {
        if (command == "frame"_L1) {
            m_plain->setGeometry(QRectF(numbers[0], numbers[1], numbers[2], numbers[3]).toRect());
        } else if (command == "front"_L1) {
            m_plain->show();
        } else if (command == "fullscreen"_L1) {
            m_plain->showFullScreen();
        } else if (command == "strut"_L1) {
            QList<quint32> strut;
            for (const double number : numbers)
                strut.append(static_cast<quint32>(number));
            const X11Connection x11;
            x11.setNumbers(static_cast<xcb_window_t>(m_plain->winId()), x11.atom("_NET_WM_STRUT_PARTIAL"),
                           XCB_ATOM_CARDINAL, strut);
            xcb_flush(x11.xcb());
        }
    }

    /// None on a Wayland desktop.
    std::optional<X11Desktop> m_desktop;
    std::unique_ptr<X11PanelWindow> m_panel;
    std::unique_ptr<QWindow> m_plain;
    ProbeWindow *m_window;
    bool m_isPlain;
};

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    Probe probe(argc > 1 && std::string(argv[1]) == "plain");

    QByteArray pending;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
        char buffer[4096];
        const auto count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0)
            return QCoreApplication::quit();
        pending.append(buffer, count);
        for (auto end = pending.indexOf('\n'); end >= 0; end = pending.indexOf('\n')) {
            probe.run(QString::fromUtf8(pending.first(end)).split(u' '));
            pending.remove(0, end + 1);
        }
    });
    return QGuiApplication::exec();
}
