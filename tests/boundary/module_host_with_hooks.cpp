// A host that defines the framework's hooks: modules register with it.
#include <cstring>

#include "module_host.h"

namespace {

Registrations seen = {1, 0, 0, true};

void NoteName(const char* name)
{
    seen.namesAreRight = seen.namesAreRight && std::strcmp(name, "QSTDLIB") == 0;
}

} // namespace

const Registrations& SeenRegistrations()
{
    return seen;
}

extern "C" {

void RegisterExtensionModule(const char* name);
void UnregisterExtensionModule(const char* name);

void RegisterExtensionModule(const char* name)
{
    NoteName(name);
    ++seen.registered;
}

void UnregisterExtensionModule(const char* name)
{
    NoteName(name);
    ++seen.unregistered;
}

} // extern "C"
