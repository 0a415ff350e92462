#include "theme/CardShader.h"

#include <QQuickWindow>
#include <QSGGeometryNode>
#include <QSGMaterial>
#include <QSGMaterialShader>

#include <algorithm>
#include <array>
#include <cstring>

using namespace Qt::StringLiterals;

namespace randblatt {

namespace {

/// What the shaders get after their matrix, laid out by the rules of std140 as in card.glsl.
struct Uniforms
{
    std::array<float, 2> area{};
    float corner = 0;
    float pixel = 1;
    float opacity = 1;
    std::array<float, 3> unused{};
    std::array<float, 4> parameters{};
    std::array<std::array<float, 4>, 3> colors{};

    friend bool operator==(const Uniforms &, const Uniforms &) = default;
};

constexpr qsizetype matrixSize = 16 * sizeof(float);
static_assert(sizeof(Uniforms) == 96);

std::array<float, 4> premultiplied(const QColor &color)
{
    const float alpha = color.alphaF();
    return {color.redF() * alpha, color.greenF() * alpha, color.blueF() * alpha, alpha};
}

class CardMaterialShader : public QSGMaterialShader
{
public:
    explicit CardMaterialShader(CardShader::Shader shader)
    {
        static constexpr std::array names{"shadow"_L1, "lights"_L1, "lights_inner"_L1, "pane"_L1,
                                          "border"_L1};
        const QString folder = u":/qt/qml/Randblatt/Theme/shaders/"_s;
        setShaderFileName(VertexStage, folder + "card.vert.qsb"_L1);
        setShaderFileName(FragmentStage, folder + names.at(static_cast<size_t>(shader)) + ".frag.qsb"_L1);
    }

    bool updateUniformData(RenderState &state, QSGMaterial *newMaterial, QSGMaterial *oldMaterial) override;
};

class CardMaterial : public QSGMaterial
{
public:
    explicit CardMaterial(CardShader::Shader shader)
        : m_shader(shader)
    {
        // The shaders need the card's own coordinates.
        setFlag(Blending | NoBatching);
    }

    [[nodiscard]] QSGMaterialType *type() const override
    {
        static std::array<QSGMaterialType, 5> types;
        return &types.at(static_cast<size_t>(m_shader));
    }

    [[nodiscard]] QSGMaterialShader *createShader(QSGRendererInterface::RenderMode) const override
    {
        return new CardMaterialShader(m_shader);
    }

    [[nodiscard]] CardShader::Shader shader() const { return m_shader; }

    Uniforms uniforms;

private:
    CardShader::Shader m_shader;
};

bool CardMaterialShader::updateUniformData(RenderState &state, QSGMaterial *newMaterial, QSGMaterial *)
{
    char *target = state.uniformData()->data();
    if (state.isMatrixDirty())
        std::memcpy(target, state.combinedMatrix().constData(), matrixSize);
    Uniforms uniforms = static_cast<CardMaterial *>(newMaterial)->uniforms;
    uniforms.opacity = state.opacity();
    std::memcpy(target + matrixSize, &uniforms, sizeof(uniforms));
    return true;
}

/// Two triangles, as the geometry's rectangle of that number.
void setRectangle(QSGGeometry &geometry, int number, const QRectF &rect)
{
    const int vertex = 4 * number;
    QSGGeometry::Point2D *vertices = geometry.vertexDataAsPoint2D() + vertex;
    vertices[0].set(float(rect.left()), float(rect.top()));
    vertices[1].set(float(rect.right()), float(rect.top()));
    vertices[2].set(float(rect.left()), float(rect.bottom()));
    vertices[3].set(float(rect.right()), float(rect.bottom()));
    quint16 *indices = geometry.indexDataAsUShort() + 6 * number;
    for (const int corner : {0, 1, 2, 2, 1, 3})
        *indices++ = quint16(vertex + corner);
}

class CardNode : public QSGGeometryNode
{
public:
    explicit CardNode(CardShader::Shader shader)
        : m_geometry(QSGGeometry::defaultAttributes_Point2D(), 0, 0)
        , m_material(shader)
    {
        m_geometry.setDrawingMode(QSGGeometry::DrawTriangles);
        setGeometry(&m_geometry);
        setMaterial(&m_material);
    }

    [[nodiscard]] CardShader::Shader shader() const { return m_material.shader(); }

    void setRectangles(std::initializer_list<QRectF> rectangles)
    {
        m_geometry.allocate(4 * int(rectangles.size()), 6 * int(rectangles.size()));
        int number = 0;
        for (const QRectF &rectangle : rectangles)
            setRectangle(m_geometry, number++, rectangle);
        markDirty(DirtyGeometry);
    }

    void setUniforms(const Uniforms &uniforms)
    {
        if (m_material.uniforms == uniforms)
            return;
        m_material.uniforms = uniforms;
        markDirty(DirtyMaterial);
    }

private:
    QSGGeometry m_geometry;
    CardMaterial m_material;
};

} // namespace

CardShader::CardShader(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &CardShader::changed, this, &QQuickItem::update);
    connect(this, &CardShader::cornerChanged, this, &QQuickItem::update);
}

void CardShader::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    update();
}

void CardShader::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemDevicePixelRatioHasChanged)
        update();
    QQuickItem::itemChange(change, data);
}

QSGNode *CardShader::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    auto *node = static_cast<CardNode *>(oldNode);
    if (node != nullptr && node->shader() != m_shader) {
        delete node;
        node = nullptr;
    }
    if (width() <= 0 || height() <= 0) {
        delete node;
        return nullptr;
    }
    if (node == nullptr)
        node = new CardNode(m_shader);

    const QRectF card = boundingRect();
    const qreal depth = std::clamp(m_inside, 0.0, std::min(card.width(), card.height()) / 2);
    const QRectF outer = card.adjusted(-m_outside, -m_outside, m_outside, m_outside);
    const QRectF inner = card.adjusted(depth, depth, -depth, -depth);
    if (m_part == Part::Interior)
        node->setRectangles({inner});
    else
        node->setRectangles({QRectF(outer.topLeft(), QPointF(outer.right(), inner.top())),
                             QRectF(QPointF(outer.left(), inner.bottom()), outer.bottomRight()),
                             QRectF(QPointF(outer.left(), inner.top()), inner.bottomLeft()),
                             QRectF(inner.topRight(), QPointF(outer.right(), inner.bottom()))});

    Uniforms uniforms;
    uniforms.area = {float(card.width()), float(card.height())};
    uniforms.corner = float(m_corner);
    uniforms.pixel = float(1 / window()->effectiveDevicePixelRatio());
    uniforms.parameters = {m_parameters.x(), m_parameters.y(), m_parameters.z(), m_parameters.w()};
    uniforms.colors = {premultiplied(m_firstColor), premultiplied(m_secondColor),
                       premultiplied(m_thirdColor)};
    node->setUniforms(uniforms);
    return node;
}

} // namespace randblatt
