#include "ui/controls/Focus.h"

#include <QQuickWindow>

#include <algorithm>
#include <vector>

namespace randblatt {

namespace {

/// Of the whole application, as the keyboard and the pointer are; each engine has a Focus of its own.
struct LatestInput
{
    bool isByKeyboard = false;
    bool isPointing = true;
    std::vector<Focus *> followers;
};

LatestInput &latest()
{
    static LatestInput input;
    return input;
}

} // namespace

Focus::Focus(QObject *parent)
    : QObject(parent)
{
    latest().followers.push_back(this);
}

Focus::~Focus()
{
    auto &followers = latest().followers;
    followers.erase(std::remove(followers.begin(), followers.end(), this), followers.end());
}

bool Focus::isPointing() const
{
    return latest().isPointing;
}

Qt::FocusReason Focus::reason()
{
    return latest().isByKeyboard ? Qt::TabFocusReason : Qt::MouseFocusReason;
}

void Focus::give(QQuickItem *item)
{
    if (item == nullptr)
        return;
    item->forceActiveFocus(reason());
    QQuickItem *focused = item->window() != nullptr ? item->window()->activeFocusItem() : nullptr;
    const bool isWithin = focused != nullptr && (focused == item || item->isAncestorOf(focused));
    // What had the focus already, as a view's new current item has it, was told of another reason.
    if (isWithin && focused->metaObject()->indexOfProperty("focusReason") >= 0)
        focused->setProperty("focusReason", QVariant::fromValue(reason()));
}

void Focus::note(Input input)
{
    LatestInput &known = latest();
    if (input != Input::motion)
        known.isByKeyboard = input == Input::key;
    const bool isPointing = input != Input::key;
    if (known.isPointing == isPointing)
        return;
    known.isPointing = isPointing;
    for (Focus *follower : known.followers)
        Q_EMIT follower->isPointingChanged();
}

} // namespace randblatt
