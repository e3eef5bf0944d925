#pragma once

#include <vector>

namespace Zorvane {

/// One channel of an image, row after row, without gaps.
struct Plane
{
    int width = 0;
    int height = 0;
    std::vector<float> values;
};

/// Blurs with a Gaussian of the standard deviation `radius`, in pixels. Beyond the edges the
/// outermost pixels go on; a radius of 0 or less changes nothing.
[[nodiscard]] Plane gaussianBlurred(const Plane& plane, double radius);

} // namespace Zorvane
