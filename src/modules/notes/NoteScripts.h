#pragma once

#include "modules/notes/NoteSummary.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// The scripts that the notes module runs, and how their results are read.
namespace randblatt::notescripts {

/// Every folder's name.
[[nodiscard]] QString listFolders();
/// Id and name of at most `limit` notes of a folder, or of the account.
[[nodiscard]] QString listNotes(const std::optional<QString> &folder, int limit);
/// A note's body as HTML.
[[nodiscard]] QString readBody(const QString &id);
/// A new note in the default folder; `title` and `body` are plain text.
[[nodiscard]] QString createNote(const QString &title, const QString &body);
/// Replaces a note's whole body; `title` and `body` are plain text.
[[nodiscard]] QString setBody(const QString &id, const QString &title, const QString &body);
[[nodiscard]] QString deleteNote(const QString &id);
/// The name of the folder that a note is in.
[[nodiscard]] QString folderOfNote(const QString &id);
/// Moves a note, which may be a deleted one, into a folder, or without one into the default folder.
[[nodiscard]] QString moveNote(const QString &id, const std::optional<QString> &folder);

/// The notes in the result of listNotes(), at most `limit`. Records without two fields are skipped.
[[nodiscard]] QList<NoteSummary> notes(const QString &result, int limit);
/// The names in the result of listFolders(), as many as anyone can choose from.
[[nodiscard]] QStringList folders(const QString &result);

} // namespace randblatt::notescripts
