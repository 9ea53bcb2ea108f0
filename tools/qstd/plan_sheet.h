/**
 * @file plan_sheet.h
 * The sheet of a plan: which way up it lies, its scale, where the ground goes on it.
 */
#ifndef QSTD_PLAN_SHEET_H
#define QSTD_PLAN_SHEET_H

#include "plan_labels.h"

#include <string>

namespace qstd {

/** Northings and eastings that a plan must show. */
struct GroundExtent
{
    double south = 0.0;
    double north = 0.0;
    double west = 0.0;
    double east = 0.0;

    void Include(double northing, double easting);
};

/** A sheet of A4 with a frame for the map and room for the legend beside or below it. */
struct PlanSheet
{
    double width = 0.0;
    double height = 0.0;
    SheetBox frame;
    SheetBox panel;
    bool isLandscape = true;
    double scale = 0.0;    /**< the denominator */
    double northing = 0.0; /**< of the middle of the frame */
    double easting = 0.0;

    [[nodiscard]] SheetPoint Place(double groundNorthing, double groundEasting) const;

    /** Millimetres on the sheet of a length on the ground, in metres. */
    [[nodiscard]] double OnSheet(double metres) const;
};

/** The way up that gives the larger scale, landscape if both are alike. */
PlanSheet ChooseSheet(const GroundExtent& extent);

/** The largest of 1, 2, 5 times a power of ten that is not above `limit`; `limit` must be above 0. */
double NiceBelow(double limit);

/** 1:25 000. */
std::string ScaleText(double scale);

/** A factor or denominator with its digits in groups: 25 000, 0.5. */
std::string GroupedText(double value);

} // namespace qstd

#endif
