#include "ui/controls/EngineSetup.h"

#include "ui/controls/InputGuard.h"
#include "ui/controls/SymbolProvider.h"

#include <QQmlEngine>

namespace randblatt {

using namespace Qt::StringLiterals;

void prepareEngine(QQmlEngine &engine)
{
    engine.addImportPath(u"qrc:/qt/qml"_s);
    engine.addImageProvider(u"symbol"_s, new SymbolProvider);
    new InputGuard(&engine);
}

} // namespace randblatt
