#include "platform/wayland/WaylandSession.h"
#include "support/TestEnvironment.h"

#include <QTemporaryDir>
#include <QTest>

#include <wayland-server.h>

#include <atomic>
#include <thread>

using namespace randblatt;

extern "C" const wl_interface zwlr_layer_shell_v1_interface;

namespace {

/// A compositor that announces an output and, if it has it, the layer shell.
class Compositor
{
public:
    explicit Compositor(bool hasLayerShell)
        : m_display(wl_display_create())
    {
        qputenv("WAYLAND_DISPLAY", wl_display_add_socket_auto(m_display));
        const auto refuse = [](wl_client *client, void *, uint32_t, uint32_t) {
            wl_client_post_no_memory(client);
        };
        wl_global_create(m_display, &wl_output_interface, 1, nullptr, refuse);
        if (hasLayerShell)
            wl_global_create(m_display, &zwlr_layer_shell_v1_interface, 1, nullptr, refuse);
        m_thread = std::thread([this] {
            while (!m_ends) {
                wl_event_loop_dispatch(wl_display_get_event_loop(m_display), 10);
                wl_display_flush_clients(m_display);
            }
        });
    }
    ~Compositor()
    {
        m_ends = true;
        m_thread.join();
        wl_display_destroy_clients(m_display);
        wl_display_destroy(m_display);
    }
    Compositor(const Compositor &) = delete;
    Compositor &operator=(const Compositor &) = delete;

private:
    wl_display *m_display;
    std::atomic<bool> m_ends = false;
    std::thread m_thread;
};

} // namespace

class WaylandSessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_runtime.isValid());
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtime.path()));
        qunsetenv("WAYLAND_DISPLAY");
        qunsetenv("WAYLAND_SOCKET");
    }

    void asksTheCompositor()
    {
        {
            const Compositor compositor(true);
            QVERIFY(offersLayerShell());
        }
        const Compositor compositor(false);
        QVERIFY(!offersLayerShell());
    }

    void isFalseWithoutACompositor()
    {
        QVERIFY(!offersLayerShell());
        qputenv("WAYLAND_DISPLAY", "wayland-of-nobody");
        QVERIFY(!offersLayerShell());
    }

    void leavesAnInheritedConnectionAlone()
    {
        const Compositor compositor(true);
        qputenv("WAYLAND_SOCKET", "0");
        QVERIFY(!offersLayerShell());
        QVERIFY(qEnvironmentVariableIsSet("WAYLAND_SOCKET"));
    }

private:
    QTemporaryDir m_runtime;
};

RANDBLATT_TEST_MAIN(WaylandSessionTest, QCoreApplication)
#include "tst_waylandsession.moc"
