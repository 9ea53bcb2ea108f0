/**
 * @file figure_output.h
 * The figure of a verb on its way into the files that are wanted of it.
 */
#ifndef QSTD_FIGURE_OUTPUT_H
#define QSTD_FIGURE_OUTPUT_H

#include "output/output_stream.h"
#include "plan/figure.h"
#include "plan/figure_dxf.h"
#include "plan/figure_geojson.h"
#include "plan/figure_svg.h"
#include "results/output_options.h"
#include "results/sink.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace qstd {

/** How many parts a figure has, and how far it reaches. */
class FigureExtent
{
public:
    void AddPart();
    void Add(const FigurePlace& place);

    [[nodiscard]] bool IsEmpty() const;

    /** Height of names on a drawing: legible where the whole figure is in view. */
    [[nodiscard]] double TextHeight() const;

private:
    size_t parts = 0;
    double north = -std::numeric_limits<double>::infinity();
    double south = std::numeric_limits<double>::infinity();
    double east = -std::numeric_limits<double>::infinity();
    double west = std::numeric_limits<double>::infinity();
};

/**
 * Takes a figure twice. The first time it is looked at: a plan is kept, and whether there is anything to draw and how
 * large it is gets known. The second time the drawings, which may be of any length, are written.
 */
class FigureOutput : public FigureWriter
{
public:
    explicit FigureOutput(const OutputOptions& outputOptions);

    /** True when a file is wanted. */
    [[nodiscard]] bool IsWanted() const;

    /** A file that is wanted. */
    [[nodiscard]] const std::string& AnyPath() const;

    /** Ends the first time: opens the drawings. @return empty, or what went wrong */
    std::string StartWriting();

    void Begin(const FigureView& view) override;

    /** Throw WrongUse when the plan would be too full. */
    void Add(const FigurePoint& point) override;
    void Add(const FigureLine& line) override;
    void Add(const FigureArc& arc) override;
    void Add(const FigureTick& tick) override;

    void Note(const std::string& text) override;

    /** Says what was drawn. */
    void Tell(Sink& sink) const;

    /** Writes what is left, but gives no file its name; see OutputStream. @return empty, or what went wrong */
    std::string Complete();

    /** Gives the files their names. Signals should be held meanwhile. @return empty, or what went wrong */
    std::string Commit();

private:
    template <typename Part>
    void Forward(const Part& part);
    void CheckPlan() const;
    std::string OpenDrawings();
    OutputStream* Open(const std::string& path, std::string& problem);

    const OutputOptions& options;
    bool isWriting = false;
    FigureExtent extent;
    FigureSvg plan;
    std::vector<std::unique_ptr<OutputStream>> streams; /**< of all files, once there is something to draw */
    OutputStream* svg = nullptr;                        /**< null where it is not wanted */
    std::unique_ptr<FigureDxf> dxf;
    std::unique_ptr<FigureGeoJson> geoJson;
};

} // namespace qstd

#endif
