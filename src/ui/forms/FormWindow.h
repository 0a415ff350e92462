#pragma once

#include <QQuickView>
#include <QVariantMap>

namespace randblatt {

/// An ordinary window of the desktop around one view. It closes with Escape and with the desktop's key for
/// closing; closed, it keeps its content and its place, but nothing that it needs for drawing.
class FormWindow : public QQuickView
{
    Q_OBJECT

public:
    struct Description
    {
        QUrl source;
        /// The required properties of the document at `source`.
        QVariantMap properties;
        QString title;
        QSize size;
        QSize minimumSize;
    };

    /// Loads the view; the engine and the objects among the properties are borrowed and must outlive the
    /// window. A document that cannot be loaded leaves the window empty and is logged.
    FormWindow(QQmlEngine &engine, const Description &description);
    ~FormWindow() override;

    /// Shows the window, unfolded if it was minimised, above the others and with the keyboard.
    void bringToFront();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void followPalette();
};

} // namespace randblatt
