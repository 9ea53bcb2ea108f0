#include "command_line/program_text.h"

#include "text/outcome.h"

namespace qstd {

const char* const PROGRAM_SUMMARY = "Surveying calculations of a total station";

const char* const PROGRAM_DESCRIPTION =
    "qstd computes on a PC what the library qstdlib computes on the instrument. Each verb is one calculation: it takes "
    "points and measurements from the command line or from tables, and prints its results as text, CSV or JSON.";

const std::vector<Chapter>& Chapters()
{
    static const std::vector<Chapter> chapters = {
        {"POINTS",
         "A point is given by its name in the table of --points, or by its coordinates: N,E or N,E,H without blanks, "
         "such as 3587.52,89562.49 or 100,200,10.5. N counts to the north, E to the east, H upwards."},
        {"ANGLES",
         "An angle says its form itself. Degrees, minutes, seconds are 99-10-24.5, 99:10:24.5 or 99d10'24.5\"; "
         "decimal degrees 99.1735d, gon 110.1926g, radians 1.730904rad. A bare number needs --angle, which is "
         "also the form of the angles that are printed; for --angle dms it is packed: 99.10245 is 99-10-24.5.\n"
         "\n"
         "Azimuths count clockwise from north, or from south with --south-azimuth. Zenith angles count from "
         "the zenith: 90 degrees is level. Angles are taken to the nearest sixteenth of a second."},
        {"FILES",
         "Tables are plain text in UTF-8 with a header line that names their columns, in any order and in capital or "
         "small letters. The separator is what the header uses: semicolon, comma, tab or blanks; between blanks, - "
         "stands for an empty value. # begins a comment. A value that holds a separator or a # stands in double "
         "quotes. "
         "Numbers have a decimal point. A file name of - is standard input, for one table of a run.\n"
         "\n"
         "The table of points has the columns id, n, e and, where known, h; a column code is not used. The other "
         "tables "
         "are told with their verbs."},
        {"OUTPUT",
         "Results are text for people unless --csv or --json is given. CSV has a line for each result and names "
         "its columns in the first line; --columns picks and orders them. JSON has an object for each result, "
         "numbers in full precision, and each angle twice: in degrees and in sixteenths of a second. The same "
         "input gives the same output in every locale.\n"
         "\n"
         "Messages go to standard error, one a line: file, line, what is wrong, what to do. Files of results "
         "and figures appear complete or not at all. A long run shows a bar where standard error is a "
         "terminal."},
    };
    return chapters;
}

const std::vector<ExitCodeText>& ExitCodeTexts()
{
    static const std::vector<ExitCodeText> texts = {
        {EXIT_ALL_DONE, "All done"},
        {EXIT_NOT_COMPUTED, "Something could not be computed; the rest is there"},
        {EXIT_WRONG_USE, "Wrong use, or output that cannot be written"},
        {EXIT_UNREADABLE, "Input unreadable; nothing was written"},
    };
    return texts;
}

} // namespace qstd
