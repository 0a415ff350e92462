#pragma once

#include <QList>
#include <QObject>

namespace randblatt {

class AppSettings;
class Desktop;
struct PointerArea;
class SidebarPanelController;
class SidebarUIState;

/// Tells the desktop where the edge trigger wants to know of the pointer: in the trigger zones of all screens
/// and, while the panel is up, in the band around it that keeps it up. While something is open in the panel
/// that a click elsewhere closes, that is everywhere.
class PointerWatch : public QObject
{
    Q_OBJECT

public:
    /// All arguments are borrowed and must outlive the watch.
    PointerWatch(const AppSettings &settings, Desktop &desktop, const SidebarPanelController &controller,
                 const SidebarUIState &uiState, QObject *parent = nullptr);

private:
    void follow();
    [[nodiscard]] QList<PointerArea> areas() const;

    const AppSettings &m_settings;
    Desktop &m_desktop;
    const SidebarPanelController &m_controller;
    const SidebarUIState &m_uiState;
};

} // namespace randblatt
