#pragma once

#include "modules/notes/EditedText.h"
#include "modules/notes/TextPieces.h"

#include <QObject>
#include <QPointer>
#include <QQuickItem>
#include <QTextDocument>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace randblatt {

/// Joins an editor's document and the text that it shows: what the user does to the one becomes the other's.
///
/// An editor lays out whole paragraphs, so a very long one is shown in pieces, each a paragraph of the
/// document (PieceBreaks). A long text is shown up to what is seen first, and then bit by bit.
class EditedDocument : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *editor READ editor WRITE setEditor NOTIFY editorChanged FINAL)
    Q_PROPERTY(randblatt::EditedText *text READ text WRITE setText NOTIFY textChanged FINAL)

public:
    explicit EditedDocument(QObject *parent = nullptr);

    /// A TextEdit for plain text, of which nothing else changes the text; borrowed. What it would undo, copy
    /// and paste by itself goes by the text.
    [[nodiscard]] QQuickItem *editor() const { return m_editor; }
    void setEditor(QQuickItem *editor);
    /// Borrowed.
    [[nodiscard]] EditedText *text() const { return m_text; }
    void setText(EditedText *text);

    /// The user moved the cursor.
    Q_INVOKABLE void keepCursor();

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void editorChanged();
    void textChanged();

private:
    /// A change of the document that is not in the text yet: what was from `from` to `oldEnd` is now from
    /// `from` to `newEnd`.
    struct Range
    {
        int from;
        int oldEnd;
        int newEnd;
    };

    void show();
    void showMore(qsizetype least);
    void noteChange(int from, int removed, int added);
    void follow();
    void narrow(Range &range) const;
    void followText(const EditedText::Change &change);
    void replace(int from, int end, const QString &text);
    void evenOut(int from, int end);
    [[nodiscard]] QString shown(int from, int end) const;

    [[nodiscard]] bool handleKey(const QKeyEvent &key);
    [[nodiscard]] bool handleRelease(const QMouseEvent &mouse);
    void skipBreak(const QKeyEvent &key);
    [[nodiscard]] EditedText::Change selection() const;
    void insert(const QString &text);
    void moveCursor(qsizetype offset);
    void cleanPrimarySelection() const;

    QPointer<QQuickItem> m_editor;
    QPointer<QTextDocument> m_document;
    QPointer<EditedText> m_text;
    PieceBreaks m_breaks;
    /// The document's length, and how much of the text it shows.
    int m_length = 0;
    qsizetype m_shown = 0;
    std::optional<Range> m_changed;
    bool m_isApplying = false;
    QTimer m_more;
};

} // namespace randblatt
