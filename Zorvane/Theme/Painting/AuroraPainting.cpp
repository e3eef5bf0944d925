#include "Zorvane/Theme/Painting/AuroraPainting.h"

#include "Zorvane/Theme/Painting/GaussianBlur.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace Zorvane {
namespace {

constexpr double blurRadius = 70;
constexpr double glowOpacity = 0.55;

/// The glows are blurred on an image that is this many times smaller. A blur of radius 70 leaves no
/// detail that would need more.
constexpr int reduction = 8;

/// Around the window, so that the parts of glows outside it shine in.
constexpr int margin = 216;

struct Ellipse
{
    QColor color;
    QPointF center;
    QSizeF size;
};

QImage reducedScene(QSizeF size, const QColor& base, const std::array<Ellipse, 3>& ellipses)
{
    const auto pixels = [](double length) {
        return static_cast<int>(std::ceil((length + 2 * margin) / reduction)) + 1;
    };
    QImage image(pixels(size.width()), pixels(size.height()), QImage::Format_RGB32);
    image.fill(base);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.scale(1.0 / reduction, 1.0 / reduction);
    painter.translate(margin, margin);
    for (const Ellipse& ellipse : ellipses) {
        painter.setBrush(ellipse.color);
        painter.drawEllipse(ellipse.center, ellipse.size.width() / 2, ellipse.size.height() / 2);
    }
    return image;
}

/// One colour channel of the background in the reduced size, from 0 to 255.
Plane blurredChannel(const QImage& scene, int shift, int base)
{
    Plane plane{scene.width(), scene.height(), {}};
    plane.values.reserve(static_cast<std::size_t>(scene.width()) *
                         static_cast<std::size_t>(scene.height()));
    for (int y = 0; y < scene.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(scene.constScanLine(y));
        for (int x = 0; x < scene.width(); ++x) {
            plane.values.push_back(static_cast<float>((line[x] >> shift) & 0xff));
        }
    }
    plane = gaussianBlurred(plane, blurRadius / reduction);
    for (float& value : plane.values) {
        value = static_cast<float>(base * (1 - glowOpacity) + value * glowOpacity);
    }
    return plane;
}

/// The position of a pixel between the pixels of the reduced image.
struct Position
{
    std::size_t index = 0;
    float fraction = 0;
};

std::vector<Position> positions(int count, double scale)
{
    std::vector<Position> result;
    for (int i = 0; i < count; ++i) {
        const double place = ((i + 0.5) / scale + margin) / reduction - 0.5;
        const double whole = std::floor(place);
        result.push_back({static_cast<std::size_t>(whole), static_cast<float>(place - whole)});
    }
    return result;
}

/// Dithers: on so dark a background, rounding to 256 levels would show bands. Interleaved gradient
/// noise has no visible pattern.
float threshold(int x, int y)
{
    const double inner = 0.06711056 * x + 0.00583715 * y;
    const double outer = 52.9829189 * (inner - std::floor(inner));
    return static_cast<float>(outer - std::floor(outer));
}

constexpr int tile = 128;

std::vector<float> thresholds()
{
    std::vector<float> result;
    for (int y = 0; y < tile; ++y) {
        for (int x = 0; x < tile; ++x) {
            result.push_back(threshold(x, y));
        }
    }
    return result;
}

QImage enlarged(const std::array<Plane, 3>& channels, QSize size, double scale)
{
    const std::vector<float> noise = thresholds();
    const std::vector<Position> columns = positions(size.width(), scale);
    const std::vector<Position> rows = positions(size.height(), scale);
    const auto width = static_cast<std::size_t>(channels[0].width);
    std::array<std::vector<float>, 3> line;
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        const Position row = rows[static_cast<std::size_t>(y)];
        for (std::size_t c = 0; c < channels.size(); ++c) {
            line[c].resize(width);
            const float* above = channels[c].values.data() + row.index * width;
            for (std::size_t x = 0; x < width; ++x) {
                line[c][x] = above[x] + (above[width + x] - above[x]) * row.fraction;
            }
        }
        auto* target = reinterpret_cast<QRgb*>(image.scanLine(y));
        const float* noiseLine = noise.data() + static_cast<std::ptrdiff_t>(y % tile) * tile;
        for (int x = 0; x < size.width(); ++x) {
            const Position column = columns[static_cast<std::size_t>(x)];
            const auto level = [&](const std::vector<float>& values) {
                const float left = values[column.index];
                const float value = left + (values[column.index + 1] - left) * column.fraction;
                return static_cast<int>(value + noiseLine[x % tile]);
            };
            target[x] = qRgb(level(line[0]), level(line[1]), level(line[2]));
        }
    }
    image.setDevicePixelRatio(scale);
    return image;
}

} // namespace

AuroraPainting::AuroraPainting(QQuickItem* parent) : PaintedShape(parent)
{
    setOpaquePainting(true);
}

void AuroraPainting::paint(QPainter* painter)
{
    const QSizeF area = size();
    if (area.isEmpty()) {
        return;
    }
    const std::array<Ellipse, 3> ellipses{{
        {m_violet, {120, 40}, {520, 420}},
        {m_indigo, {area.width() - 110, 100}, {460, 400}},
        {m_teal, {0.45 * area.width(), area.height() + 100}, {520, 380}},
    }};
    const QImage scene = reducedScene(area, m_base, ellipses);
    const std::array<Plane, 3> channels{blurredChannel(scene, 16, m_base.red()),
                                        blurredChannel(scene, 8, m_base.green()),
                                        blurredChannel(scene, 0, m_base.blue())};
    const double scale = painter->deviceTransform().m11();
    const QSize pixels(static_cast<int>(std::ceil(area.width() * scale)),
                       static_cast<int>(std::ceil(area.height() * scale)));
    painter->drawImage(QPointF(), enlarged(channels, pixels, scale));
}

} // namespace Zorvane
