/**
 * @file svg_reading.h
 * Reads back the elements of a plan, which stand one a line.
 */
#ifndef QSTD_TESTS_SVG_READING_H
#define QSTD_TESTS_SVG_READING_H

#include "plan/svg_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace svg {

struct Element
{
    std::string line;

    [[nodiscard]] bool Is(const std::string& name) const
    {
        return line.rfind("<" + name + " ", 0) == 0;
    }

    [[nodiscard]] std::string Attribute(const std::string& name) const
    {
        const std::string start = " " + name + "=\"";
        const size_t at = line.find(start);
        if (at == std::string::npos)
        {
            return "";
        }
        const size_t from = at + start.size();
        return line.substr(from, line.find('"', from) - from);
    }

    [[nodiscard]] double Number(const std::string& name) const
    {
        return std::stod(Attribute(name));
    }

    /** All numbers of an attribute. */
    [[nodiscard]] std::vector<double> Numbers(const std::string& name) const
    {
        std::string text = Attribute(name);
        std::replace_if(
            text.begin(), text.end(),
            [](char letter) { return std::string("0123456789.-").find(letter) == std::string::npos; }, ' ');
        std::istringstream words(text);
        std::vector<double> numbers;
        for (std::string word; words >> word;)
        {
            numbers.push_back(std::stod(word));
        }
        return numbers;
    }

    [[nodiscard]] std::string Text() const
    {
        const size_t from = line.find('>') + 1;
        return line.substr(from, line.rfind('<') - from);
    }
};

inline std::vector<Element> Elements(const std::string& document, const std::string& name)
{
    std::vector<Element> elements;
    std::istringstream lines(document);
    for (std::string line; std::getline(lines, line);)
    {
        if (Element{line}.Is(name))
        {
            elements.push_back({line});
        }
    }
    return elements;
}

/** The elements that have a text among their attributes. */
inline std::vector<Element> With(const std::vector<Element>& elements, const std::string& part)
{
    std::vector<Element> found;
    std::copy_if(elements.begin(), elements.end(), std::back_inserter(found),
                 [&part](const Element& element) { return element.line.find(part) != std::string::npos; });
    return found;
}

using Corners = std::array<qstd::SheetPoint, 4>;

/** What a text covers: from its base line up to its size, turned about its base point. */
inline Corners Covered(const Element& text)
{
    const double size = text.Number("font-size");
    const double width = qstd::TextWidth(text.Text(), size);
    const std::string anchor = text.Attribute("text-anchor");
    const double left = anchor == "middle" ? -width / 2.0 : anchor == "end" ? -width : 0.0;
    const std::vector<double> transform = text.Numbers("transform");
    const double turn = transform.empty() ? 0.0 : transform[0] * std::acos(-1.0) / 180.0;
    const auto place = [&](double x, double y) {
        return qstd::SheetPoint{text.Number("x") + x * std::cos(turn) - y * std::sin(turn),
                                text.Number("y") + x * std::sin(turn) + y * std::cos(turn)};
    };
    return {place(left, -size * 0.8), place(left + width, -size * 0.8), place(left + width, 0.0), place(left, 0.0)};
}

/** True when a line can be drawn between two convex figures: along the edge of one of them. */
template <typename One, typename Other>
bool HasLineBetween(const One& figure, const Other& neighbour)
{
    for (size_t i = 0; i < figure.size(); ++i)
    {
        const qstd::SheetPoint from = figure[i];
        const qstd::SheetPoint to = figure[(i + 1) % figure.size()];
        const qstd::SheetPoint across = {to.y - from.y, from.x - to.x};
        if (across.x == 0.0 && across.y == 0.0)
        {
            continue; // a single point has no edges
        }
        const auto reach = [&across](const auto& corners) {
            double low = HUGE_VAL;
            double high = -HUGE_VAL;
            for (const qstd::SheetPoint& corner : corners)
            {
                const double along = corner.x * across.x + corner.y * across.y;
                low = std::min(low, along);
                high = std::max(high, along);
            }
            return std::make_pair(low, high);
        };
        const auto [low, high] = reach(figure);
        const auto [otherLow, otherHigh] = reach(neighbour);
        if (otherLow >= high || otherHigh <= low)
        {
            return true;
        }
    }
    return false;
}

template <typename One, typename Other>
bool Overlap(const One& one, const Other& other)
{
    return !HasLineBetween(one, other) && !HasLineBetween(other, one);
}

} // namespace svg

#endif
