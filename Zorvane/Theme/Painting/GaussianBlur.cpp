#include "Zorvane/Theme/Painting/GaussianBlur.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

namespace Zorvane {
namespace {

std::vector<float> kernel(double radius)
{
    const int reach = static_cast<int>(std::ceil(radius * 3));
    std::vector<float> weights;
    double sum = 0;
    for (int offset = -reach; offset <= reach; ++offset) {
        const double weight = std::exp(-0.5 * offset * offset / (radius * radius));
        weights.push_back(static_cast<float>(weight));
        sum += weight;
    }
    for (float& weight : weights) {
        weight /= static_cast<float>(sum);
    }
    return weights;
}

/// Two calls blur in both directions.
Plane rowsBlurredAndTransposed(const Plane& plane, std::span<const float> weights)
{
    const std::size_t reach = weights.size() / 2;
    const auto width = static_cast<std::size_t>(plane.width);
    const auto height = static_cast<std::size_t>(plane.height);
    Plane result{plane.height, plane.width, std::vector<float>(plane.values.size())};
    std::vector<float> row(width + 2 * reach);
    std::vector<float> blurred(width);
    std::span<const float> previous;
    for (std::size_t y = 0; y < height; ++y) {
        const std::span<const float> source(plane.values.data() + y * width, width);
        // Most rows of a shape equal the one above.
        if (!std::ranges::equal(source, previous)) {
            std::fill_n(row.begin(), reach, source.front());
            const auto after = std::copy(source.begin(), source.end(),
                                         row.begin() + static_cast<std::ptrdiff_t>(reach));
            std::fill(after, row.end(), source.back());
            std::ranges::fill(blurred, 0.0F);
            for (std::size_t i = 0; i < weights.size(); ++i) {
                const float* const shifted = row.data() + i;
                for (std::size_t x = 0; x < width; ++x) {
                    blurred[x] += weights[i] * shifted[x];
                }
            }
            previous = source;
        }
        for (std::size_t x = 0; x < width; ++x) {
            result.values[x * height + y] = blurred[x];
        }
    }
    return result;
}

} // namespace

Plane gaussianBlurred(const Plane& plane, double radius)
{
    if (radius <= 0 || plane.values.empty()) {
        return plane;
    }
    const std::vector<float> weights = kernel(radius);
    return rowsBlurredAndTransposed(rowsBlurredAndTransposed(plane, weights), weights);
}

} // namespace Zorvane
