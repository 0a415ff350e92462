#include "modules/notes/ScratchPad.h"

#include "settings/AppSettings.h"

namespace randblatt {

ScratchPad::ScratchPad(AppSettings &settings, QObject *parent)
    : EditedText(parent)
{
    load(settings.notesScratch());
    connect(this, &EditedText::edited, &settings, &AppSettings::setNotesScratch);
    connect(&settings, &AppSettings::notesScratchChanged, this,
            [this, &settings] { take(settings.notesScratch()); });
}

} // namespace randblatt
