#include "modules/notes/ScratchPad.h"

namespace randblatt {

void ScratchPad::join()
{
    if (!m_document || !m_settings)
        return;
    connect(m_document, &EditedDocument::edited, m_settings, &AppSettings::setNotesScratch);
    connect(m_settings, &AppSettings::notesScratchChanged, m_document,
            [settings = m_settings.get(), document = m_document.get()] {
                document->take(settings->notesScratch());
            });
}

} // namespace randblatt
