#include "verbs/grade.h"

#include "proof/judgement.h"
#include "proof/plan_proof.h"
#include "verbs/arguments.h"

#include <qstdlib.h>

#include <fmt/format.h>

namespace qstd {

namespace {

const Section SECTION = {"grade",
                         Layout::RECORD,
                         true,
                         {{"horizontal_distance", "", Quantity::LENGTH, ""},
                          {"height_difference", "", Quantity::LENGTH, ""},
                          {"grade", "grade", Quantity::PERCENT, ""},
                          {"ratio", "ratio 1 :", Quantity::NUMBER, ""}}};

Row Compute(double horizontal, double vertical, const Sink& sink)
{
    SlopeResult slope{};
    QCogoCalcSlopeByDist(horizontal, vertical, &slope);
    Row row;
    row.values = {horizontal, vertical, RealValue(slope.grade), RealValue(slope.ratio)};
    row.isComputed = horizontal != 0.0 || vertical != 0.0;
    if (!row.isComputed)
    {
        row.remark = "both distances are 0, which gives no slope";
    }
    else if (horizontal == 0.0)
    {
        row.remark = "straight up or down: there is no grade";
    }
    else if (vertical == 0.0)
    {
        row.remark = "level: there is no ratio";
    }
    if (row.isComputed)
    {
        Judge(ProveGrade(horizontal, vertical, slope), sink, row);
    }
    return row;
}

} // namespace

void RunGrade(const GradeOptions& options, Inputs& inputs, Sink& sink)
{
    static_cast<void>(inputs);
    const double horizontal = LengthArgument(options.horizontal, "horizontal distance");
    const double vertical = LengthArgument(options.vertical, "height difference");
    sink.Title(fmt::format("Slope of {} over {}", sink.LengthText(vertical), sink.LengthText(horizontal)));
    sink.Begin(SECTION);
    sink.Add(Compute(horizontal, vertical, sink));
}

} // namespace qstd
