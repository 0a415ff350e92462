#pragma once

#include "settings/Draft.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class SpotifyService;

/// The playlist that the user is about to create: whether its name is being asked for, and what was typed.
/// Both outlive the view and the process; the name stays until there is a playlist of it.
class NewPlaylist : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The media module has the new playlist.")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed FINAL)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed FINAL)
    Q_PROPERTY(bool isCreating READ isCreating NOTIFY isCreatingChanged FINAL)
    Q_PROPERTY(QString failure READ failure NOTIFY failureChanged FINAL)

public:
    /// Both are borrowed and must outlive the object.
    NewPlaylist(Preferences &preferences, SpotifyService &service, QObject *parent = nullptr);

    /// Asks for the name.
    Q_INVOKABLE void open();
    /// No longer asks; what was typed is there the next time.
    Q_INVOKABLE void close();
    /// Creates the playlist, unless that is under way or the name is blank. Closes when it is there.
    Q_INVOKABLE void create();
    /// The account is another: nothing is under way any more.
    void reset();

    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] QString name() const;
    void setName(const QString &name);
    [[nodiscard]] bool isCreating() const { return m_isCreating; }
    /// Why it was not created, in German; empty where nothing failed.
    [[nodiscard]] QString failure() const { return m_failure; }

Q_SIGNALS:
    void changed();
    void isCreatingChanged();
    void failureChanged();

private:
    void created(const QString &name, const QString &failure);
    void setCreating(bool creating);
    void setFailure(const QString &failure);

    SpotifyService &m_service;
    Draft m_draft;
    bool m_isCreating = false;
    QString m_failure;
};

} // namespace randblatt
