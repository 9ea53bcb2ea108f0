#include "proof/proof.h"

#include <limits>

namespace qstd {

void Proof::Keep(const char* whatMisses, double by)
{
    const double size = std::isfinite(by) ? std::fabs(by) : std::numeric_limits<double>::infinity();
    if (worst == nullptr || size > worstMiss)
    {
        worst = whatMisses;
        worstMiss = size;
    }
}

} // namespace qstd
