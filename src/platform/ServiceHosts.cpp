#include "platform/ServiceHosts.h"

#include <QString>

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

QUrl host(const char *variable, const QString &publicHost)
{
    const QString override = qEnvironmentVariable(variable);
    return QUrl(override.isEmpty() ? publicHost : override);
}

} // namespace

ServiceHosts ServiceHosts::fromEnvironment()
{
    return {.accounts = host("RANDBLATT_ACCOUNTS_URL", u"https://accounts.spotify.com"_s),
            .api = host("RANDBLATT_API_URL", u"https://api.spotify.com"_s),
            .sdk = host("RANDBLATT_SDK_URL", u"https://sdk.scdn.co"_s)};
}

} // namespace randblatt
