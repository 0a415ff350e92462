#pragma once

#include "settings/CardNotice.h"
#include "settings/UndoHistory.h"

#include <QList>
#include <QObject>
#include <QUrl>
#include <QVariantMap>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

/// What to load to get a view: a QML document and the properties that it is made with. An empty source is an
/// empty view.
struct ViewDescription
{
    Q_GADGET
    QML_VALUE_TYPE(viewDescription)
    Q_PROPERTY(QUrl source MEMBER source FINAL)
    Q_PROPERTY(QVariantMap properties MEMBER properties FINAL)

public:
    QUrl source;
    QVariantMap properties;
};

/// One feature of the sidebar with its model and its views. A module lives as long as the process; disabling
/// it only hides its card.
class SidebarModule : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Modules are made at start-up.")
    Q_PROPERTY(QString id READ id CONSTANT FINAL)
    Q_PROPERTY(QString title READ title CONSTANT FINAL)
    Q_PROPERTY(QString systemImage READ systemImage CONSTANT FINAL)
    Q_PROPERTY(randblatt::CardNotice *notice READ notice CONSTANT FINAL)
    Q_PROPERTY(randblatt::UndoHistory *undoHistory READ undoHistory CONSTANT FINAL)

public:
    explicit SidebarModule(QObject *parent = nullptr)
        : QObject(parent)
        , m_notice(new CardNotice(this))
        , m_undoHistory(new UndoHistory(this))
    {
    }

    /// Names the module in the settings; never changes from one version to the next.
    [[nodiscard]] virtual QString id() const = 0;
    /// The card's German title.
    [[nodiscard]] virtual QString title() const = 0;
    /// The symbol in the card's header, a name from resources/symbols.
    [[nodiscard]] virtual QString systemImage() const = 0;
    /// The card's content. Besides the properties named there, the view gets `appearance`, a CardAppearance.
    [[nodiscard]] Q_INVOKABLE virtual randblatt::ViewDescription makeView() const = 0;
    /// What the module adds to its card's quick settings; empty for a module without a menu. White on dark.
    [[nodiscard]] Q_INVOKABLE virtual randblatt::ViewDescription makeQuickMenu() const { return {}; }

    /// What the module would do with text, or these links, that are dropped on its card, in a few words for
    /// the person who still holds them; empty where it takes no such thing.
    [[nodiscard]] Q_INVOKABLE virtual QString dropOffer(bool hasText, const QList<QUrl> &urls) const
    {
        Q_UNUSED(hasText)
        Q_UNUSED(urls)
        return {};
    }
    /// Takes what was dropped. False if nothing of it was taken.
    Q_INVOKABLE virtual bool takeDrop(const QString &text, const QList<QUrl> &urls)
    {
        Q_UNUSED(text)
        Q_UNUSED(urls)
        return false;
    }

    /// What the card has to say about its data.
    [[nodiscard]] CardNotice *notice() const { return m_notice; }
    /// The ways back that the module offers. The card shows the latest for a while, and takes changes back by
    /// key.
    [[nodiscard]] UndoHistory *undoHistory() const { return m_undoHistory; }

private:
    CardNotice *m_notice;
    UndoHistory *m_undoHistory;
};

} // namespace randblatt
