#pragma once

#include "modules/notes/EditedDocument.h"
#include "settings/AppSettings.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// Keeps an editor's text and the scratch pad of the settings the same: what is typed is stored at once, and
/// what is stored otherwise is shown.
class ScratchPad : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(randblatt::EditedDocument *document MEMBER m_document REQUIRED FINAL)
    Q_PROPERTY(randblatt::AppSettings *settings MEMBER m_settings REQUIRED FINAL)

public:
    using QObject::QObject;

    /// From now on. The editor shows the stored text already.
    Q_INVOKABLE void join();

private:
    QPointer<EditedDocument> m_document;
    QPointer<AppSettings> m_settings;
};

} // namespace randblatt
