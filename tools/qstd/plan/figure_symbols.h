/**
 * @file figure_symbols.h
 * How the parts of a figure look on a plan, and what its legend calls them.
 */
#ifndef QSTD_FIGURE_SYMBOLS_H
#define QSTD_FIGURE_SYMBOLS_H

#include "plan/figure.h"
#include "plan/svg_writer.h"

#include <array>
#include <string_view>

namespace qstd {

/** From what lies below to what lies above. */
constexpr std::array<LineRole, 5> LINE_ROLES = {LineRole::REFERENCE, LineRole::RESULT, LineRole::SIGHT,
                                                LineRole::OFFSET, LineRole::CONSTRUCTION};
constexpr std::array<PointRole, 6> POINT_ROLES = {PointRole::FOOT,  PointRole::SIGHTED,  PointRole::OTHER,
                                                  PointRole::GIVEN, PointRole::COMPUTED, PointRole::STATION};

constexpr const char* TICK_LOOK = "stroke=\"#000\" stroke-width=\"0.3\"";
constexpr double TICK_HALF = 1.3; // of the stroke across the reference, millimetres

/** Presentation attributes of a pen; heavy pens are lighter than the thin ones that may lie upon them. */
const char* PenLook(LineRole role);
std::string_view PenMeaning(LineRole role);

void DrawSymbol(SvgWriter& svg, SheetPoint middle, PointRole role);
std::string_view SymbolMeaning(PointRole role);

/** From the middle of a symbol to its edge, millimetres. */
double SymbolSize(PointRole role);

} // namespace qstd

#endif
