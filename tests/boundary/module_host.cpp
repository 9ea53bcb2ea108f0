// Loads, uses and unloads the library, twice over, as the instrument's framework does and as a plain program does.
#include <cstdio>
#include <dlfcn.h>

#include <qstdlib.h>

#include "module_host.h"

namespace {

int failures = 0;

void Check(bool condition, const char* what, int load)
{
    if (!condition)
    {
        std::fprintf(stderr, "load %d: %s\n", load, what);
        ++failures;
    }
}

template <typename Function>
Function* Find(void* library, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(library, name));
}

AngleUnit AzimuthToEast(void* library)
{
    const PointRecord origin = {0.0, 0.0, 0.0, POINT_HAS_PLAN};
    const PointRecord east = {0.0, 1.0, 0.0, POINT_HAS_PLAN};
    RemoteDistanceResult result{};
    auto* const remoteDistance = Find<decltype(QRDMCalcByCoord)>(library, "QRDMCalcByCoord");
    if (remoteDistance == nullptr || remoteDistance(&origin, &east, &result) != QSTD_OK)
    {
        return ANGLE_UNDEFINED;
    }
    return result.azimuth;
}

int32_t SouthAzimuths(uint32_t identifier)
{
    return identifier == SETTING_AZIMUTH_REFERENCE ? 1 : 0;
}

// Every load begins with the stand-alone settings: nothing of an instrument connected earlier is left.
void UseLibrary(void* library, int load)
{
    Check(AzimuthToEast(library) == ANGLE_QUARTER_CIRCLE, "a fresh library counts azimuths from north", load);
    auto* const connect = Find<decltype(ConnectInstrumentSettings)>(library, "ConnectInstrumentSettings");
    Check(connect != nullptr, "ConnectInstrumentSettings is exported", load);
    if (connect != nullptr)
    {
        InstrumentSettings southern{};
        southern.GetIntSetting = SouthAzimuths;
        connect(&southern);
        Check(AzimuthToEast(library) == 3 * ANGLE_QUARTER_CIRCLE, "the connected instrument is asked", load);
    }
}

void LoadUseUnload(const char* path, int load)
{
    const Registrations& seen = SeenRegistrations();
    void* const library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
    {
        Check(false, dlerror(), load);
        return;
    }
    Check(seen.registered == load * seen.expectedPerLoad, "one registration a load, by a host with hooks", load);
    Check(seen.unregistered == (load - 1) * seen.expectedPerLoad, "no unregistration before the unload", load);

    UseLibrary(library, load);

    Check(dlclose(library) == 0, "unloads", load);
    Check(dlopen(path, RTLD_NOW | RTLD_NOLOAD) == nullptr, "is gone after the unload", load);
    Check(seen.registered == load * seen.expectedPerLoad, "no registration at the unload", load);
    Check(seen.unregistered == load * seen.expectedPerLoad, "one unregistration an unload, by a host with hooks", load);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: %s LIBRARY\n", argv[0]);
        return 2;
    }
    LoadUseUnload(argv[1], 1);
    LoadUseUnload(argv[1], 2);
    Check(SeenRegistrations().namesAreRight, "the module's name is QSTDLIB", 2);
    return failures == 0 ? 0 : 1;
}
