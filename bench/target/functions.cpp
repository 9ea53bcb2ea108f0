#include "functions.h"

extern "C" {
#define QSTD_TRACED(name) extern decltype(::name) traced_##name;
QSTD_FOR_EACH_FUNCTION(QSTD_TRACED)
#undef QSTD_TRACED
}

namespace target {

#define QSTD_PLAIN(name) ::name,
const Functions LIBRARY = {QSTD_FOR_EACH_FUNCTION(QSTD_PLAIN)};
#undef QSTD_PLAIN

#define QSTD_TRACED(name) traced_##name,
const Functions TRACED_LIBRARY = {QSTD_FOR_EACH_FUNCTION(QSTD_TRACED)};
#undef QSTD_TRACED

} // namespace target
