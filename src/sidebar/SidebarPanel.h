#pragma once

#include "sidebar/PanelPopups.h"

#include <QQuickView>

#include <memory>

namespace randblatt {

class AppSettings;
class Desktop;
class ModuleRegistry;
class PanelKeyboard;
class SidebarModel;
class SidebarUIState;

/// The panel's window with its content, the sidebar view. How the desktop handles the window is the concern
/// of whatever PanelWindow it is given to.
class SidebarPanel : public QQuickView
{
    Q_OBJECT

public:
    /// Everything is borrowed and must outlive the panel.
    SidebarPanel(QQmlEngine &engine, AppSettings &settings, ModuleRegistry &registry, SidebarUIState &uiState,
                 Desktop &desktop);
    ~SidebarPanel() override;

    /// The document of the sidebar view.
    [[nodiscard]] static QUrl viewSource();

    /// The part of the window that takes pointer and clicks: cards and what lies over them. Where the desktop
    /// tells of the pointer only there, and the panel hides when it leaves, also the gaps between the cards.
    [[nodiscard]] QRegion inputRegion() const { return m_inputRegion; }
    /// A mouse button was pressed at this place of the window or beyond it: what is open elsewhere closes.
    void followPress(const QPointF &place);

    /// The part of the window behind which the desktop is to blur: the frosted cards.
    [[nodiscard]] QRegion blurRegion() const { return m_blurRegion; }

protected:
    bool event(QEvent *event) override;

Q_SIGNALS:
    void inputRegionChanged();
    void blurRegionChanged();
    /// A view asks for the settings window.
    void openSettingsRequested();
    /// The user is done with the panel.
    void dismissRequested();

private Q_SLOTS:
    void followShapes();
    void followBlur();

private:
    [[nodiscard]] QRegion region(const char *shapes) const;
    [[nodiscard]] QRect quickArea() const;
    [[nodiscard]] QRegion seenRegion() const;
    /// Where nothing blends the window with what lies behind it, cuts the window to what there is to see.
    void applyShape(const QRegion &seen);
    void applyInput(const QRegion &seen);
    void followPopups();
    void followCompositing();
    void closeOpen();

    const AppSettings &m_settings;
    SidebarUIState &m_uiState;
    Desktop &m_desktop;
    std::unique_ptr<PanelKeyboard> m_keyboard;
    SidebarModel *m_model;
    QList<RoundedShape> m_popups;
    bool m_isCut = false;
    QRegion m_inputRegion;
    QRegion m_blurRegion;
};

} // namespace randblatt
