#pragma once

#include "platform/Desktop.h"
#include "platform/LoginItem.h"
#include "platform/PanelWindow.h"
#include "settings/SidebarModule.h"
#include "ui/forms/WindowController.h"

#include <QStringList>

#include <memory>

namespace randblatt {

/// A desktop whose screens and pointer the test sets.
class FakeDesktop : public Desktop
{
    Q_OBJECT

public:
    QList<Screen> connected;
    std::optional<QPointF> pointer = QPointF(700, 450);
    bool composited = true;
    bool reportsMotion = false;
    bool buttonHeld = false;
    bool dragging = false;
    /// What watchPointer() named last.
    QList<PointerArea> watched;

    [[nodiscard]] QList<Screen> screens() const override { return connected; }
    [[nodiscard]] std::optional<Screen> mainScreen() const override
    {
        return connected.isEmpty() ? std::nullopt : std::optional(connected.first());
    }
    [[nodiscard]] std::optional<QPointF> pointerLocation() const override { return pointer; }
    [[nodiscard]] bool reportsPointerMotion() const override { return reportsMotion; }
    [[nodiscard]] bool isComposited() const override { return composited; }
    [[nodiscard]] bool isButtonHeld() const override { return buttonHeld; }
    [[nodiscard]] bool isDragging() const override { return dragging; }
    void watchPointer(const QList<PointerArea> &areas) override { watched = areas; }

    /// 1440 × 900 points with a panel of 25 points at the top and one at the bottom.
    [[nodiscard]] static Screen primaryScreen()
    {
        return {QStringLiteral("primary"), QRectF(0, 0, 1440, 900), QRectF(0, 25, 1440, 850)};
    }
    /// 1920 × 1080 points to the right of the primary screen.
    [[nodiscard]] static Screen rightScreen()
    {
        return {QStringLiteral("right"), QRectF(1440, 0, 1920, 1080), QRectF(1440, 0, 1920, 1080)};
    }
};

/// What happened to the panels that a test made; it outlives them.
struct PanelRecord
{
    int made = 0;
    int alive = 0;
    bool onScreen = false;
    int timesKey = 0;
    int timesResigned = 0;
    QList<QRectF> frames;
    double alpha = 1.0;
};

/// A panel window that only remembers.
class RecordingPanel : public PanelWindow
{
public:
    explicit RecordingPanel(std::shared_ptr<PanelRecord> record)
        : m_record(std::move(record))
    {
        ++m_record->made;
        ++m_record->alive;
    }
    ~RecordingPanel() override { --m_record->alive; }

    void setFrame(const QRectF &frame) override
    {
        m_frame = frame;
        m_record->frames.append(frame);
    }
    [[nodiscard]] QRectF frame() const override { return m_frame; }
    void setAlpha(double alpha) override { m_record->alpha = alpha; }
    [[nodiscard]] double alpha() const override { return m_record->alpha; }
    void orderFront() override { m_record->onScreen = true; }
    void orderOut() override { m_record->onScreen = false; }
    void makeKey() override { ++m_record->timesKey; }
    void resignKey() override { ++m_record->timesResigned; }

private:
    std::shared_ptr<PanelRecord> m_record;
    QRectF m_frame;
};

/// A login item that remembers what it was told, and fails when it is to.
class FakeLoginItem : public LoginItem
{
public:
    bool registered = true;
    std::optional<QString> error;
    QStringList calls;

    [[nodiscard]] bool isRegistered() const override { return registered; }
    [[nodiscard]] bool hasEntry() const override { return registered; }
    std::optional<QString> registerItem() override { return call(QStringLiteral("register"), true); }
    std::optional<QString> unregisterItem() override { return call(QStringLiteral("unregister"), false); }

private:
    std::optional<QString> call(const QString &name, bool outcome)
    {
        calls.append(name);
        if (!error)
            registered = outcome;
        return error;
    }
};

/// A window that only counts how often it was shown.
class RecordingWindow : public WindowController
{
public:
    explicit RecordingWindow(int &shown)
        : m_shown(shown)
    {
    }

    void show() override { ++m_shown; }
    [[nodiscard]] QWindow *window() const override { return nullptr; }

private:
    int &m_shown;
};

/// A module that is nothing but its id, with the view at `source`.
class FakeModule : public SidebarModule
{
    Q_OBJECT

public:
    explicit FakeModule(QString id, ViewDescription view = {})
        : m_id(std::move(id))
        , m_view(std::move(view))
    {
    }

    [[nodiscard]] QString id() const override { return m_id; }
    [[nodiscard]] QString title() const override { return m_id.toUpper(); }
    [[nodiscard]] QString systemImage() const override { return QStringLiteral("checklist"); }
    [[nodiscard]] ViewDescription makeView() const override { return m_view; }

    /// The four modules of the application in their standard order.
    [[nodiscard]] static std::vector<std::unique_ptr<SidebarModule>> all(const ViewDescription &view = {})
    {
        std::vector<std::unique_ptr<SidebarModule>> modules;
        for (const auto &id : {QStringLiteral("todo"), QStringLiteral("calendar"), QStringLiteral("notes"),
                               QStringLiteral("spotify")})
            modules.push_back(std::make_unique<FakeModule>(id, view));
        return modules;
    }

private:
    QString m_id;
    ViewDescription m_view;
};

} // namespace randblatt
