pragma Singleton

import QtQuick

import Randblatt.Controls

// Lengths, text sizes and durations that recur, in points and milliseconds.
QtObject {
    // Text sizes, before the card's text scale.
    readonly property int bodySize: 13
    readonly property int calloutSize: 12
    readonly property int captionSize: 11
    readonly property int titleSize: 17

    // The left edge of everything in a card.
    readonly property int cardPadding: 14
    readonly property int tightGap: 6
    readonly property int gap: 10
    readonly property int wideGap: 12

    readonly property int rowRadius: 7
    readonly property int quickDuration: duration(120)

    // A length that goes with texts which no card scales, as large as the desktop wants them.
    function sized(length: real): real {
        return Math.round(length * Wishes.textScale * 4) / 4
    }

    // How long a motion takes: no time where the desktop wants little of it.
    function duration(milliseconds: int): int {
        return Wishes.reducedMotion ? 0 : milliseconds
    }
}
