#pragma once

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
                 const Desktop &desktop);
    ~SidebarPanel() override;

    /// The document of the sidebar view.
    [[nodiscard]] static QUrl viewSource();

    /// The part of the window behind which the desktop is to blur: the frosted cards.
    [[nodiscard]] QRegion blurRegion() const { return m_blurRegion; }

Q_SIGNALS:
    void blurRegionChanged();
    /// A view asks for the settings window.
    void openSettingsRequested();
    /// The user is done with the panel.
    void dismissRequested();

private Q_SLOTS:
    /// Where nothing blends the window with what lies behind it, cuts the window to the shapes of the cards.
    void applyShape();
    void followBlur();

private:
    [[nodiscard]] QRegion region(const char *shapes) const;
    void followCompositing();

    SidebarUIState &m_uiState;
    const Desktop &m_desktop;
    std::unique_ptr<PanelKeyboard> m_keyboard;
    SidebarModel *m_model;
    QRegion m_blurRegion;
};

} // namespace randblatt
