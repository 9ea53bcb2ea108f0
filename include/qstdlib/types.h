/**
 * @file types.h
 * What every function shares: points, the angle unit, markers for what is absent or undetermined, statuses.
 */
#ifndef QSTDLIB_TYPES_H
#define QSTDLIB_TYPES_H

#include <stdint.h>

/**
 * An angle in units of 1/16 arc-second; a full circle counts 20,736,000.
 *
 * Azimuths run clockwise from north: 0 is north, a quarter circle is east. Zenith angles run from 0 (straight up)
 * over a quarter circle (level) to a half circle (straight down); from a half circle on they are readings in face two.
 */
typedef int32_t AngleUnit;

#define ANGLE_FULL_CIRCLE INT32_C(20736000)   /**< 360 degrees */
#define ANGLE_HALF_CIRCLE INT32_C(10368000)   /**< 180 degrees */
#define ANGLE_QUARTER_CIRCLE INT32_C(5184000) /**< 90 degrees */

/** An angle that could not be computed (coincident points, missing coordinates): 2^27, outside the circle. */
#define ANGLE_UNDEFINED INT32_C(0x8000000)

/** A real result that the geometry does not determine: 2^27, the value of ANGLE_UNDEFINED. */
#define UNDEFINED_REAL 134217728.0

/** An observation component that is absent, in the records of the station adjustment. */
#define MISSING_VALUE 1e20

/** Validity bits of PointRecord::flags. The other bits carry nothing. */
enum PointFlag
{
    POINT_HAS_PLAN = 1,  /**< northing and easting are valid */
    POINT_HAS_HEIGHT = 2 /**< height is valid */
};

/** A point: plan coordinates and height, each valid where its flag says so. */
typedef struct PointRecord
{
    double northing; /**< first plan coordinate; azimuths count from its positive direction */
    double easting;  /**< second plan coordinate; an azimuth of a quarter circle points along it */
    double height;   /**< elevation */
    uint16_t flags;  /**< sum of PointFlag bits: 3 for a full point, 1 for a plan point */
} PointRecord;

/** Results of the exported functions. One meaning each across the library; each function names those it returns. */
enum QstdStatus
{
    QSTD_OK = 0,                       /**< done */
    QSTD_REJECTED = -1,                /**< the input cannot define what is asked for, or there is no observation,
                                          or the adjustment failed */
    QSTD_NO_MEMORY = -3,               /**< no scratch memory for the multi-point resection */
    QSTD_NOT_DEFINED = -5,             /**< a calculation was called before its definition was set */
    QSTD_COINCIDENT_POINTS = -1200,    /**< two points that must differ coincide: no direction exists */
    QSTD_MISSING_COORDINATES = -1201,  /**< an input point lacks coordinates that the computation needs; or a sight
                                          of the circle offset cannot be used */
    QSTD_VERTICAL_SIGHT = -1202,       /**< the line of sight is vertical */
    QSTD_SIGHT_TURNED_AWAY = -1203,    /**< the sight is a quarter circle or more away from the base direction */
    QSTD_NO_DISTANCE = -1204,          /**< no distance was measured to either point */
    QSTD_DEGENERATE = -1205,           /**< the geometry determines no unique result, or no convergence */
    QSTD_PARALLEL_LINES = -1206,       /**< the two lines do not intersect */
    QSTD_EQUAL_DIRECTIONS = -1207,     /**< two of the three resection directions are equal */
    QSTD_HEIGHT_UNDETERMINED = -1208,  /**< warning: done, but the height-related part is UNDEFINED_REAL or, for
                                          the two-point plane, follows from the station alone */
    QSTD_DISTANCE_UNDETERMINED = -1209 /**< warning: done, but the distance-related part is UNDEFINED_REAL */
};

#endif
