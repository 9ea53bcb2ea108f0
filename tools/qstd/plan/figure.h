/**
 * @file figure.h
 * What a computation shows of itself: points, lines and arcs on the ground, for plans and for drawing programs.
 */
#ifndef QSTD_FIGURE_H
#define QSTD_FIGURE_H

#include <optional>
#include <string>

namespace qstd {

/** A place in site coordinates; the height is there where it is known. */
struct FigurePlace
{
    double northing = 0.0;
    double easting = 0.0;
    std::optional<double> height;
};

/** What a point is in its figure; decides its symbol and its layer. */
enum class PointRole
{
    GIVEN,    /**< known before the computation: a triangle */
    COMPUTED, /**< the result: a circle with a dot */
    OTHER,    /**< a further solution, not the one that is taken: an open circle */
    STATION,  /**< where the instrument stands: a double circle */
    SIGHTED,  /**< measured: a cross */
    FOOT      /**< on the reference, below a staked point: a small dot without a name */
};

/** What a line or an arc is in its figure; decides its pen and its layer. */
enum class LineRole
{
    REFERENCE,    /**< the line, arc, circle or plane that is worked from: heavy */
    RESULT,       /**< what was computed: medium */
    SIGHT,        /**< a line of sight: thin, broken */
    OFFSET,       /**< from the foot to a point: thin */
    CONSTRUCTION, /**< helps to read the figure: thin, dotted */
};

struct FigurePoint
{
    std::string name; /**< may be empty */
    FigurePlace place;
    PointRole role = PointRole::GIVEN;
};

struct FigureLine
{
    FigurePlace from;
    FigurePlace to;
    LineRole role = LineRole::REFERENCE;
    std::string label; /**< such as a length, set along the line; may be empty */
};

/** A circular arc; a sweep of a full turn is a circle. */
struct FigureArc
{
    FigurePlace centre;
    double radius = 0.0;
    double start = 0.0; /**< azimuth from the centre to the first point, radians, clockwise from north */
    double sweep = 0.0; /**< radians, clockwise where positive */
    LineRole role = LineRole::REFERENCE;
    std::string label;
};

/** A short stroke across a reference with its station beside it. */
struct FigureTick
{
    FigurePlace place;
    double azimuth = 0.0; /**< of the reference there, radians; the stroke runs across it */
    std::string label;    /**< may be empty: an unmarked tick */
};

/** How a figure is looked at on a plan. */
struct FigureView
{
    enum class Kind
    {
        PLAN,     /**< from above, north up */
        ELEVATION /**< from the side, height up */
    };

    Kind kind = Kind::PLAN;
    std::string title;    /**< such as: Intersection of two circles */
    FigurePlace origin;   /**< ELEVATION: where distances along the view count from */
    double azimuth = 0.0; /**< ELEVATION: direction in which they count, to the right on the sheet, radians */
};

/** Takes the parts of one figure, in any order, after the view. */
class FigureWriter
{
public:
    FigureWriter() = default;
    FigureWriter(const FigureWriter&) = delete;
    FigureWriter& operator=(const FigureWriter&) = delete;
    virtual ~FigureWriter() = default;

    virtual void Begin(const FigureView& view) = 0;
    virtual void Add(const FigurePoint& point) = 0;
    virtual void Add(const FigureLine& line) = 0;
    virtual void Add(const FigureArc& arc) = 0;
    virtual void Add(const FigureTick& tick) = 0;

    /** A line of the legend, such as "radius 25.000". */
    virtual void Note(const std::string& text) = 0;
};

} // namespace qstd

#endif
