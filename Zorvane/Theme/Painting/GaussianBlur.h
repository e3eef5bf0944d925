#pragma once

#include <vector>

namespace Zorvane {

/// One channel of an image, row by row, without padding.
struct Plane
{
    int width = 0;
    int height = 0;
    std::vector<float> values;
};

/// Blurs with a Gaussian whose standard deviation is `radius`, in pixels. The outermost pixels
/// extend beyond the edges. A radius of 0 or less changes nothing.
[[nodiscard]] Plane gaussianBlurred(const Plane& plane, double radius);

} // namespace Zorvane
