/**
 * @file figure_geojson.h
 * A figure as GeoJSON in site coordinates.
 */
#ifndef QSTD_FIGURE_GEOJSON_H
#define QSTD_FIGURE_GEOJSON_H

#include "plan/figure.h"
#include "text/unit.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qstd {

/**
 * Writes a FeatureCollection, each part as it comes as one feature on a line of its own. Coordinates are [easting,
 * northing] or [easting, northing, height] in site coordinates, also for an elevation: the member "note" says so, and
 * there is no "crs". The properties of every feature are
 *
 * - name:   of a point, else empty
 * - role:   given, computed, other, station, sighted, foot; reference, result, sight, offset, construction; stationing
 * - kind:   point, line, arc, circle, tick
 * - label:  of a line, an arc or a tick, else empty
 * - height: of a point or a tick, or of an arc's centre, null where it is not known; of a line, when it is level
 *
 * with centre, radius, start and sweep (radians, as in FigureArc) of an arc and azimuth of a tick besides. An arc is a
 * LineString whose chords leave it by no more than a thousandth of the unit (a millimetre at most), or one of 720
 * vertices where that would take more. Parts with numbers that are not finite are skipped.
 */
class FigureGeoJson : public FigureWriter
{
public:
    FigureGeoJson(std::function<void(std::string_view)> sinkOfText, LinearUnit unitOfFigure);

    void Begin(const FigureView& view) override;
    void Add(const FigurePoint& point) override;
    void Add(const FigureLine& line) override;
    void Add(const FigureArc& arc) override;
    void Add(const FigureTick& tick) override;
    void Note(const std::string& text) override;

    /** Ends the document; nothing may be added afterwards. */
    void Finish();

private:
    void BeginOnce(std::string_view title);
    void Write(std::string_view feature);

    std::function<void(std::string_view)> sink;
    LinearUnit unit;
    bool hasBegun = false;
    bool hasFeatures = false;
    std::vector<std::string> notes;
};

} // namespace qstd

#endif
