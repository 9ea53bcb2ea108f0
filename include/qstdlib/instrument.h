/**
 * @file instrument.h
 * The instrument behind the library: its settings and its observation service.
 */
#ifndef QSTDLIB_INSTRUMENT_H
#define QSTDLIB_INSTRUMENT_H

#include "export.h"
#include "types.h"

/** Identifiers of the settings that the library reads. Switches count as on only when they answer exactly 1. */
enum SettingIdentifier
{
    SETTING_AZIMUTH_REFERENCE = 49411,    /**< integer; 1: azimuths count from south; stand-alone 0 */
    SETTING_CURVATURE_REFRACTION = 49442, /**< integer; 1: curvature and refraction are corrected; stand-alone 0 */
    SETTING_SEA_LEVEL = 49443,            /**< integer; 1: distances are corrected for sea level; stand-alone 0 */
    SETTING_REFRACTION_SELECTOR = 49445,  /**< integer; 0, 1 or 2, nothing else: coefficient 0.132, 0.133, 0.20;
                                               stand-alone 0 */
    SETTING_SCALE_FACTOR = 54376          /**< real; scale of plan distances, 1.0 for none, 0.0 is ignored;
                                               stand-alone 1.0 */
};

/** The settings record. The library reads values[5], the mean elevation of the working area, and nothing else. */
typedef struct SettingsRecord
{
    double values[12]; /**< values[5] in metres, the unit of the earth's radius that it is divided by */
} SettingsRecord;

/** The observation that the instrument would make of a target from its present station. */
typedef struct ObservationRecord
{
    AngleUnit horizontalAngle; /**< circle reading, face one */
    AngleUnit zenithAngle;     /**< zenith angle, face one */
    double distance;           /**< distance to the target, as the service defines it */
    double secondDistance;     /**< read by QCalcOfsCircle, from its caller, as the horizontal distance */
    double thirdDistance;      /**< not read by the library */
    double northing;           /**< target, as the service returns it */
    double easting;            /**< target, as the service returns it */
    double height;             /**< target, as the service returns it */
} ObservationRecord;

/**
 * The operations by which the library reaches an instrument.
 *
 * Every operation is called synchronously, from within the exported function that needs it, each time it is needed:
 * the library keeps no setting, so a change is seen by the next call. A null entry stands for the stand-alone default.
 */
typedef struct InstrumentSettings
{
    /** Value of an integer setting; 0 for an unknown identifier. Default: 0 for all. */
    int32_t (*GetIntSetting)(uint32_t identifier);
    /** Value of a real setting; 0.0 for an unknown identifier. Default: 1.0 for the scale factor, else 0.0. */
    double (*GetRealSetting)(uint32_t identifier);
    /** Fills the settings record. Default: twelve times 0.0. */
    void (*GetSettingsRecord)(SettingsRecord* record);
    /** 1 when the telescope is in face two, else 0. Default: 0. */
    int32_t (*QueryFaceTwo)(void);
    /** Expected observation of a target: 0 when `observation` is filled, -1 when there is none, with a record of zeros
        (it is copied all the same). `passthrough` is whatever the caller of an offset function handed in. Default:
        zeros, -1. */
    int32_t (*CoordToObservation)(double northing, double easting, double height, double passthrough,
                                  ObservationRecord* observation);
    /** May tidy the discriminant of the line-circle intersection before it is tested. Default: returns `value`, leaves
        `other` untouched. */
    double (*AdjustDiscriminant)(double value, double* other);
} InstrumentSettings;

QSTD_BEGIN_DECLS

/**
 * Connects an instrument to the library, for all calls from now on.
 *
 * @param[in] settings  the instrument's operations; copied, so the caller's record may change or go. A null entry keeps
 *                      that operation's stand-alone default. Null restores all defaults, the state after loading:
 *                      north azimuths, no corrections, scale 1.0, face one, no observation service.
 */
QSTD_API void ConnectInstrumentSettings(const InstrumentSettings* settings);

QSTD_END_DECLS

#endif
