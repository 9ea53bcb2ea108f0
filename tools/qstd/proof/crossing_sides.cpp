#include "proof/crossing_sides.h"

#include <algorithm>
#include <array>
#include <optional>

namespace qstd {

namespace {

constexpr double TOUCH = 1e-3;
constexpr double TOUCH_OF_EXTENT = 1e-4;

/** Through so many corners a boundary is followed along another side. */
constexpr size_t LONGEST_COMPANY = 1000;

/** A side, with what it covers along two directions at a right angle. */
struct Side
{
    size_t corner = 0; /**< in the list without repetitions */
    double from = 0.0;
    double to = 0.0;
    double low = 0.0;
    double high = 0.0;
};

class Boundary
{
public:
    explicit Boundary(const std::vector<PlanVector>& given);

    [[nodiscard]] size_t Size() const
    {
        return corners.size();
    }

    [[nodiscard]] std::vector<Crossing> Find(size_t most) const;

private:
    [[nodiscard]] size_t Next(size_t corner) const
    {
        return corner + 1 == corners.size() ? 0 : corner + 1;
    }

    [[nodiscard]] size_t Previous(size_t corner) const
    {
        return corner == 0 ? corners.size() - 1 : corner - 1;
    }

    [[nodiscard]] std::vector<Side> Sorted() const;
    [[nodiscard]] std::optional<PlanVector> CrossingOf(size_t one, size_t other) const;
    [[nodiscard]] bool PassesThroughSide(size_t corner, size_t side) const;
    [[nodiscard]] bool PassesThroughCorner(size_t corner, size_t other) const;
    [[nodiscard]] int SideOf(size_t side, size_t corner) const;
    [[nodiscard]] bool IsOnSide(size_t side, size_t corner) const;
    [[nodiscard]] bool IsSamePlace(size_t one, size_t other) const;

    std::vector<PlanVector> corners;
    std::vector<size_t> places;  /**< of the corners in what was given */
    std::vector<Course> courses; /**< of the side from each corner */
    double touch = TOUCH;
};

Boundary::Boundary(const std::vector<PlanVector>& given)
{
    for (size_t i = 0; i < given.size(); ++i)
    {
        if (corners.empty() || Length(given[i] - corners.back()) > 0.0)
        {
            corners.push_back(given[i]);
            places.push_back(i);
        }
    }
    while (corners.size() > 1 && Length(corners.back() - corners.front()) == 0.0)
    {
        corners.pop_back();
        places.pop_back();
    }
    double extent = 0.0;
    for (const PlanVector& corner : corners)
    {
        extent = std::max(extent, Length(corner - corners.front()));
    }
    touch = std::min(TOUCH, TOUCH_OF_EXTENT * extent);
    for (size_t i = 0; i < corners.size(); ++i)
    {
        courses.push_back(CourseThrough(corners[i], corners[Next(i)]));
    }
}

/** Along the direction in which sides overlap least, by where they begin. */
std::vector<Side> Boundary::Sorted() const
{
    constexpr double HALF = 0.70710678118654752;
    const std::array<PlanVector, 4> directions = {{{1.0, 0.0}, {HALF, HALF}, {0.0, 1.0}, {HALF, -HALF}}};
    PlanVector best;
    double least = HUGE_VAL;
    for (const PlanVector& direction : directions)
    {
        double covered = 0.0;
        double smallest = HUGE_VAL;
        double largest = -HUGE_VAL;
        for (size_t i = 0; i < corners.size(); ++i)
        {
            const double place = Along(direction, corners[i] - corners.front());
            covered += std::fabs(Along(direction, corners[Next(i)] - corners[i]));
            smallest = std::min(smallest, place);
            largest = std::max(largest, place);
        }
        const double share = largest > smallest ? covered / (largest - smallest) : HUGE_VAL;
        if (!(share >= least))
        {
            least = share;
            best = direction;
        }
    }
    best = least < HUGE_VAL ? best : directions.front();
    std::vector<Side> sides;
    sides.reserve(corners.size());
    for (size_t i = 0; i < corners.size(); ++i)
    {
        const PlanVector start = corners[i] - corners.front();
        const PlanVector end = corners[Next(i)] - corners.front();
        const auto [from, to] = std::minmax({Along(best, start), Along(best, end)});
        const auto [low, high] = std::minmax({Right(best, start), Right(best, end)});
        sides.push_back({i, from - touch, to + touch, low - touch, high + touch});
    }
    std::sort(sides.begin(), sides.end(), [](const Side& one, const Side& other) { return one.from < other.from; });
    return sides;
}

std::vector<Crossing> Boundary::Find(size_t most) const
{
    std::vector<Crossing> found;
    std::vector<Side> open;
    for (const Side& side : Sorted())
    {
        open.erase(
            std::remove_if(open.begin(), open.end(), [&side](const Side& other) { return other.to < side.from; }),
            open.end());
        for (const Side& other : open)
        {
            if (other.low > side.high || other.high < side.low)
            {
                continue;
            }
            const std::optional<PlanVector> place = CrossingOf(side.corner, other.corner);
            if (place)
            {
                const auto [first, second] = std::minmax(places[side.corner], places[other.corner]);
                found.push_back({first, second, *place});
            }
            if (found.size() == most)
            {
                return found;
            }
        }
        open.push_back(side);
    }
    return found;
}

/** On which hand of a side a corner lies: 1 right, -1 left, 0 on its line. */
int Boundary::SideOf(size_t side, size_t corner) const
{
    const double right = courses[side].Right(corners[corner]);
    return std::fabs(right) <= touch ? 0 : (right > 0.0 ? 1 : -1);
}

bool Boundary::IsSamePlace(size_t one, size_t other) const
{
    return Length(corners[one] - corners[other]) <= touch;
}

/** Between the ends of a side, not in them. */
bool Boundary::IsOnSide(size_t side, size_t corner) const
{
    const Course& course = courses[side];
    const double along = course.Along(corners[corner]);
    return std::fabs(course.Right(corners[corner])) <= touch && along > touch &&
           along < course.Along(corners[Next(side)]) - touch;
}

/** The boundary comes to a corner on a side from one hand of it and leaves to the other. */
bool Boundary::PassesThroughSide(size_t corner, size_t side) const
{
    size_t before = Previous(corner);
    size_t after = Next(corner);
    if (IsOnSide(side, before))
    {
        // The first corner of those that go along a side speaks for all.
        return false;
    }
    for (size_t steps = 0; steps < LONGEST_COMPANY && SideOf(side, before) == 0; ++steps)
    {
        before = Previous(before);
    }
    for (size_t steps = 0; steps < LONGEST_COMPANY && SideOf(side, after) == 0; ++steps)
    {
        after = Next(after);
    }
    return SideOf(side, before) * SideOf(side, after) < 0;
}

/** Two parts of the boundary meet in a corner, and one goes from one hand of the other to the other hand. */
bool Boundary::PassesThroughCorner(size_t corner, size_t other) const
{
    // Clockwise from the way to the corner before.
    const PlanVector back = corners[Previous(corner)] - corners[corner];
    const auto turn = [&back](const PlanVector& way) {
        const double angle = std::atan2(Right(back, way), Along(back, way));
        return angle < 0.0 ? angle + 2.0 * 3.14159265358979323846 : angle;
    };
    const PlanVector ahead = corners[Next(corner)] - corners[corner];
    const PlanVector first = corners[Previous(other)] - corners[other];
    const PlanVector second = corners[Next(other)] - corners[other];
    // Ways that run along each other neither come from a hand nor leave to one.
    for (const PlanVector& own : {back, ahead})
    {
        for (const PlanVector& way : {first, second})
        {
            if (std::fabs(Right(own, way)) <= touch * std::max(Length(own), Length(way)) && Along(own, way) > 0.0)
            {
                return false;
            }
        }
    }
    return (turn(first) < turn(ahead)) != (turn(second) < turn(ahead));
}

std::optional<PlanVector> Boundary::CrossingOf(size_t one, size_t other) const
{
    const size_t oneEnd = Next(one);
    const size_t otherEnd = Next(other);
    if (oneEnd == other || otherEnd == one)
    {
        return std::nullopt;
    }
    const int startSide = SideOf(one, other);
    const int endSide = SideOf(one, otherEnd);
    if (startSide * endSide > 0)
    {
        return std::nullopt;
    }
    const int ownStart = SideOf(other, one);
    const int ownEnd = SideOf(other, oneEnd);
    if (ownStart * ownEnd > 0)
    {
        return std::nullopt;
    }
    if (startSide * endSide < 0 && ownStart * ownEnd < 0)
    {
        const double before = std::fabs(courses[one].Right(corners[other]));
        const double after = std::fabs(courses[one].Right(corners[otherEnd]));
        return corners[other] + before / (before + after) * (corners[otherEnd] - corners[other]);
    }
    // Each corner speaks for itself once: where a side starts.
    if (IsOnSide(other, one) && PassesThroughSide(one, other))
    {
        return corners[one];
    }
    if (IsOnSide(one, other) && PassesThroughSide(other, one))
    {
        return corners[other];
    }
    if (IsSamePlace(one, other) && PassesThroughCorner(one, other))
    {
        return corners[one];
    }
    return std::nullopt;
}

} // namespace

std::vector<Crossing> FindCrossings(const std::vector<PlanVector>& corners, size_t most)
{
    const Boundary boundary(corners);
    constexpr size_t FEWEST = 4;
    return boundary.Size() < FEWEST ? std::vector<Crossing>() : boundary.Find(most);
}

} // namespace qstd
