// The exported functions as a record of pointers, so that the same trials run on two copies of the library: the library
// as it is, whose instructions are counted, and a copy whose arithmetic is watched.
#ifndef QSTDLIB_BENCH_TARGET_FUNCTIONS_H
#define QSTDLIB_BENCH_TARGET_FUNCTIONS_H

#include <qstdlib.h>

#define QSTD_FOR_EACH_FUNCTION(X)                                                                                      \
    X(ConnectInstrumentSettings)                                                                                       \
    X(QBRCalc)                                                                                                         \
    X(QBRSetSlope)                                                                                                     \
    X(QCalc2PtTarget)                                                                                                  \
    X(QCalcOfsCircle)                                                                                                  \
    X(QCalcOfsCorner3Pt)                                                                                               \
    X(QCalcOfsCorner4Pt)                                                                                               \
    X(QCalcOfsLineHA)                                                                                                  \
    X(QCogoAngDistToCoord)                                                                                             \
    X(QCogoCalcArea)                                                                                                   \
    X(QCogoCalcCrossCircle)                                                                                            \
    X(QCogoCalcCrossLine)                                                                                              \
    X(QCogoCalcCrossLineCircle)                                                                                        \
    X(QCogoCalcPtLine)                                                                                                 \
    X(QCogoCalcSlopeByDist)                                                                                            \
    X(QCogoCalcTransLine)                                                                                              \
    X(QCogoCoordToAngDist)                                                                                             \
    X(QCogoOffsetToCoord)                                                                                              \
    X(QRDMCalcByCoord)                                                                                                 \
    X(QREFCalc)                                                                                                        \
    X(QREFCalc2PtPlane)                                                                                                \
    X(QREFCalc3PtPlane)                                                                                                \
    X(QREFCalcArc)                                                                                                     \
    X(QREFGetArcParams)                                                                                                \
    X(QREFSet2PtBasePlane)                                                                                             \
    X(QREFSet3PtBasePlane)                                                                                             \
    X(QREFSetArcByCoord)                                                                                               \
    X(QREFSetArcByRadiusArcLen)                                                                                        \
    X(QREFSetArcByRadiusHAngle)                                                                                        \
    X(QREFSetBaseLine)                                                                                                 \
    X(QREMCalc)                                                                                                        \
    X(QREMSetBase)                                                                                                     \
    X(QSTN2PtResect)                                                                                                   \
    X(QSTN3PtResect)                                                                                                   \
    X(QSTNKnownLine)                                                                                                   \
    X(QSTNMultiResect)                                                                                                 \
    X(QSTNSeaLevelCalcByBM)

namespace target {

struct Functions
{
#define QSTD_POINTER(name) decltype(::name)* name;
    QSTD_FOR_EACH_FUNCTION(QSTD_POINTER)
#undef QSTD_POINTER
};

// The library as it is.
extern const Functions LIBRARY;

// The copy whose outgoing calls are named traced_… (see floor.h).
extern const Functions TRACED_LIBRARY;

} // namespace target

#endif
