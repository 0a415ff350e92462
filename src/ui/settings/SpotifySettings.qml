import QtQuick

import Randblatt.Forms
import Randblatt.Settings

// The tab for the music service: the client ID, connecting the account, and why nothing plays on this device.
FormScroll {
    id: root

    required property AppSettings settings
    // Has auth with isAuthorized, lastError, signIn() and signOut(), and webPlayer with problem; null where
    // there is nothing to connect.
    property var media: null
    readonly property var account: media?.auth ?? null
    readonly property string problem: media?.webPlayer?.problem ?? ""

    FormSection {
        heading: "Zugang"

        FormRow {
            text: "Client-ID"

            FormTextField {
                objectName: "spotifyClientID"
                width: parent.width
                name: "Client-ID"
                placeholderText: "Keine eigene Client-ID"
                inputMethodHints: Qt.ImhNoAutoUppercase | Qt.ImhNoPredictiveText
                text: root.settings.spotifyClientID
                onTextEdited: root.settings.spotifyClientID = text.trim()
            }
        }

        FormText {
            x: FormStyle.rowPadding
            width: parent.width - 2 * x
            bottomPadding: 14
            text: "Quillbar bringt eine Client-ID mit. Deine eigene wird nur verwendet, wenn keine eingebaut ist: Lege dazu im Entwicklerbereich von Spotify eine App mit der Weiterleitungsadresse randblatt://callback an und trage ihre Client-ID hier ein."
            color: FormStyle.secondary
            font.pixelSize: FormStyle.captionSize
        }
    }

    FormSection {
        visible: root.account !== null
        heading: "Konto"

        FormRow {
            objectName: "accountState"
            text: root.account?.isAuthorized ? "Verbunden" : "Nicht verbunden"
            description: root.account?.lastError ?? ""

            FormButton {
                objectName: "connectAccount"
                anchors.right: parent.right
                text: root.account?.isAuthorized ? "Trennen" : "Verbinden"
                onClicked: root.account.isAuthorized ? root.account.signOut() : root.account.signIn()
            }
        }
    }

    FormSection {
        visible: root.problem !== ""
        heading: "Wiedergabe auf diesem Gerät"

        FormText {
            objectName: "playbackProblem"
            x: FormStyle.rowPadding
            width: parent.width - 2 * x
            topPadding: 14
            bottomPadding: 14
            text: root.problem
        }
    }
}
