// A host that knows nothing of modules, as a PC program is.
#include "module_host.h"

const Registrations& SeenRegistrations()
{
    static const Registrations none = {0, 0, 0, true};
    return none;
}
