import QtQuick
import Randblatt.Theme

// Cards in the looks that the design editor can make, side by side.
Item {
    id: root

    property rgba cream
    property rgba ember

    cream {
        r: 1
        g: 0.93
        b: 0.8
    }

    ember {
        r: 1
        g: 0.35
        b: 0.2
    }

    Grid {
        x: 60
        y: 56
        columns: 4
        columnSpacing: 42
        rowSpacing: 46

        Look {
            caption: "Standard: klar, Abdunklung 0,7"
        }

        Look {
            caption: "Milchglas, sonst Standard"
            config.frosted: true
        }

        Look {
            caption: "Milchglas, Tönung und Beleuchtung"
            config.frosted: true
            config.tintStrength: 0.35
            config.darkness: 0.2
            config.lightsIntensity: 0.55
        }

        Look {
            caption: "Klar mit Tönung"
            config.tintStrength: 0.45
            config.darkness: 0.25
        }

        Look {
            caption: "Dunkler Text, Milchglas"
            config.frosted: true
            config.textWhite: false
            config.darkness: 0
        }

        Look {
            caption: "Dunkler Text, klar, helle Tönung"
            config.textWhite: false
            config.darkness: 0
            config.tint: root.cream
            config.tintStrength: 0.6
        }

        Look {
            caption: "Textgröße 0,7"
            config.textScale: 0.7
        }

        Look {
            caption: "Textgröße 1,6, Halo 1"
            brief: true
            config.textScale: 1.6
            config.haloStrength: 1
        }

        Look {
            caption: "Beleuchtung, Unschärfe 60"
            config.darkness: 0.1
            config.lightColor: root.ember
            config.lightsIntensity: 0.8
            config.blur: 60
        }

        Look {
            caption: "Beleuchtung, Unschärfe 0"
            config.darkness: 0.3
            config.lightsIntensity: 0.6
            config.blur: 0
        }

        Look {
            caption: "Milchglas ohne Tönung und Abdunklung"
            config.frosted: true
            config.darkness: 0
        }

        Look {
            caption: "Ohne Compositor: deckend"
            config.darkness: 0.3
            opaque: true
        }
    }

    SampleCard {
        x: 60
        y: 56 + 3 * (190 + 46)
        width: 978
        height: 120
        brief: true
        caption: "Breiter als hoch, Beleuchtung"
        config.lightsIntensity: 0.6
        config.darkness: 0.2
    }

    component Look: SampleCard {
        width: 298
        height: 190
    }
}
