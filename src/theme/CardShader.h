#pragma once

#include <QColor>
#include <QQuickItem>
#include <QVector4D>

namespace randblatt {

/// A layer of a card, drawn by one of the card's shaders in one draw call. Of a layer that changes only near
/// the card's edge a frame is drawn, since software rendering pays for each pixel. The item has the card's
/// bounds; it may draw beyond them. It needs a scene graph with shaders: on Qt's software renderer nothing is
/// drawn.
class CardShader : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(Shader shader MEMBER m_shader NOTIFY changed FINAL REQUIRED)
    Q_PROPERTY(Part part MEMBER m_part NOTIFY changed FINAL)
    /// The card's corner radius in points.
    Q_PROPERTY(qreal corner MEMBER m_corner NOTIFY cornerChanged FINAL REQUIRED)
    /// How far the frame reaches beyond the card's edge, and how far inside it, in points.
    Q_PROPERTY(qreal outside MEMBER m_outside NOTIFY changed FINAL)
    Q_PROPERTY(qreal inside MEMBER m_inside NOTIFY changed FINAL)
    /// What the shader calls its parameters and colours.
    Q_PROPERTY(QVector4D parameters MEMBER m_parameters NOTIFY changed FINAL)
    Q_PROPERTY(QColor firstColor MEMBER m_firstColor NOTIFY changed FINAL)
    Q_PROPERTY(QColor secondColor MEMBER m_secondColor NOTIFY changed FINAL)
    Q_PROPERTY(QColor thirdColor MEMBER m_thirdColor NOTIFY changed FINAL)

public:
    /// The files `shaders/*.frag`.
    enum class Shader { Shadow, Lights, InnerLights, Pane, Border };
    Q_ENUM(Shader)

    enum class Part {
        /// The surroundings of the edge.
        Frame,
        /// What the frame leaves free.
        Interior,
    };
    Q_ENUM(Part)

    explicit CardShader(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void changed();
    /// On its own: other properties follow from it.
    void cornerChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    Shader m_shader = Shader::Pane;
    Part m_part = Part::Frame;
    qreal m_corner = 0;
    qreal m_outside = 0;
    qreal m_inside = 0;
    QVector4D m_parameters;
    QColor m_firstColor = Qt::transparent;
    QColor m_secondColor = Qt::transparent;
    QColor m_thirdColor = Qt::transparent;
};

} // namespace randblatt
