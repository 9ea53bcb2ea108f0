#include "replay/json_line.h"

#include "text/text.h"

#include <fmt/format.h>

#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace qstd {

namespace {

constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
constexpr size_t LONGEST_SHORT_TEXT = 40;

/** Builds the value from the parser's events and stops it at a limit. */
class JsonBuilder final : public nlohmann::json_sax<Json>
{
public:
    JsonBuilder() : root(Json::value_t::null)
    {
    }

    bool null() override
    {
        Add(nullptr);
        return true;
    }

    bool boolean(bool value) override
    {
        Add(value);
        return true;
    }

    bool number_integer(number_integer_t value) override
    {
        Add(value);
        return true;
    }

    bool number_unsigned(number_unsigned_t value) override
    {
        Add(value);
        return true;
    }

    bool number_float(number_float_t value, const string_t& /*text*/) override
    {
        Add(value);
        return true;
    }

    bool string(string_t& value) override
    {
        Add(std::move(value));
        return true;
    }

    bool binary(binary_t& /*value*/) override
    {
        return false; // no such thing in text
    }

    bool start_object(size_t /*elements*/) override
    {
        return Enter(Json::object());
    }

    bool key(string_t& name) override
    {
        auto& members = open.back()->get_ref<Json::object_t&>();
        if (members.size() == MOST_MEMBERS)
        {
            return Refuse(fmt::format("an object of more than {} members", MOST_MEMBERS));
        }
        const auto [place, isNew] = members.emplace(name, Json());
        if (!isNew)
        {
            return Refuse(fmt::format("{} is given twice", Quoted(name)));
        }
        member = &place->second;
        return true;
    }

    bool end_object() override
    {
        open.pop_back();
        return true;
    }

    bool start_array(size_t /*elements*/) override
    {
        return Enter(Json::array());
    }

    bool end_array() override
    {
        open.pop_back();
        return true;
    }

    bool parse_error(size_t position, const std::string& token, const nlohmann::detail::exception& error) override
    {
        if (error.id == NUMBER_TOO_LARGE)
        {
            return Refuse(fmt::format("column {}: the number {} is too large", position, Quoted(token)));
        }
        return Refuse(fmt::format("column {}: not JSON: {}", position, Reason(error.what())));
    }

    Json root;
    std::string problem;

private:
    static constexpr int NUMBER_TOO_LARGE = 406;

    /** What the parser says, without the place, which is told apart, and without foreign text. */
    static std::string_view Reason(std::string_view text)
    {
        const size_t begin = text.find("syntax error");
        text.remove_prefix(begin == std::string_view::npos ? 0 : begin);
        return text.substr(0, text.find("; last read"));
    }

    bool Refuse(std::string text)
    {
        problem = std::move(text);
        return false;
    }

    /** Puts a value where it belongs. Its place stays where it is while it is being filled. */
    Json* Add(Json added)
    {
        if (open.empty())
        {
            root = std::move(added);
            return &root;
        }
        if (open.back()->is_array())
        {
            open.back()->push_back(std::move(added));
            return &open.back()->back();
        }
        *member = std::move(added);
        return member;
    }

    bool Enter(Json container)
    {
        if (open.size() == DEEPEST_NESTING)
        {
            return Refuse(fmt::format("nested more than {} deep", DEEPEST_NESTING));
        }
        open.push_back(Add(std::move(container)));
        return true;
    }

    std::vector<Json*> open; /**< containers that are not complete, the innermost last */
    Json* member = nullptr;  /**< where the value of the last key goes */
};

} // namespace

ParsedLine ParseJsonLine(std::string_view line)
{
    // The parser takes a zero byte for the end of the text.
    const size_t zero = line.find('\0');
    if (zero != std::string_view::npos)
    {
        return {Json(), fmt::format("column {}: not JSON: a zero byte", zero + 1)};
    }
    JsonBuilder builder;
    if (!Json::sax_parse(line.begin(), line.end(), &builder))
    {
        return {Json(), std::move(builder.problem)};
    }
    return {std::move(builder.root), ""};
}

bool IsBlankOrComment(std::string_view line)
{
    if (line.substr(0, BYTE_ORDER_MARK.size()) == BYTE_ORDER_MARK)
    {
        line.remove_prefix(BYTE_ORDER_MARK.size());
    }
    line = Trim(line);
    return line.empty() || line.front() == '#';
}

std::optional<double> RealOf(const Json& value)
{
    if (value.is_number_float())
    {
        return value.get<double>();
    }
    if (value.is_number_unsigned())
    {
        return static_cast<double>(value.get<uint64_t>());
    }
    if (value.is_number_integer())
    {
        // The parser takes an integer with a minus sign for a signed one: a zero among these was written -0.
        const auto integer = value.get<int64_t>();
        return integer == 0 ? -0.0 : static_cast<double>(integer);
    }
    if (value == "nan")
    {
        return std::numeric_limits<double>::quiet_NaN();
    }
    if (value == "inf" || value == "-inf")
    {
        const double infinite = std::numeric_limits<double>::infinity();
        return value == "inf" ? infinite : -infinite;
    }
    return std::nullopt;
}

Json JsonOfReal(double value)
{
    if (std::isnan(value))
    {
        return "nan";
    }
    if (std::isinf(value))
    {
        return value > 0.0 ? "inf" : "-inf";
    }
    return value;
}

std::string ShortText(const Json& value)
{
    if (value.is_string())
    {
        return Quoted(value.get_ref<const std::string&>());
    }
    if (value.is_object())
    {
        return "an object";
    }
    if (value.is_array())
    {
        return fmt::format("an array of {}", value.size());
    }
    return ShortenedInside(value.dump(), LONGEST_SHORT_TEXT);
}

} // namespace qstd
