#include "plan/sheet_arc.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double MOST_CHORDS = 720.0;
constexpr double WIDEST_CHORD = PI / 8.0; // keeps small circles round

SheetPoint OnCircle(const SheetArc& arc, double azimuth)
{
    return {arc.centre.x + arc.radius * std::sin(azimuth), arc.centre.y - arc.radius * std::cos(azimuth)};
}

/** The fraction of the sweep at which an arc passes an azimuth; above 1 when it does not. */
double FractionAt(const SheetArc& arc, double azimuth)
{
    double ahead = std::fmod((azimuth - arc.start) * (arc.sweep < 0.0 ? -1.0 : 1.0), 2.0 * PI);
    ahead += ahead < 0.0 ? 2.0 * PI : 0.0;
    return ahead / std::fabs(arc.sweep);
}

bool Contains(const SheetBox& box, SheetPoint point)
{
    return point.x >= box.left && point.x <= box.right && point.y >= box.top && point.y <= box.bottom;
}

/** Both ends, and in order between them the fractions at which an arc may enter or leave a box. */
std::vector<double> Passages(const SheetArc& arc, const SheetBox& box)
{
    std::vector<double> passages = {0.0, 1.0};
    const auto add = [&arc, &passages](double azimuth) {
        const double fraction = FractionAt(arc, azimuth);
        if (fraction < 1.0)
        {
            passages.push_back(fraction);
        }
    };
    for (const double x : {box.left, box.right})
    {
        const double sine = (x - arc.centre.x) / arc.radius;
        if (std::fabs(sine) <= 1.0)
        {
            add(std::asin(sine));
            add(PI - std::asin(sine));
        }
    }
    for (const double y : {box.top, box.bottom})
    {
        const double cosine = (arc.centre.y - y) / arc.radius;
        if (std::fabs(cosine) <= 1.0)
        {
            add(std::acos(cosine));
            add(-std::acos(cosine));
        }
    }
    std::sort(passages.begin(), passages.end());
    return passages;
}

SheetArc Part(const SheetArc& arc, double from, double to)
{
    return {arc.centre, arc.radius, arc.start + arc.sweep * from, arc.sweep * (to - from)};
}

} // namespace

SheetPoint SheetArc::At(double fraction) const
{
    return OnCircle(*this, start + sweep * fraction);
}

SheetBox BoundingBox(const SheetArc& arc)
{
    SheetBox box = {HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    const auto include = [&box](SheetPoint point) {
        box = {std::min(box.left, point.x), std::min(box.top, point.y), std::max(box.right, point.x),
               std::max(box.bottom, point.y)};
    };
    include(arc.At(0.0));
    include(arc.At(1.0));
    for (int quarter = 0; quarter < 4; ++quarter)
    {
        if (FractionAt(arc, quarter * PI / 2.0) <= 1.0)
        {
            include(OnCircle(arc, quarter * PI / 2.0));
        }
    }
    return box;
}

std::vector<SheetPoint> Chords(const SheetArc& arc, double sagitta)
{
    // A chord that spans the angle a leaves its arc by r (1 - cos(a / 2)), which is near to r a^2 / 8.
    const double step = std::min(std::sqrt(8.0 * sagitta / arc.radius), WIDEST_CHORD);
    const int count = static_cast<int>(std::clamp(std::ceil(std::fabs(arc.sweep) / step), 1.0, MOST_CHORDS));
    std::vector<SheetPoint> points;
    for (int i = 0; i <= count; ++i)
    {
        points.push_back(arc.At(static_cast<double>(i) / count));
    }
    return points;
}

std::vector<std::vector<SheetPoint>> VisibleChords(const SheetArc& arc, const SheetBox& box, double sagitta)
{
    const std::vector<double> passages = Passages(arc, box);
    std::vector<std::vector<SheetPoint>> runs;
    for (size_t i = 1; i < passages.size(); ++i)
    {
        const double from = passages[i - 1];
        const double to = passages[i];
        if (to > from && Contains(box, arc.At((from + to) / 2.0)))
        {
            runs.push_back(Chords(Part(arc, from, to), sagitta));
            // Where the circle meets the edge rounding may leave a point beyond it.
            for (SheetPoint& point : runs.back())
            {
                point = {std::clamp(point.x, box.left, box.right), std::clamp(point.y, box.top, box.bottom)};
            }
        }
    }
    return runs;
}

} // namespace qstd
