/* Sets up a station from three sights, in C. The targets lie 100 m north, 80 m east and 60 m south of the station
   N 1000, E 2000. The circle reads 350, 80 and 170 degrees to them, so its zero points to azimuth 10 degrees. The
   sights are level, to reflectors 1.5 m above marks of height 100: the instrument axis is at 101.5. */
#include <qstdlib.h>
#include <stdio.h>

#define DEGREES(value) ((value) * (ANGLE_FULL_CIRCLE / 360))

int main(void)
{
    /* {northing, easting, height, flags}, circle, zenith, slope, horizontal and vertical distance, reflector height */
    const ResectObservation sights[3] = {
        {{1100.0, 2000.0, 100.0, 3}, DEGREES(350), DEGREES(90), 100.0, 100.0, 0.0, 1.5},
        {{1000.0, 2080.0, 100.0, 3}, DEGREES(80), DEGREES(90), 80.0, 80.0, 0.0, 1.5},
        {{940.0, 2000.0, 100.0, 3}, DEGREES(170), DEGREES(90), 60.0, 60.0, 0.0, 1.5},
    };
    ResectStation station;
    ResectResidual residuals[3];
    if (QSTNMultiResect(3, sights, &station, residuals) != QSTD_OK)
    {
        return 1;
    }
    printf("N %.3f  E %.3f  H %.3f, circle zero at azimuth %.3f degrees\n", station.position.northing,
           station.position.easting, station.position.height, station.orientation * 360.0 / ANGLE_FULL_CIRCLE);
    return 0;
}
