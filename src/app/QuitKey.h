#pragma once

#include <QObject>

namespace randblatt {

/// Ends the application with the desktop's key for that, in whichever of its windows it is pressed.
class QuitKey : public QObject
{
    Q_OBJECT

public:
    explicit QuitKey(QObject *parent = nullptr);

Q_SIGNALS:
    void pressed();

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace randblatt
