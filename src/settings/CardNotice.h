#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace randblatt {

class StoreHealth;

/// What a card says about its data, with one thing that the user can do about it: that they are not on the
/// disk yet, or, in one card of all, that a file was put aside. Without a store to follow it says nothing.
class CardNotice : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Modules have it.")
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    Q_PROPERTY(QString action READ action NOTIFY changed FINAL)
    Q_PROPERTY(bool isDismissible READ isDismissible NOTIFY changed FINAL)

public:
    explicit CardNotice(QObject *parent = nullptr);

    /// Speaks of what concerns the module from now on.
    void follow(StoreHealth &health, const QString &moduleID);
    /// This card is the one that names a file that was put aside.
    void setNamesAside(bool names);

    /// A sentence; empty where there is nothing to say.
    [[nodiscard]] QString text() const { return m_text; }
    /// What the button says.
    [[nodiscard]] QString action() const;
    [[nodiscard]] bool isDismissible() const { return m_isAside; }
    /// What the button does.
    Q_INVOKABLE void act();
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void changed();

private:
    void update();

    QPointer<StoreHealth> m_health;
    QString m_moduleID;
    QString m_text;
    bool m_namesAside = false;
    bool m_isAside = false;
};

} // namespace randblatt
