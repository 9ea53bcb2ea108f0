/**
 * @file simulated_instrument.h
 * An instrument without hardware: stands on known coordinates and tells what it would read to any other.
 */
#ifndef QSTD_SIMULATED_INSTRUMENT_H
#define QSTD_SIMULATED_INSTRUMENT_H

#include <qstdlib.h>

namespace qstd {

/**
 * A set-up instrument. Angles are rounded to the unit of the library, distances are exact.
 *
 * A plain value: fields may change at any time, a connected instrument answers by its present state.
 */
struct SimulatedInstrument
{
    PointRecord station = {0.0, 0.0, 0.0, POINT_HAS_PLAN | POINT_HAS_HEIGHT}; /**< mark under the axis */
    double instrumentHeight = 0.0;                                            /**< axis above the mark */
    AngleUnit orientation = 0;       /**< azimuth of the circle's zero, in the reference below */
    bool isFaceTwo = false;          /**< the face that the telescope is in */
    int32_t azimuthReference = 0;    /**< answer for SETTING_AZIMUTH_REFERENCE; 1: azimuths count from south */
    int32_t curvatureRefraction = 0; /**< answer for SETTING_CURVATURE_REFRACTION; 1: corrected */
    int32_t refractionSelector = 0;  /**< answer for SETTING_REFRACTION_SELECTOR; 0, 1 or 2 */
    int32_t seaLevel = 0;            /**< answer for SETTING_SEA_LEVEL; 1: corrected */
    double meanElevation = 0.0;      /**< of the working area, metres; answer in the settings record */
    double scaleFactor = 1.0;        /**< answer for SETTING_SCALE_FACTOR */

    /**
     * What the instrument reads in face one to a prism above a point.
     *
     * @param[in]  target        northing, easting and height are used as they stand
     * @param[in]  targetHeight  prism above the point
     * @param[out] observation   circle reading and zenith angle within the circle; slope distance, horizontal distance
     *                           and height difference from the axis to the prism in the three distances; the point
     *                           itself. The circle reading of a prism straight above or below is 0. Zeros on failure
     * @return false where there is no sight: the prism stands in the axis, or a coordinate is not finite
     */
    bool Observe(const PointRecord& target, double targetHeight, ObservationRecord* observation) const;

    /**
     * The sight to a prism above a point as the present face shows it, slope distance included.
     *
     * Zeros, as face one shows them, where there is no sight.
     */
    SightRecord Sight(const PointRecord& target, double targetHeight) const;
};

/**
 * Connects a simulated instrument to the library for the life of the object.
 *
 * Its observation service answers Observe with the value that the caller passed through as target height; settings and
 * face are those of the instrument, read at each call. Connections may be nested, the innermost counts; the end of the
 * outermost restores the stand-alone defaults.
 */
class InstrumentConnection
{
public:
    /** @param[in] connected  must outlive the connection */
    explicit InstrumentConnection(const SimulatedInstrument& connected);
    explicit InstrumentConnection(SimulatedInstrument&&) = delete;
    ~InstrumentConnection();

    InstrumentConnection(const InstrumentConnection&) = delete;
    InstrumentConnection& operator=(const InstrumentConnection&) = delete;

private:
    const SimulatedInstrument* outer;
};

} // namespace qstd

#endif
