#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

namespace randblatt {

/// A plain text that is being edited, with what can be undone and redone in it. Modules own their texts and
/// editors only show them, so that both outlive the editor. Lines end with line feeds. To be used on the main
/// thread.
class EditedText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Modules have it.")
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY canUndoChanged FINAL)

public:
    /// `length` characters at `at` became `inserted`.
    struct Change
    {
        qsizetype at = 0;
        qsizetype length = 0;
        QString inserted;
    };

    using QObject::QObject;

    /// Line ends of any kind become line feeds.
    [[nodiscard]] static QString withLineFeeds(QString text);
    /// What a person may put in: line ends become line feeds, and control characters but tabs go.
    [[nodiscard]] static QString cleaned(const QString &text);
    /// The smallest change that leads from one text to the other.
    [[nodiscard]] static Change difference(QStringView from, QStringView to);

    [[nodiscard]] const QString &text() const { return m_text; }
    /// Starts over with `text`: there is nothing to undo.
    void load(const QString &text);
    /// The text became this one elsewhere. Can be undone.
    void take(const QString &text);
    /// Goes back to a text from before the first step that could be undone. Can be redone.
    void stepBack(const QString &text);
    /// The user's own change. Characters that are typed one after another are one step, up to a word's end.
    void replace(const Change &change);
    /// The user's own change: adds lines at the end.
    void append(const QString &lines);
    /// What was undone or redone; none where there was nothing.
    std::optional<Change> undo();
    std::optional<Change> redo();
    [[nodiscard]] bool canUndo() const { return !m_undo.empty(); }

    /// Where the cursor was, for the next editor.
    [[nodiscard]] qsizetype cursor() const { return m_cursor; }
    void setCursor(qsizetype cursor) { m_cursor = cursor; }

Q_SIGNALS:
    void loaded();
    /// After every change but load().
    void replaced(const randblatt::EditedText::Change &change);
    /// The user changed the text: by replace(), undo() or redo().
    void edited(const QString &text);
    void canUndoChanged();

private:
    struct Step
    {
        qsizetype at;
        QString removed;
        QString inserted;
    };

    void apply(const Change &change);
    void remember(Step step);
    [[nodiscard]] bool continues(const Step &step) const;
    [[nodiscard]] std::optional<Change> turn(std::vector<Step> &from, std::vector<Step> &to);

    QString m_text;
    std::vector<Step> m_undo;
    std::vector<Step> m_redo;
    /// Whether the latest step may grow.
    bool m_isOpen = false;
    qsizetype m_cursor = 0;
};

} // namespace randblatt
