#pragma once

#include <QString>

#include <optional>

namespace randblatt {

/// Whether the application is started when the user logs in.
class LoginItem
{
public:
    LoginItem() = default;
    virtual ~LoginItem() = default;
    LoginItem(const LoginItem &) = delete;
    LoginItem &operator=(const LoginItem &) = delete;

    /// Whether this very application starts at login.
    [[nodiscard]] virtual bool isRegistered() const = 0;
    /// Whether anything is registered in its name, as by an older one in another place.
    [[nodiscard]] virtual bool hasEntry() const = 0;
    /// Registers the application; a failure comes back as a message for the log, success as none.
    virtual std::optional<QString> registerItem() = 0;
    /// Takes the registration back; a failure comes back as a message for the log, success as none.
    virtual std::optional<QString> unregisterItem() = 0;
};

} // namespace randblatt
