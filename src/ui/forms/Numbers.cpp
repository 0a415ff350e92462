#include "ui/forms/Numbers.h"

#include <algorithm>
#include <cmath>

namespace randblatt {

QString Numbers::whole(double value)
{
    return QString::number(std::round(value), 'f', 0);
}

QString Numbers::twoDecimals(double value)
{
    return QString::number(value, 'f', 2);
}

QString Numbers::percent(double fraction)
{
    return whole(fraction * 100.0);
}

double Numbers::limited(double value, double from, double to)
{
    return std::isnan(value) ? from : std::clamp(value, from, to);
}

double Numbers::snapped(double value, double from, double to, double step)
{
    const double steps = std::round((limited(value, from, to) - from) / step);
    // The division gives the double nearest to the decimal number, which the sum alone is not always.
    const double decimals = 1e6;
    return std::min(std::round((from + steps * step) * decimals) / decimals, to);
}

} // namespace randblatt
