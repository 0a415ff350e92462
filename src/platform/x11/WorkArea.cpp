#include "platform/x11/WorkArea.h"

#include <algorithm>

namespace randblatt {

namespace {

int pixels(quint32 number)
{
    // X coordinates are 16 bits wide; more is a mistake of the client, and must not overflow the sums.
    return static_cast<int>(std::min(number, quint32(0x7fff)));
}

bool covers(const Strut::Range &range, int first, int last)
{
    return range.first <= last && range.last >= first;
}

} // namespace

std::optional<Strut> strutFromProperty(const QList<quint32> &numbers, const QSize &root)
{
    if (numbers.size() != 4 && numbers.size() != 12)
        return std::nullopt;
    Strut strut{.left = pixels(numbers[0]),
                .right = pixels(numbers[1]),
                .top = pixels(numbers[2]),
                .bottom = pixels(numbers[3]),
                .leftRange = {0, root.height() - 1},
                .rightRange = {0, root.height() - 1},
                .topRange = {0, root.width() - 1},
                .bottomRange = {0, root.width() - 1}};
    if (numbers.size() == 12) {
        const auto range = [&](qsizetype index) {
            return Strut::Range{pixels(numbers[index]), pixels(numbers[index + 1])};
        };
        strut.leftRange = range(4);
        strut.rightRange = range(6);
        strut.topRange = range(8);
        strut.bottomRange = range(10);
    }
    return strut;
}

QRect workArea(const QRect &monitor, const QSize &root, const QList<Strut> &struts)
{
    int left = monitor.left();
    int right = monitor.right();
    int top = monitor.top();
    int bottom = monitor.bottom();
    for (const Strut &strut : struts) {
        if (strut.left <= monitor.right() && covers(strut.leftRange, monitor.top(), monitor.bottom()))
            left = std::max(left, strut.left);
        if (root.width() - strut.right > monitor.left() &&
            covers(strut.rightRange, monitor.top(), monitor.bottom()))
            right = std::min(right, root.width() - strut.right - 1);
        if (strut.top <= monitor.bottom() && covers(strut.topRange, monitor.left(), monitor.right()))
            top = std::max(top, strut.top);
        if (root.height() - strut.bottom > monitor.top() &&
            covers(strut.bottomRange, monitor.left(), monitor.right()))
            bottom = std::min(bottom, root.height() - strut.bottom - 1);
    }
    const QRect area(QPoint(left, top), QPoint(right, bottom));
    return area.isEmpty() ? monitor : area;
}

std::optional<QRect> listedWorkArea(const QRect &monitor, const QList<quint32> &numbers)
{
    std::optional<QRect> best;
    for (qsizetype i = 0; i + 3 < numbers.size(); i += 4) {
        const QRect listed(static_cast<int>(numbers[i]), static_cast<int>(numbers[i + 1]),
                           static_cast<int>(numbers[i + 2]), static_cast<int>(numbers[i + 3]));
        const QRect common = listed & monitor;
        if (common.isEmpty())
            continue;
        if (!best || common.width() * common.height() > best->width() * best->height())
            best = common;
    }
    return best;
}

} // namespace randblatt
