#include "platform/ExceptionText.h"

#include <exception>
#include <new>

namespace randblatt {

using namespace Qt::StringLiterals;

QString currentExceptionText()
{
    try {
        throw;
    } catch (const std::bad_alloc &) {
        return u"Zu wenig Arbeitsspeicher."_s;
    } catch (const std::exception &exception) {
        return u"Unerwarteter Fehler: %1"_s.arg(QString::fromLocal8Bit(exception.what()));
    } catch (...) {
        return u"Unerwarteter Fehler."_s;
    }
}

} // namespace randblatt
