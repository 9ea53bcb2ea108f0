#include "plan/plan_labels.h"

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

constexpr double PI = 3.14159265358979323846;
constexpr double MARGIN = 0.5;      // around every label
constexpr double RADIUS_STEP = 1.5; // from ring to ring of candidates
constexpr int RINGS = 32;
constexpr int DIRECTIONS = 16;
constexpr double LEADER_FROM = 2.5; // a label that is farther off gets a leader

SheetBox Grown(const SheetBox& box, double by)
{
    return {box.left - by, box.top - by, box.right + by, box.bottom + by};
}

bool Overlap(const SheetBox& one, const SheetBox& other)
{
    return one.left < other.right && other.left < one.right && one.top < other.bottom && other.top < one.bottom;
}

bool Contains(const SheetBox& box, SheetPoint point)
{
    return point.x >= box.left && point.x <= box.right && point.y >= box.top && point.y <= box.bottom;
}

/** Narrows the part [from, to] of a line that lies within low <= start + t * step <= high. */
bool ClipTo(double start, double step, double low, double high, double& from, double& to)
{
    if (step == 0.0)
    {
        return start >= low && start <= high;
    }
    const double one = (low - start) / step;
    const double other = (high - start) / step;
    from = std::max(from, std::min(one, other));
    to = std::min(to, std::max(one, other));
    return from <= to;
}

bool Crosses(const SheetLine& line, const SheetBox& box)
{
    double from = 0.0;
    double to = 1.0;
    return ClipTo(line.from.x, line.to.x - line.from.x, box.left, box.right, from, to) &&
           ClipTo(line.from.y, line.to.y - line.from.y, box.top, box.bottom, from, to);
}

double Side(const SheetLine& line, SheetPoint point)
{
    return (line.to.x - line.from.x) * (point.y - line.from.y) - (line.to.y - line.from.y) * (point.x - line.from.x);
}

bool Crosses(const SheetLine& one, const SheetLine& other)
{
    return Side(one, other.from) * Side(one, other.to) < 0.0 && Side(other, one.from) * Side(other, one.to) < 0.0;
}

TurnedBox Unturned(const SheetBox& box)
{
    return {
        {(box.left + box.right) / 2.0, (box.top + box.bottom) / 2.0}, box.right - box.left, box.bottom - box.top, 0.0};
}

TurnedBox Grown(const TurnedBox& box, double by)
{
    return {box.middle, box.width + 2.0 * by, box.height + 2.0 * by, box.turn};
}

/** As seen from a box: from its middle, along its own edges. */
SheetPoint SeenFrom(const TurnedBox& box, SheetPoint point)
{
    const double x = point.x - box.middle.x;
    const double y = point.y - box.middle.y;
    return {x * std::cos(box.turn) + y * std::sin(box.turn), y * std::cos(box.turn) - x * std::sin(box.turn)};
}

bool Crosses(const SheetLine& line, const TurnedBox& box)
{
    return Crosses(SheetLine{SeenFrom(box, line.from), SeenFrom(box, line.to)},
                   SheetBox{-box.width / 2.0, -box.height / 2.0, box.width / 2.0, box.height / 2.0});
}

/** True when an edge of `box`, made longer without end, has all of `neighbour` beyond it. */
bool HasEdgeBetween(const TurnedBox& box, const TurnedBox& neighbour)
{
    SheetBox seen = {HUGE_VAL, HUGE_VAL, -HUGE_VAL, -HUGE_VAL};
    for (const SheetPoint& corner : neighbour.Corners())
    {
        const SheetPoint place = SeenFrom(box, corner);
        seen = {std::min(seen.left, place.x), std::min(seen.top, place.y), std::max(seen.right, place.x),
                std::max(seen.bottom, place.y)};
    }
    return seen.left >= box.width / 2.0 || seen.right <= -box.width / 2.0 || seen.top >= box.height / 2.0 ||
           seen.bottom <= -box.height / 2.0;
}

/** Two convex figures are apart just when an edge of one of them lies between them. */
bool Overlap(const TurnedBox& one, const TurnedBox& other)
{
    const double reach = std::hypot(one.width, one.height) + std::hypot(other.width, other.height);
    if (std::hypot(one.middle.x - other.middle.x, one.middle.y - other.middle.y) > reach / 2.0)
    {
        return false;
    }
    return !HasEdgeBetween(one, other) && !HasEdgeBetween(other, one);
}

SheetLine LeaderTo(SheetPoint anchor, const SheetBox& box, double clearance)
{
    const SheetPoint end = {std::clamp(anchor.x, box.left, box.right), std::clamp(anchor.y, box.top, box.bottom)};
    const double length = std::hypot(end.x - anchor.x, end.y - anchor.y);
    const double start = length > 0.0 ? std::min(clearance / length, 1.0) : 0.0;
    return {{anchor.x + (end.x - anchor.x) * start, anchor.y + (end.y - anchor.y) * start}, end};
}

} // namespace

std::array<SheetPoint, 4> TurnedBox::Corners() const
{
    const SheetPoint along = {std::cos(turn) * width / 2.0, std::sin(turn) * width / 2.0};
    const SheetPoint down = {-std::sin(turn) * height / 2.0, std::cos(turn) * height / 2.0};
    return {{{middle.x - along.x - down.x, middle.y - along.y - down.y},
             {middle.x + along.x - down.x, middle.y + along.y - down.y},
             {middle.x + along.x + down.x, middle.y + along.y + down.y},
             {middle.x - along.x + down.x, middle.y - along.y + down.y}}};
}

SheetBox BoxBeside(SheetPoint anchor, double radius, SheetPoint direction, double width, double height)
{
    // The centre slides along the box's half extents, so that a box to the right is centred in height, and so on.
    const double centreX = anchor.x + direction.x * (radius + width / 2.0);
    const double centreY = anchor.y + direction.y * (radius + height / 2.0);
    return {centreX - width / 2.0, centreY - height / 2.0, centreX + width / 2.0, centreY + height / 2.0};
}

LabelPlacer::LabelPlacer(SheetBox frameOfLabels) : frame(frameOfLabels)
{
}

void LabelPlacer::AddObstacle(const SheetBox& box)
{
    boxes.push_back(box);
}

void LabelPlacer::AddObstacle(const SheetLine& line)
{
    lines.push_back(line);
}

void LabelPlacer::AddObstacle(const TurnedBox& box)
{
    turnedBoxes.push_back(box);
}

bool LabelPlacer::IsFree(const SheetBox& box) const
{
    const SheetBox wide = Grown(box, MARGIN);
    const auto crosses = [&wide](const SheetLine& line) { return Crosses(line, wide); };
    return wide.left >= frame.left && wide.right <= frame.right && wide.top >= frame.top &&
           wide.bottom <= frame.bottom &&
           std::none_of(boxes.begin(), boxes.end(), [&wide](const SheetBox& other) { return Overlap(wide, other); }) &&
           std::none_of(lines.begin(), lines.end(), crosses) && std::none_of(leaders.begin(), leaders.end(), crosses) &&
           std::none_of(turnedBoxes.begin(), turnedBoxes.end(),
                        [turned = Unturned(wide)](const TurnedBox& other) { return Overlap(turned, other); });
}

bool LabelPlacer::IsFree(const TurnedBox& box) const
{
    const TurnedBox wide = Grown(box, MARGIN);
    const std::array<SheetPoint, 4> corners = wide.Corners();
    const auto crosses = [&wide](const SheetLine& line) { return Crosses(line, wide); };
    return std::all_of(corners.begin(), corners.end(), [this](SheetPoint corner) { return Contains(frame, corner); }) &&
           std::none_of(boxes.begin(), boxes.end(),
                        [&wide](const SheetBox& other) { return Overlap(wide, Unturned(other)); }) &&
           std::none_of(lines.begin(), lines.end(), crosses) && std::none_of(leaders.begin(), leaders.end(), crosses) &&
           std::none_of(turnedBoxes.begin(), turnedBoxes.end(),
                        [&wide](const TurnedBox& other) { return Overlap(wide, other); });
}

/** A leader may cross a sight, but no symbol other than the one it belongs to, no other label and no other leader. */
bool LabelPlacer::IsFree(const SheetLine& leader, SheetPoint anchor) const
{
    return std::none_of(
               boxes.begin(), boxes.end(),
               [&leader, anchor](const SheetBox& box) { return !Contains(box, anchor) && Crosses(leader, box); }) &&
           std::none_of(leaders.begin(), leaders.end(),
                        [&leader](const SheetLine& other) { return Crosses(leader, other); }) &&
           std::none_of(turnedBoxes.begin(), turnedBoxes.end(),
                        [&leader](const TurnedBox& box) { return Crosses(leader, box); });
}

std::optional<LabelPlace> LabelPlacer::Place(SheetPoint anchor, double width, double height, double clearance,
                                             SheetPoint outward)
{
    const double first = std::atan2(outward.y, outward.x);
    for (int ring = 0; ring < RINGS; ++ring)
    {
        const double radius = clearance + ring * RADIUS_STEP;
        for (int i = 0; i < DIRECTIONS; ++i)
        {
            // Outward first, then alternately to both sides: 0, +1, -1, +2, -2 ...
            const int turn = i % 2 == 1 ? (i + 1) / 2 : -i / 2;
            const double angle = first + turn * 2.0 * PI / DIRECTIONS;
            LabelPlace place;
            place.box = BoxBeside(anchor, radius, {std::cos(angle), std::sin(angle)}, width, height);
            if (!IsFree(place.box))
            {
                continue;
            }
            const SheetLine leader = LeaderTo(anchor, place.box, clearance);
            if (radius - clearance > LEADER_FROM)
            {
                if (!IsFree(leader, anchor))
                {
                    continue;
                }
                place.leader = leader;
                leaders.push_back(leader);
            }
            boxes.push_back(place.box);
            return place;
        }
    }
    return std::nullopt;
}

std::optional<TurnedBox> LabelPlacer::PlaceFirst(const std::vector<TurnedBox>& candidates)
{
    const auto found = std::find_if(candidates.begin(), candidates.end(),
                                    [this](const TurnedBox& candidate) { return IsFree(candidate); });
    if (found == candidates.end())
    {
        return std::nullopt;
    }
    turnedBoxes.push_back(*found);
    return *found;
}

} // namespace qstd
