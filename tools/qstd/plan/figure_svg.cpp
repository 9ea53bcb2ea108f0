#include "plan/figure_svg.h"

#include "plan/figure_drawing.h"
#include "plan/figure_panel.h"

namespace qstd {

namespace {

constexpr size_t MOST_NOTES = 100; // far more than a sheet has room for

} // namespace

FigureSvg::FigureSvg(LinearUnit unitOfFigure) : unit(unitOfFigure)
{
}

bool FigureSvg::HasRoom()
{
    isFull = isFull || parts == MOST_FIGURE_PARTS;
    parts += isFull ? 0U : 1U;
    return !isFull;
}

void FigureSvg::Begin(const FigureView& view)
{
    figure.view = view;
}

void FigureSvg::Add(const FigurePoint& point)
{
    if (HasRoom())
    {
        figure.points.push_back(point);
    }
}

void FigureSvg::Add(const FigureLine& line)
{
    if (HasRoom())
    {
        figure.lines.push_back(line);
    }
}

void FigureSvg::Add(const FigureArc& arc)
{
    if (HasRoom())
    {
        figure.arcs.push_back(arc);
    }
}

void FigureSvg::Add(const FigureTick& tick)
{
    if (HasRoom())
    {
        figure.ticks.push_back(tick);
    }
}

void FigureSvg::Note(const std::string& text)
{
    if (figure.notes.size() < MOST_NOTES)
    {
        figure.notes.push_back(text);
    }
}

bool FigureSvg::IsFull() const
{
    return isFull;
}

std::string FigureSvg::Finish() const
{
    return DrawFigure(figure, unit);
}

std::string FigureSvg::Scale() const
{
    return ScaleText(LayOut(figure, unit, FigurePanelHeight(figure)).sheet.scale);
}

} // namespace qstd
