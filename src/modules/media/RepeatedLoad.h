#pragma once

#include <QDeadlineTimer>
#include <QString>

namespace randblatt {

/// How the loading of a list fares: what stands in its way, and when it is to be tried again.
class RepeatedLoad
{
public:
    /// Why the list is not known, or not as a whole, in German; empty where it is.
    [[nodiscard]] QString problem() const { return m_problem; }
    /// Whether it is to be tried again now, as the service answers.
    [[nodiscard]] bool isDue() const { return m_repeats && m_notBefore.hasExpired(); }

    /// `repeats`: another try may succeed. The first is due at once, the next after growing pauses.
    void fail(const QString &problem, bool repeats);
    void succeed() { *this = {}; }
    /// It is being tried.
    void begin() { m_repeats = false; }

private:
    QString m_problem;
    bool m_repeats = false;
    int m_failures = 0;
    QDeadlineTimer m_notBefore{0};
};

} // namespace randblatt
