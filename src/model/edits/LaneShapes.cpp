// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/edits/LaneShapes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

namespace quib {

namespace {

// A number of 0..1 that depends on seed and place alone, so that a drag does not roll its dice anew.
float DrawnAt(std::uint32_t seed, std::uint32_t place) noexcept {
    std::uint32_t bits = (seed + 1) * 0x9E3779B9U ^ place * 0x85EBCA6BU;
    bits = (bits ^ (bits >> 16U)) * 0x7FEB352DU;
    bits = (bits ^ (bits >> 15U)) * 0x846CA68BU;
    return static_cast<float>((bits ^ (bits >> 16U)) >> 8U) / static_cast<float>(1U << 24U);
}

// The stroke with its corners in the order of time.
struct Course {
    float left, right, start, end;
    explicit Course(const LaneStroke& stroke)
        : left(std::min(stroke.from.x, stroke.to.x)),
          right(std::max(stroke.from.x, stroke.to.x)),
          start(stroke.from.x <= stroke.to.x ? stroke.from.y : stroke.to.y),
          end(stroke.from.x <= stroke.to.x ? stroke.to.y : stroke.from.y) {}
    float ValueAt(float share) const noexcept { return start + (end - start) * share; }
};

PointList Ramps(const Course& course, float period) {
    PointList points;
    for (std::uint32_t count = 0; points.size() + 2 < kLongestShape; ++count) {
        const float begin = course.left + static_cast<float>(count) * period;
        if (begin >= course.right) break;
        const float foot = std::min(course.left + static_cast<float>(count + 1) * period, course.right);
        points.push_back({begin, course.start});
        points.push_back({foot, course.ValueAt((foot - begin) / period)});
    }
    return points;
}

PointList Sine(const Course& course, float period, float tick) {
    PointList points;
    const auto at = [&](float x) {
        const float turn = 2 * std::numbers::pi_v<float> * (x - course.left) / period;
        points.push_back({x, course.ValueAt((1 - std::cos(turn)) / 2)});
    };
    for (std::uint32_t count = 0; points.size() + 1 < kLongestShape; ++count) {
        const float x = course.left + static_cast<float>(count) * tick;
        if (x >= course.right) break;
        at(x);
    }
    at(course.right);
    return points;
}

PointList Steps(const Course& course, float period, std::uint32_t seed) {
    PointList points;
    for (std::uint32_t count = 0; points.size() + 2 < kLongestShape; ++count) {
        const float begin = course.left + static_cast<float>(count) * period;
        if (begin >= course.right) break;
        const float value = course.ValueAt(DrawnAt(seed, count));
        points.push_back({begin, value});
        const float end = course.left + static_cast<float>(count + 1) * period;
        points.push_back({std::min(end, course.right), value});
    }
    return points;
}

PointList Changes(const PointList& samples, const LaneLimits& limits) {
    PointList points;
    for (const Point& sample : samples) {
        const Point next = limits.Repaired(sample);
        if (points.empty() || (next.x > points.back().x && next.y != points.back().y)) points.push_back(next);
    }
    return points;
}

// The values that a line may have at a sample.
struct Band {
    float low, high;
    Band(float y, const LaneLimits& limits, float tolerance)
        : low(std::max(y - tolerance, limits.minimum)), high(std::min(y + tolerance, limits.maximum)) {}
};

// The lines from one point on that pass through every band so far.
class CCone {
public:
    explicit CCone(Point from) noexcept : apex(from) {}
    // False, and nothing is changed, when no line goes through this band as well.
    bool Narrow(float x, const Band& band) noexcept {
        const double width = static_cast<double>(x) - static_cast<double>(apex.x);
        const double low = std::max(least, (static_cast<double>(band.low) - static_cast<double>(apex.y)) / width);
        const double high = std::min(most, (static_cast<double>(band.high) - static_cast<double>(apex.y)) / width);
        if (low > high) return false;
        least = low;
        most = high;
        return true;
    }
    // The end, at `sample`, of the line that comes nearest to it.
    Point EndAt(const Point& sample) const noexcept {
        const double width = static_cast<double>(sample.x) - static_cast<double>(apex.x);
        const double slope = (static_cast<double>(sample.y) - static_cast<double>(apex.y)) / width;
        const double end = static_cast<double>(apex.y) + std::clamp(slope, least, most) * width;
        return {sample.x, static_cast<float>(end)};
    }

private:
    Point apex;
    double least = -std::numeric_limits<double>::infinity();
    double most = std::numeric_limits<double>::infinity();
};

}  // namespace

PointList MakeShape(ELaneShape shape, const LaneStroke& stroke) {
    const Course course(stroke);
    if (course.left >= course.right) return {};
    switch (shape) {
        case ELaneShape::kRamp:
            return Ramps(course, stroke.period);
        case ELaneShape::kSine:
            return Sine(course, stroke.period, stroke.tick);
        case ELaneShape::kRandom:
            return Steps(course, stroke.period, stroke.seed);
        case ELaneShape::kLine:
            break;
    }
    return {{course.left, course.start}, {course.right, course.end}};
}

// Both lines bend at samples only, so where they keep together there they do so everywhere. A line goes on as
// long as one passes through the bands of all samples since its beginning.
PointList Thinned(const PointList& samples, const LaneLimits& limits, float tolerance) {
    if (IsStepped(limits.kind)) return Changes(samples, limits);
    // Room for the rounding of single precision.
    const float width = tolerance * 0.99F;
    PointList points;
    Point last;
    std::optional<CCone> cone;
    for (const Point& sample : samples) {
        const Point next = limits.Repaired(sample);
        if (points.empty()) {
            points.push_back(next);
        } else {
            if (next.x <= last.x) continue;
            const Band band(next.y, limits, width);
            if (!cone) cone.emplace(points.back());
            if (!cone->Narrow(next.x, band)) {
                points.push_back(cone->EndAt(last));
                cone.emplace(points.back());
                cone->Narrow(next.x, band);
            }
        }
        last = next;
    }
    if (cone) points.push_back(cone->EndAt(last));
    return points;
}

}  // namespace quib
