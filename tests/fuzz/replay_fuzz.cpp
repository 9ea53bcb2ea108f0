// Lines of any bytes as calls of the library: a message, or a call with a result that can be recorded and read again.
#include "replay/call.h"
#include "replay/comparison.h"
#include "replay/json_line.h"
#include "require.h"
#include "text/text.h"

#include <cstdint>
#include <string>
#include <string_view>

using qstd::Json;

namespace {

void CheckResult(const qstd::ReplayCall& call)
{
    const Json result = qstd::MakeCall(call);
    const qstd::ParsedLine recorded = qstd::ParseJsonLine(result.dump());
    Require(recorded.problem.empty(), "a result can be read");
    Require(recorded.value.at("call") == call.name, "a result names its call");
    Require(qstd::Compare(recorded.value, result, 0).empty(), "a recorded result equals itself");
    Require(recorded.value.dump() == result.dump(), "a result is recorded bit for bit");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view line = TextOf(data, size);
    if (qstd::IsBlankOrComment(line))
    {
        return 0;
    }
    const qstd::ReplayCall call = qstd::ParseCall(line);
    if (call.problem.empty())
    {
        CheckResult(call);
        return 0;
    }
    Require(qstd::IsUtf8(call.problem), "a message is UTF-8");
    Require(call.problem.find('\n') == std::string::npos, "a message is one line");
    Require(call.problem.size() < 2000, "a message is short");
    return 0;
}
