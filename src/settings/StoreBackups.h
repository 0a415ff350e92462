#pragma once

#include <QDate>
#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class Preferences;

/// Copies of the preferences in a folder beside them, which only the user can read: one of each day on which
/// the program ran, the last seven of them, and the last of each of the last four weeks that have one.
/// The user can have one of them take the place of the present data at the next start.
class StoreBackups : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has them.")
    Q_PROPERTY(QStringList copies READ copies NOTIFY changed FINAL)
    Q_PROPERTY(QString chosen READ chosen NOTIFY changed FINAL)
    Q_PROPERTY(QString problem READ problem NOTIFY changed FINAL)

public:
    /// `preferences` is borrowed and must outlive the object. Today's copy is made a while after the start,
    /// beside the main thread, and with the first change of each day after it.
    explicit StoreBackups(Preferences &preferences, QObject *parent = nullptr);

    /// The copies' days, as in "2026-11-23", the latest first.
    [[nodiscard]] QStringList copies() const;
    /// A copy's day as people say it.
    [[nodiscard]] Q_INVOKABLE static QString label(const QString &copy);
    /// What takes the present data's place at the next start; empty for nothing.
    [[nodiscard]] QString chosen() const;
    /// Has the copy take the present data's place at the next start; those are kept under another name.
    Q_INVOKABLE void choose(const QString &copy);
    /// Leaves everything as it is at the next start.
    Q_INVOKABLE void unchoose();
    /// Why the last copy could not be made or chosen, in German; empty where it could.
    [[nodiscard]] QString problem() const { return m_problem; }

    /// Makes today's copy if there is none yet.
    void makeDue();

    /// Those of `days` whose copies are not to be kept.
    [[nodiscard]] static QList<QDate> outdated(QList<QDate> days);

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] QString folder() const;
    [[nodiscard]] QString pathOf(const QString &copy) const;
    void removeOutdated();
    void setProblem(const QString &problem);

    Preferences &m_preferences;
    QString m_problem;
    bool m_isCopying = false;
    QTimer m_afterStart;
};

} // namespace randblatt
