#pragma once

#include <QLatin1StringView>
#include <QString>

#include <algorithm>
#include <array>
#include <optional>

namespace randblatt {

/// Where the pointer reveals the panel. The edge is the one on the sidebar's side.
enum class TriggerMode { corners, leftEdge, both };
/// The screen edge at which the panel appears.
enum class SidebarSide { left, right };
/// What the media card controls: the Spotify account, or whichever application plays.
enum class MediaSource { spotify, system };
/// What the notes card shows: the scratch pad, or the notes library.
enum class NotesMode { scratch, apple };
/// How the to-do card shows its tasks.
enum class TodoViewMode { list, kanban };

[[nodiscard]] constexpr bool coversCorners(TriggerMode mode)
{
    return mode != TriggerMode::leftEdge;
}

[[nodiscard]] constexpr bool coversEdge(TriggerMode mode)
{
    return mode != TriggerMode::corners;
}

/// A case of an enumeration with the string under which it is stored.
template <typename Enum>
struct RawValue
{
    Enum value;
    QLatin1StringView name;
};

// Compilers of a while ago do not find it for an aggregate.
template <typename Enum>
RawValue(Enum, QLatin1StringView) -> RawValue<Enum>;

/// The cases of an enumeration in declaration order.
template <typename Enum>
inline constexpr std::array<RawValue<Enum>, 0> rawValues{};

template <>
inline constexpr std::array rawValues<TriggerMode>{
    RawValue{TriggerMode::corners, QLatin1StringView("corners")},
    RawValue{TriggerMode::leftEdge, QLatin1StringView("leftEdge")},
    RawValue{TriggerMode::both, QLatin1StringView("both")},
};
template <>
inline constexpr std::array rawValues<SidebarSide>{
    RawValue{SidebarSide::left, QLatin1StringView("left")},
    RawValue{SidebarSide::right, QLatin1StringView("right")},
};
template <>
inline constexpr std::array rawValues<MediaSource>{
    RawValue{MediaSource::spotify, QLatin1StringView("spotify")},
    RawValue{MediaSource::system, QLatin1StringView("system")},
};
template <>
inline constexpr std::array rawValues<NotesMode>{
    RawValue{NotesMode::scratch, QLatin1StringView("scratch")},
    RawValue{NotesMode::apple, QLatin1StringView("apple")},
};
template <>
inline constexpr std::array rawValues<TodoViewMode>{
    RawValue{TodoViewMode::list, QLatin1StringView("list")},
    RawValue{TodoViewMode::kanban, QLatin1StringView("kanban")},
};

/// The stored string of a case.
template <typename Enum>
[[nodiscard]] QString rawString(Enum value)
{
    const auto &cases = rawValues<Enum>;
    return std::find_if(cases.begin(), cases.end(), [&](const auto &raw) { return raw.value == value; })
        ->name;
}

/// The case that is stored as `name`; none for an unknown string.
template <typename Enum>
[[nodiscard]] std::optional<Enum> fromRawString(const QString &name)
{
    const auto &cases = rawValues<Enum>;
    const auto it =
        std::find_if(cases.begin(), cases.end(), [&](const auto &raw) { return raw.name == name; });
    if (it == cases.end())
        return std::nullopt;
    return it->value;
}

} // namespace randblatt
