#pragma once

#include "settings/SettingsTypes.h"

#include <QStringView>

namespace randblatt {

/// The state of a task; on the board, its column.
enum class TodoStatus { backlog, doing, done };

/// A status with its stored string, its German label and the name of its symbol.
struct TodoStatusCase
{
    TodoStatus value;
    QLatin1StringView name;
    QStringView label;
    QStringView symbol;
};

template <>
inline constexpr std::array rawValues<TodoStatus>{
    TodoStatusCase{TodoStatus::backlog, QLatin1StringView("backlog"), u"Offen", u"circle"},
    TodoStatusCase{TodoStatus::doing, QLatin1StringView("doing"), u"In Arbeit", u"circle.lefthalf.filled"},
    TodoStatusCase{TodoStatus::done, QLatin1StringView("done"), u"Erledigt", u"checkmark.circle.fill"},
};

} // namespace randblatt
