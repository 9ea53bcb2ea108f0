/**
 * @file plan_labels.h
 * Places names on a plan so that they cover nothing and each other neither.
 */
#ifndef QSTD_PLAN_LABELS_H
#define QSTD_PLAN_LABELS_H

#include <array>
#include <optional>
#include <vector>

namespace qstd {

/** A place on the sheet, millimetres from its upper left corner. */
struct SheetPoint
{
    double x = 0.0;
    double y = 0.0;
};

struct SheetBox
{
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
};

struct SheetLine
{
    SheetPoint from;
    SheetPoint to;
};

/** A box turned about its middle by an angle in radians, clockwise on the sheet. */
struct TurnedBox
{
    SheetPoint middle;
    double width = 0.0;
    double height = 0.0;
    double turn = 0.0;

    /** In order around the box, the first one its upper left before the turn. */
    [[nodiscard]] std::array<SheetPoint, 4> Corners() const;
};

/** The place of a box beside a point: its nearest edge or corner lies `radius` away in the direction (x, y). */
SheetBox BoxBeside(SheetPoint anchor, double radius, SheetPoint direction, double width, double height);

/** Where a label goes; far from its point it is tied to it by a leader. */
struct LabelPlace
{
    SheetBox box;
    std::optional<SheetLine> leader;
};

class LabelPlacer
{
public:
    /** Labels stay within the frame. */
    explicit LabelPlacer(SheetBox frame);

    void AddObstacle(const SheetBox& box);
    void AddObstacle(const SheetLine& line);
    void AddObstacle(const TurnedBox& box);

    /**
     * Finds the free place nearest to a point, which then is an obstacle to further labels.
     *
     * @param anchor     the point that the label names
     * @param clearance  distance that the label keeps from it
     * @param outward    direction (x, y) that is tried first
     * @return nothing when there is no room
     */
    std::optional<LabelPlace> Place(SheetPoint anchor, double width, double height, double clearance,
                                    SheetPoint outward);

    /** The first free one of a label's possible places, which then is an obstacle to further labels. */
    std::optional<TurnedBox> PlaceFirst(const std::vector<TurnedBox>& candidates);

private:
    [[nodiscard]] bool IsFree(const SheetBox& box) const;
    [[nodiscard]] bool IsFree(const TurnedBox& box) const;
    [[nodiscard]] bool IsFree(const SheetLine& leader, SheetPoint anchor) const;

    SheetBox frame;
    std::vector<SheetBox> boxes;
    std::vector<SheetLine> lines;
    std::vector<SheetLine> leaders;
    std::vector<TurnedBox> turnedBoxes;
};

} // namespace qstd

#endif
