// An instrument whose settings a test chooses, connected for the life of the object.
#ifndef QSTDLIB_TESTS_SUPPORT_FAKE_INSTRUMENT_H
#define QSTDLIB_TESTS_SUPPORT_FAKE_INSTRUMENT_H

#include <cstdint>
#include <ostream>
#include <vector>

#include <gtest/gtest.h>

#include "qstdlib.h"

namespace support {

enum class Operation
{
    INT_SETTING,
    REAL_SETTING,
    SETTINGS_RECORD,
    FACE_TWO,
    OBSERVATION,
    DISCRIMINANT
};

// One call of an operation; the identifier is 0 for the operations that take none.
struct Read
{
    Operation operation;
    uint32_t identifier;
};

inline bool operator==(const Read& left, const Read& right)
{
    return left.operation == right.operation && left.identifier == right.identifier;
}

inline std::ostream& operator<<(std::ostream& stream, const Read& read)
{
    constexpr const char* NAMES[] = {"int setting", "real setting", "settings record",
                                     "face two",    "observation",  "discriminant"};
    return stream << NAMES[static_cast<int>(read.operation)] << ' ' << read.identifier;
}

inline Read IntRead(uint32_t identifier)
{
    return {Operation::INT_SETTING, identifier};
}

inline Read RealRead(uint32_t identifier)
{
    return {Operation::REAL_SETTING, identifier};
}

inline Read RecordRead()
{
    return {Operation::SETTINGS_RECORD, 0};
}

// What CoordToObservation was asked for.
struct ObservedTarget
{
    double northing;
    double easting;
    double height;
    double passthrough;
};

// Connects itself on construction and restores the stand-alone defaults on destruction. Fresh, it answers as the
// defaults do; a test sets what it needs, at any time. One at a time.
class FakeInstrument
{
public:
    FakeInstrument()
    {
        EXPECT_EQ(nullptr, active) << "one fake instrument at a time";
        active = this;
        const InstrumentSettings operations = Operations();
        ConnectInstrumentSettings(&operations);
    }

    ~FakeInstrument()
    {
        ConnectInstrumentSettings(nullptr);
        active = nullptr;
    }

    FakeInstrument(const FakeInstrument&) = delete;
    FakeInstrument& operator=(const FakeInstrument&) = delete;

    // The six operations, for tests that connect some of them themselves while this object lives.
    static InstrumentSettings Operations()
    {
        return {GetIntSetting, GetRealSetting, GetSettingsRecord, QueryFaceTwo, CoordToObservation, AdjustDiscriminant};
    }

    int32_t azimuthReference = 0;
    int32_t curvatureSwitch = 0;
    int32_t seaLevelSwitch = 0;
    int32_t refractionSelector = 0;
    double scaleFactor = 1.0;
    double meanElevation = 0.0;
    int32_t faceTwo = 0;

    int32_t observationStatus = -1;
    ObservationRecord observation = {};
    std::vector<ObservedTarget> observedTargets;

    double discriminantOffset = 0.0; // added by AdjustDiscriminant

    // Every call of an operation, in order; a test may clear it.
    std::vector<Read> reads;

private:
    static int32_t GetIntSetting(uint32_t identifier)
    {
        active->reads.push_back(IntRead(identifier));
        switch (identifier)
        {
        case SETTING_AZIMUTH_REFERENCE:
            return active->azimuthReference;
        case SETTING_CURVATURE_REFRACTION:
            return active->curvatureSwitch;
        case SETTING_SEA_LEVEL:
            return active->seaLevelSwitch;
        case SETTING_REFRACTION_SELECTOR:
            return active->refractionSelector;
        default:
            return 0;
        }
    }

    static double GetRealSetting(uint32_t identifier)
    {
        active->reads.push_back(RealRead(identifier));
        return identifier == SETTING_SCALE_FACTOR ? active->scaleFactor : 0.0;
    }

    // The entries that the library must not read hold a value that would be noticed.
    static void GetSettingsRecord(SettingsRecord* record)
    {
        active->reads.push_back(RecordRead());
        for (double& value : record->values)
        {
            value = -1e9;
        }
        record->values[5] = active->meanElevation;
    }

    static int32_t QueryFaceTwo()
    {
        active->reads.push_back({Operation::FACE_TWO, 0});
        return active->faceTwo;
    }

    static int32_t CoordToObservation(double northing, double easting, double height, double passthrough,
                                      ObservationRecord* observation)
    {
        active->reads.push_back({Operation::OBSERVATION, 0});
        active->observedTargets.push_back({northing, easting, height, passthrough});
        *observation = active->observation;
        return active->observationStatus;
    }

    static double AdjustDiscriminant(double value, double* /*other*/)
    {
        active->reads.push_back({Operation::DISCRIMINANT, 0});
        return value + active->discriminantOffset;
    }

    static inline FakeInstrument* active = nullptr;
};

} // namespace support

#endif
