import QtQuick

import Randblatt.Controls

// Tells assistive tools a text that comes up in an item, and each other one that takes its place.
QtObject {
    id: root

    required property Item source
    required property string text
    // Interrupts what is being said.
    property bool isUrgent: false

    onTextChanged: Voice.say(source, text, isUrgent)
    Component.onCompleted: Voice.say(source, text, isUrgent)
}
