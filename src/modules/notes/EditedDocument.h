#pragma once

#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// The plain text of an editor's document: tells of what the user changes, and takes changes from elsewhere.
/// Large texts pass through here without being looked at by scripts, at each key.
class EditedDocument : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument *document READ document WRITE setDocument NOTIFY documentChanged FINAL)
    Q_PROPERTY(bool isTaking MEMBER m_isTaking FINAL)

public:
    using QObject::QObject;

    /// The editor's document; borrowed.
    [[nodiscard]] QQuickTextDocument *document() const { return m_document; }
    void setDocument(QQuickTextDocument *document);

    /// Makes the document's text `text` by changing only what differs: the cursor keeps its place, and the
    /// change can be undone. Line ends of any kind become line feeds.
    Q_INVOKABLE void take(const QString &text);

Q_SIGNALS:
    void documentChanged();
    /// The text became this one, and not by take() or while `isTaking`. Lines end with line feeds.
    void edited(const QString &text);

private:
    void follow();

    QPointer<QQuickTextDocument> m_document;
    QString m_text;
    bool m_isTaking = false;
};

} // namespace randblatt
