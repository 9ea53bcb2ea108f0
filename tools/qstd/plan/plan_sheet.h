/**
 * @file plan_sheet.h
 * The sheet of a plan: which way up it lies, its scale, where the ground goes on it.
 */
#ifndef QSTD_PLAN_SHEET_H
#define QSTD_PLAN_SHEET_H

#include "plan/plan_labels.h"

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

/** What a sheet is chosen for. */
struct SheetNeeds
{
    double metresPerUnit = 1.0;      /**< of the ground's coordinates */
    double smallestDenominator = 10; /**< of the scale; a power of ten, below 1 for an enlargement */
    bool hasQuarterScales = true;    /**< 1:250 and the like, besides 1, 2 and 5 times a power of ten */
    double inset = 14.0;             /**< from the frame to the outermost point, millimetres */
    double panelHeight = 62.0;       /**< of the legend below the frame of an upright sheet, millimetres */
};

/** A sheet of A4 with a frame for the map and room for the legend beside or below it. */
struct PlanSheet
{
    double width = 0.0;
    double height = 0.0;
    SheetBox frame;
    SheetBox panel;
    bool isLandscape = true;
    double scale = 0.0; /**< the denominator */
    double metresPerUnit = 1.0;
    double northing = 0.0; /**< of the middle of the frame */
    double easting = 0.0;

    [[nodiscard]] SheetPoint Place(double groundNorthing, double groundEasting) const;

    /** Millimetres on the sheet of a length on the ground, in its unit. */
    [[nodiscard]] double OnSheet(double length) const;

    /** The length on the ground, in its unit, of millimetres on the sheet. */
    [[nodiscard]] double OnGround(double millimetres) const;
};

/** The way up that gives the larger scale, landscape if both are alike. */
PlanSheet ChooseSheet(const GroundExtent& extent, const SheetNeeds& needs = {});

/** The largest of 1, 2, 5 times a power of ten that is not above `limit`; `limit` must be above 0. */
double NiceBelow(double limit);

/** 1:25 000; an enlargement is 5:1. */
std::string ScaleText(double scale);

/** A factor or denominator with its digits in groups: 25 000, 0.5. */
std::string GroupedText(double value);

} // namespace qstd

#endif
