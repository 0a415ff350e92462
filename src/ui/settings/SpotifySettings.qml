import QtQuick

import Randblatt.Forms
import Randblatt.Settings

// The tab for the music service: the client ID and, where there is an account object, connecting it.
FormScroll {
    id: root

    required property AppSettings settings
    // Has isAuthorized, lastError, signIn() and signOut(); null where there is nothing to connect.
    property var account: null

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
}
