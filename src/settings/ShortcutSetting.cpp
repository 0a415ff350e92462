#include "settings/ShortcutSetting.h"

#include "platform/GlobalShortcut.h"
#include "settings/Preferences.h"

namespace randblatt {

using namespace Qt::StringLiterals;

namespace {

bool isModifier(int key)
{
    return key == 0 || key == Qt::Key_unknown || (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) ||
           key == Qt::Key_AltGr;
}

} // namespace

ShortcutSetting::ShortcutSetting(Preferences &preferences, GlobalShortcut &shortcut, QObject *parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_shortcut(shortcut)
    , m_keys(QKeySequence::fromString(preferences.get<QString>(key()).value_or(QString()),
                                      QKeySequence::PortableText))
{
    bind();
}

QString ShortcutSetting::key()
{
    return u"globalShortcut"_s;
}

bool ShortcutSetting::record(int key, int modifiers)
{
    constexpr int wanted = Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const int held = modifiers & wanted;
    const bool isFunctionKey = key >= Qt::Key_F1 && key <= Qt::Key_F35;
    if (isModifier(key) || (!isFunctionKey && (held & ~Qt::ShiftModifier) == 0))
        return false;
    m_keys = QKeySequence(QKeyCombination(Qt::KeyboardModifiers::fromInt(held), static_cast<Qt::Key>(key)));
    m_preferences.setValue(ShortcutSetting::key(), m_keys.toString(QKeySequence::PortableText));
    bind();
    return true;
}

void ShortcutSetting::clear()
{
    m_keys = {};
    m_preferences.setValue(key(), QString());
    bind();
}

bool ShortcutSetting::isAvailable() const
{
    return m_shortcut.isAvailable();
}

QString ShortcutSetting::command()
{
    return u"gdbus call --session --dest com.randblatt.Quillbar --object-path /com/randblatt/Quillbar "
           u"--method "
           "org.freedesktop.Application.ActivateAction toggle '@av []' '@a{sv} {}'"_s;
}

void ShortcutSetting::bind()
{
    switch (m_shortcut.bind(m_keys)) {
    case GlobalShortcut::Outcome::bound:
        m_problem.clear();
        break;
    case GlobalShortcut::Outcome::taken:
        m_problem = u"Diese Tasten hat schon ein anderes Programm."_s;
        break;
    case GlobalShortcut::Outcome::refused:
        m_problem = u"Diese Tasten gibt der Desktop nicht her."_s;
        break;
    }
    Q_EMIT changed();
}

} // namespace randblatt
