#include "tests/station/adjustment/sights.h"

#include <cmath>
#include <cstdint>

double Uniform(std::mt19937& random)
{
    return static_cast<double>(random()) / 2147483648.0 - 1.0;
}

WorkRecords RoughSights(std::mt19937& random)
{
    WorkRecords work;
    const int32_t count = 5 + static_cast<int32_t>(random() % 4);
    for (int32_t i = 0; i < count; ++i)
    {
        const double azimuth = 2.0 * CIRCLE_HALF * (i + 0.3 * Uniform(random)) / count;
        const double distance = 100.0 + 60.0 * Uniform(random);
        const double rise = 20.0 * Uniform(random);
        const double direction = azimuth - 1.0 + 0.002 * Uniform(random);
        ResectWorkRecord record =
            MeasuredInSpace(20.0 + distance * std::cos(azimuth), -30.0 + distance * std::sin(azimuth), direction,
                            distance + 0.3 * Uniform(random), rise + 0.2 * Uniform(random));
        record = WithReflector(WithHeight(record, 7.0 + rise - 1.5), 1.5);
        if (i > 2 && random() % 3 == 0)
        {
            record = Sighted(record.northing, record.easting, record.direction);
        }
        if (i > 2 && random() % 4 == 0)
        {
            record.height = MISSING_VALUE;
        }
        if (random() % 4 == 0)
        {
            record.reflectorHeight = MISSING_VALUE;
        }
        work.push_back(record);
    }
    work[static_cast<size_t>(count) - 1].direction = random() % 2 == 0 ? MISSING_VALUE : work.back().direction;
    return work;
}

WorkRecords FineSights(std::mt19937& random)
{
    WorkRecords work;
    const int32_t count = 3 + static_cast<int32_t>(random() % 6);
    for (int32_t i = 0; i < count; ++i)
    {
        const double azimuth = 2.0 * CIRCLE_HALF * (i + 0.3 * Uniform(random)) / count;
        const double distance = 200.0 + 150.0 * Uniform(random);
        work.push_back(Measured(1020.0 + distance * std::cos(azimuth), -530.0 + distance * std::sin(azimuth),
                                azimuth - 1.0 + 1e-5 * Uniform(random), distance + 0.002 * Uniform(random)));
    }
    return work;
}

WorkRecords Contradiction(const std::vector<std::vector<double>>& sights)
{
    WorkRecords work;
    for (const std::vector<double>& s : sights)
    {
        work.push_back(s.size() == 4 ? Measured(s[0], s[1], s[2] * DEGREE, s[3]) : Sighted(s[0], s[1], s[2] * DEGREE));
    }
    return work;
}

WorkRecords FourSights()
{
    return {Measured(100.0, 0.0, -0.25, 100.01), Measured(0.0, 120.0, CIRCLE_HALF / 2.0 - 0.25 + 1e-4, 119.98),
            Measured(-80.0, 10.0, std::atan2(10.0, -80.0) - 0.25, 80.63), Sighted(30.0, -90.0, 4.78)};
}
