#pragma once

#include "settings/PreferenceValue.h"
#include "settings/StoreResult.h"

#include <QHash>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// What of the preferences is not on the disk, and why; and what was put aside. Views show it, in German, and
/// pass on what the user wants done about it.
class StoreHealth : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The preferences have it.")
    Q_PROPERTY(QString sentence READ sentence NOTIFY changed FINAL)
    Q_PROPERTY(QString asideSentence READ asideSentence NOTIFY asideChanged FINAL)

public:
    using Unsaved = QHash<StorePlace, StoreResult>;

    /// What is wrong with anything; empty while all is on the disk.
    [[nodiscard]] QString sentence() const;
    /// What is wrong with a module's values and drafts.
    [[nodiscard]] QString sentenceFor(const QString &moduleID) const;
    [[nodiscard]] const Unsaved &unsaved() const { return m_unsaved; }
    /// Tries at once to read and write what could not be.
    Q_INVOKABLE void retry() { Q_EMIT retryRequested(); }

    /// That a damaged file was put aside, and where; empty where none was, or the user knows.
    [[nodiscard]] QString asideSentence() const;
    [[nodiscard]] QString asidePath() const { return m_asidePath; }
    Q_INVOKABLE void openAsideFolder();
    /// The user knows.
    Q_INVOKABLE void dismissAside() { Q_EMIT asideDismissed(); }

    /// The module that a row belongs to; none where it belongs to the settings.
    [[nodiscard]] static QString moduleOf(const StorePlace &place);

    /// For the preferences. `unread` says why not all of what is stored could be read; ok where it was.
    void setUnsaved(const Unsaved &unsaved, StoreResult unread);
    void setAsidePath(const QString &path);

Q_SIGNALS:
    void changed();
    void asideChanged();
    void retryRequested();
    void asideDismissed();
    /// Everything that was written is on the disk.
    void synced();
    /// The folder is to be shown to the user.
    void folderRequested(const QString &path);
    /// A stored value came to light that could not be read before, or that somebody else wrote. Where the
    /// present value was not on the disk yet it stays, and goes there after this signal: whoever can joins
    /// both.
    void valueArrived(const QString &key, const randblatt::PreferenceValue &stored);
    void draftArrived(const QString &key);

private:
    Unsaved m_unsaved;
    StoreResult m_unread = StoreResult::ok;
    QString m_asidePath;
};

} // namespace randblatt
