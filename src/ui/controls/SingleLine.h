#pragma once

#include <QValidator>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// For fields of one line: every text is acceptable, but line breaks and tabs in it become blanks, and other
/// control characters go. So a pasted list stays readable.
class SingleLine : public QValidator
{
    Q_OBJECT
    QML_ELEMENT

public:
    using QValidator::QValidator;

    State validate(QString &text, int &cursor) const override;
    /// The text without what has no place in a line; a run of line breaks becomes one blank.
    [[nodiscard]] static QString cleaned(const QString &text);
};

} // namespace randblatt
