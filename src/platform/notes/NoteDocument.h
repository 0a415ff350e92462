#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <utility>

namespace randblatt {

/// A note as its file holds it: an HTML document whose title is the note's name and whose body is its text.
struct NoteDocument
{
    QString name;
    /// HTML, without the name.
    QString body;

    /// Reads any file. What is no HTML document of ours is taken as well as it goes: the body without what
    /// surrounds it, and the first line of the text as the name where there is no title.
    [[nodiscard]] static NoteDocument fromFile(const QByteArray &file);
    /// The name alone, from the first bytes of a file; none if the file has to be read further for it.
    [[nodiscard]] static std::optional<QString> nameFromHead(const QByteArray &head);
    [[nodiscard]] QByteArray toFile() const;

    /// The file with another name, and all the rest as it is; none if the name can't be written in the file's
    /// encoding.
    [[nodiscard]] static std::optional<QByteArray> renamed(const QByteArray &file, const QString &name);
    /// Whether the file is one that toFile() made of plain text, so that a document of other plain text loses
    /// nothing that it had.
    [[nodiscard]] static bool isOwn(const QByteArray &file);

    /// Name and rest of a body that begins with its name as a bold first line, as applications write it; none
    /// for other bodies.
    [[nodiscard]] static std::optional<NoteDocument> fromTitledBody(const QString &html);
    /// The first line of HTML that shows anything, as plain text, shortened to what a list can show.
    [[nodiscard]] static QString firstLine(const QString &html);

private:
    [[nodiscard]] QByteArray toFile(QLatin1StringView bodyOpening, QLatin1StringView bodyClosing) const;
};

} // namespace randblatt
