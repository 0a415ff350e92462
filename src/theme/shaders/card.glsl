// What the card's shaders share: what they are given, and the card's shape.

layout(std140, binding = 0) uniform buf {
    mat4 matrix;
    // The card's size in points; places are measured from its top left corner.
    vec2 area;
    float corner;
    // Edge length of a device pixel in points.
    float pixel;
    float opacity;
    vec4 parameters;
    vec4 firstColor;
    vec4 secondColor;
    vec4 thirdColor;
};

// The shape: a rectangle whose corners ease into the straight edges, so that their curvature has no step.
// Each corner is a superellipse of the fourth degree, which needs no powers but square roots; its diagonal meets
// that of a circle of radius `corner`.

const float cornerReach = 1.841;

struct CardEdge
{
    // Points to the nearest edge, negative inside.
    float distance;
    // The direction outwards; only meaningful within the corners' reach of the edge.
    vec2 normal;
    // The length of a straight edge that one corner takes.
    float reach;
};

CardEdge cardEdge(vec2 point, vec2 area, float corner)
{
    CardEdge edge;
    vec2 middle = 0.5 * area;
    edge.reach = max(min(cornerReach * corner, min(middle.x, middle.y)), 0.001);
    vec2 fromMiddle = point - middle;
    vec2 beyond = abs(fromMiddle) - (middle - edge.reach);
    vec2 inCorner = max(beyond, 0.0) / edge.reach;
    vec2 square = inCorner * inCorner;
    vec2 slope = square * inCorner;
    float slopeLength = max(length(slope), 1e-5);
    float norm = sqrt(length(square));
    // The norm grows more slowly along the diagonal; divided by its gradient it measures points everywhere.
    float stretch = clamp(norm * norm * norm / slopeLength, 1.0, 1.2);
    edge.distance = edge.reach * (norm - 1.0) * stretch + min(max(beyond.x, beyond.y), 0.0);
    edge.normal = sign(fromMiddle) * slope / slopeLength;
    return edge;
}

// How much of a pixel lies inside the shape.
float cardCoverage(float distance, float pixel)
{
    return clamp(0.5 - distance / pixel, 0.0, 1.0);
}
