#include "app/IdleMemory.h"

#include <QCoreApplication>
#include <QEvent>

#include <chrono>

#include <malloc.h>

namespace randblatt {

using namespace std::chrono_literals;

namespace {

// By then the panel has slid in and everything is made, or a window's graphics have been put away.
constexpr auto settled = 3s;

void returnUnusedMemory()
{
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace

IdleMemory::IdleMemory(QObject *parent)
    : QObject(parent)
{
    m_settled.setSingleShot(true);
    m_settled.setInterval(settled);
    connect(&m_settled, &QTimer::timeout, this, &returnUnusedMemory);
    QCoreApplication::instance()->installEventFilter(this);
}

bool IdleMemory::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide && watched->isWindowType())
        returnLater();
    return false;
}

} // namespace randblatt
