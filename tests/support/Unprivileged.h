#pragma once

#include <QString>
#include <QtGlobal>

#include <sys/stat.h>
#include <unistd.h>

namespace randblatt {

/// Makes the superuser an ordinary user for as long as it lives, so that permissions hold in tests; `folder`
/// becomes that user's. Any other user stays who he is.
class Unprivileged
{
public:
    explicit Unprivileged(const QString &folder)
        : m_was(::geteuid())
    {
        constexpr uid_t nobody = 65534;
        if (m_was == 0 && (::chown(qPrintable(folder), nobody, nobody) != 0 || ::seteuid(nobody) != 0))
            qFatal("Der Test kann seine Rechte nicht abgeben.");
    }
    ~Unprivileged()
    {
        if (::seteuid(m_was) != 0)
            qFatal("Der Test bekommt seine Rechte nicht zurück.");
    }
    Unprivileged(const Unprivileged &) = delete;
    Unprivileged &operator=(const Unprivileged &) = delete;

private:
    uid_t m_was;
};

} // namespace randblatt
