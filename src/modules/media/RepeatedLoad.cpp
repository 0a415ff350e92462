#include "modules/media/RepeatedLoad.h"

#include <algorithm>
#include <chrono>

namespace randblatt {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::seconds firstPause = 8s;
constexpr std::chrono::seconds longestPause = 5min;
constexpr int longestAfter = 7;

} // namespace

void RepeatedLoad::fail(const QString &problem, bool repeats)
{
    m_problem = problem;
    m_repeats = repeats;
    const auto pause = firstPause * (1 << std::min(m_failures, longestAfter));
    m_notBefore = m_failures == 0 ? QDeadlineTimer(0) : QDeadlineTimer(std::min(pause / 2, longestPause));
    ++m_failures;
}

} // namespace randblatt
