#pragma once

#include <QUrl>

namespace randblatt {

/// Where the music service is reached: base URLs to which the paths are appended.
struct ServiceHosts
{
    QUrl accounts;
    QUrl api;
    QUrl sdk;

    /// The service's public hosts, each overridden by RANDBLATT_ACCOUNTS_URL, RANDBLATT_API_URL or
    /// RANDBLATT_SDK_URL in the environment, for development and tests.
    [[nodiscard]] static ServiceHosts fromEnvironment();
};

} // namespace randblatt
