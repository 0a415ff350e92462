// The card shape: a rectangle whose corners ease into the straight edges, so that their curvature has no step.
// Each corner is a superellipse. The exponent lets its diagonal meet that of a circle of radius `corner`.

const float cornerReach = 1.5287;
const float cornerExponent = 3.26;

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
    vec2 slope = pow(inCorner, vec2(cornerExponent - 1.0));
    float sum = dot(inCorner, slope);
    float norm = pow(sum, 1.0 / cornerExponent);
    float slopeLength = max(length(slope), 1e-5);
    // The norm grows more slowly along the diagonal; divided by its gradient it measures points everywhere.
    float gradient = clamp(slopeLength * norm / max(sum, 1e-6), 0.87, 1.0);
    edge.distance = edge.reach * (norm - 1.0) / gradient + min(max(beyond.x, beyond.y), 0.0);
    edge.normal = sign(fromMiddle) * slope / slopeLength;
    return edge;
}

// How much of a pixel lies inside the shape.
float cardCoverage(float distance, float pixel)
{
    return clamp(0.5 - distance / pixel, 0.0, 1.0);
}
