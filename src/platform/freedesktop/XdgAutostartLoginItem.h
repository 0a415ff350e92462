#pragma once

#include "platform/LoginItem.h"

namespace randblatt {

/// A desktop entry in the user's autostart folder (Desktop Application Autostart Specification).
///
/// An entry that is hidden or switched off, or that starts another program, counts as not registered.
class XdgAutostartLoginItem final : public LoginItem
{
public:
    /// The entry lies in `folder` and starts `executable`, an absolute path.
    XdgAutostartLoginItem(const QString &folder, const QString &executable);

    /// The user's autostart folder.
    [[nodiscard]] static QString defaultFolder();

    [[nodiscard]] bool isRegistered() const override;
    std::optional<QString> registerItem() override;
    std::optional<QString> unregisterItem() override;

private:
    [[nodiscard]] QString execValue() const;

    QString m_path;
    QString m_executable;
};

} // namespace randblatt
