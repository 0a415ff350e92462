#pragma once

#include "modules/notes/EditedText.h"

namespace randblatt {

class AppSettings;

/// The scratch pad of the settings, as it is edited: what is typed is stored at once, and what is stored
/// otherwise is taken over.
class ScratchPad : public EditedText
{
    Q_OBJECT

public:
    /// `settings` is borrowed and must outlive the pad.
    explicit ScratchPad(AppSettings &settings, QObject *parent = nullptr);
};

} // namespace randblatt
