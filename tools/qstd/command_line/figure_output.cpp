#include "command_line/figure_output.h"

#include "text/outcome.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace qstd {

namespace {

/** Letters of a hundredth of the figure are legible when all of it is on the screen. */
constexpr double TEXT_PART = 0.01;

void AddPlaces(FigureExtent& extent, const FigurePoint& point)
{
    extent.Add(point.place);
}

void AddPlaces(FigureExtent& extent, const FigureLine& line)
{
    extent.Add(line.from);
    extent.Add(line.to);
}

/** Both ends of the arc: its middle may lie far outside of what is drawn. */
void AddPlaces(FigureExtent& extent, const FigureArc& arc)
{
    for (const double azimuth : {arc.start, arc.start + arc.sweep})
    {
        extent.Add({arc.centre.northing + arc.radius * std::cos(azimuth),
                    arc.centre.easting + arc.radius * std::sin(azimuth), std::nullopt});
    }
}

void AddPlaces(FigureExtent& extent, const FigureTick& tick)
{
    extent.Add(tick.place);
}

} // namespace

void FigureExtent::AddPart()
{
    ++parts;
}

void FigureExtent::Add(const FigurePlace& place)
{
    if (std::isfinite(place.northing) && std::isfinite(place.easting))
    {
        north = std::max(north, place.northing);
        south = std::min(south, place.northing);
        east = std::max(east, place.easting);
        west = std::min(west, place.easting);
    }
}

bool FigureExtent::IsEmpty() const
{
    return parts == 0;
}

double FigureExtent::TextHeight() const
{
    const double size = std::max(north - south, east - west) * TEXT_PART;
    if (!std::isfinite(size) || size <= 0.0)
    {
        return 1.0;
    }
    const double power = std::pow(10.0, std::floor(std::log10(size)));
    for (const double step : {5.0, 2.0})
    {
        if (size >= step * power)
        {
            return step * power;
        }
    }
    return power;
}

FigureOutput::FigureOutput(const OutputOptions& outputOptions) : options(outputOptions), plan(outputOptions.unit)
{
}

bool FigureOutput::IsWanted() const
{
    return !AnyPath().empty();
}

const std::string& FigureOutput::AnyPath() const
{
    if (!options.svg.empty())
    {
        return options.svg;
    }
    return options.dxf.empty() ? options.geoJson : options.dxf;
}

std::string FigureOutput::StartWriting()
{
    isWriting = true;
    return extent.IsEmpty() ? "" : OpenDrawings();
}

std::string FigureOutput::OpenDrawings()
{
    std::string problem;
    svg = Open(options.svg, problem);
    if (OutputStream* const stream = Open(options.dxf, problem))
    {
        dxf = std::make_unique<FigureDxf>([stream](std::string_view text) { stream->Write(text); }, options.unit,
                                          extent.TextHeight());
    }
    if (OutputStream* const stream = Open(options.geoJson, problem))
    {
        geoJson =
            std::make_unique<FigureGeoJson>([stream](std::string_view text) { stream->Write(text); }, options.unit);
    }
    return problem;
}

/** Null for a file that is not wanted, and after a problem. */
OutputStream* FigureOutput::Open(const std::string& path, std::string& problem)
{
    if (path.empty() || !problem.empty())
    {
        return nullptr;
    }
    streams.push_back(std::make_unique<OutputStream>());
    problem = streams.back()->Open(path);
    return problem.empty() ? streams.back().get() : nullptr;
}

void FigureOutput::Begin(const FigureView& view)
{
    if (!isWriting)
    {
        plan.Begin(view);
    }
    if (dxf)
    {
        dxf->Begin(view);
    }
    if (geoJson)
    {
        geoJson->Begin(view);
    }
}

template <typename Part>
void FigureOutput::Forward(const Part& part)
{
    if (!isWriting)
    {
        extent.AddPart();
        AddPlaces(extent, part);
        plan.Add(part);
        CheckPlan();
    }
    if (dxf)
    {
        dxf->Add(part);
    }
    if (geoJson)
    {
        geoJson->Add(part);
    }
}

void FigureOutput::CheckPlan() const
{
    if (!options.svg.empty() && plan.IsFull())
    {
        throw WrongUse(fmt::format("--svg: a plan holds {} points, lines, arcs and ticks, and this figure has more; "
                                   "compute fewer, or draw with --dxf or --geojson",
                                   MOST_FIGURE_PARTS));
    }
}

void FigureOutput::Add(const FigurePoint& point)
{
    Forward(point);
}

void FigureOutput::Add(const FigureLine& line)
{
    Forward(line);
}

void FigureOutput::Add(const FigureArc& arc)
{
    Forward(arc);
}

void FigureOutput::Add(const FigureTick& tick)
{
    Forward(tick);
}

void FigureOutput::Note(const std::string& text)
{
    if (!isWriting)
    {
        plan.Note(text);
    }
    if (dxf)
    {
        dxf->Note(text);
    }
    if (geoJson)
    {
        geoJson->Note(text);
    }
}

void FigureOutput::Tell(Sink& sink) const
{
    if (extent.IsEmpty())
    {
        sink.Note(options.svg.empty() ? "No drawing: nothing was computed" : "No plan: nothing was computed");
    }
    else if (!options.svg.empty())
    {
        sink.Note(fmt::format("Plan: {}, scale {}", options.svg, plan.Scale()));
    }
}

std::string FigureOutput::Complete()
{
    if (svg != nullptr)
    {
        svg->Write(plan.Finish());
    }
    if (dxf)
    {
        dxf->Finish();
    }
    if (geoJson)
    {
        geoJson->Finish();
    }
    std::string problem;
    for (const std::unique_ptr<OutputStream>& stream : streams)
    {
        problem = problem.empty() ? stream->Complete() : problem;
    }
    return problem;
}

std::string FigureOutput::Commit()
{
    std::string problem;
    for (const std::unique_ptr<OutputStream>& stream : streams)
    {
        problem = problem.empty() ? stream->Commit() : problem;
    }
    return problem;
}

} // namespace qstd
