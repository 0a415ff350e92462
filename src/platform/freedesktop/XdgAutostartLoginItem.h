#pragma once

#include "platform/LoginItem.h"

namespace randblatt {

/// Starts the application at login through an entry in the user's autostart folder (freedesktop.org Desktop
/// Application Autostart Specification).
class XdgAutostartLoginItem final : public LoginItem
{
public:
    /// The entry starts `executable`, an absolute path.
    explicit XdgAutostartLoginItem(QString executable);

    /// Whether the entry is there, not switched off, and starts this executable.
    [[nodiscard]] bool isRegistered() const override;
    /// Whether an entry is there and not switched off, whatever it starts.
    [[nodiscard]] bool hasEntry() const override;
    std::optional<QString> registerItem() override;
    std::optional<QString> unregisterItem() override;

    /// The entry's file.
    [[nodiscard]] static QString entryPath();

private:
    [[nodiscard]] QByteArray entry() const;

    QString m_executable;
};

} // namespace randblatt
