// Draws the pictures of the page.
#include "siblings/quillonlog/reports/HtmlPictures.h"

#include <algorithm>
#include <set>
#include <utility>

#include "siblings/quillonlog/reports/CleanText.h"
#include "siblings/quillonlog/reports/HtmlWords.h"

namespace {

// A circle of this radius is 1000 units around.
constexpr char Circle[] = "<circle cx=\"200\" cy=\"200\" r=\"159.155\" pathLength=\"1000\"";

constexpr double Width = 1000;

std::string Whole(double value) { return std::to_string(static_cast<long long>(value)); }

// One part of the ring, and where the next begins.
std::string Arc(char const * style, std::size_t count, std::size_t all, double & begin) {
    if (count == 0) return {};
    double const length = 1000.0 * static_cast<double>(count) / static_cast<double>(all);
    std::string text = std::string(Circle) + " class=\"" + style + "\" stroke-dasharray=\""
                       + Whole(length + 0.5) + " 1000\" stroke-dashoffset=\"" + Whole(-begin)
                       + "\"/>";
    begin += length;
    return text;
}

struct Mark {
    double x;
    double width;
};

// At least as wide as can be seen; what failed a little wider.
Mark MarkOf(RunRecord const & run, Section const & section) {
    double const all =
        std::max(1.0, static_cast<double>((run.stop.steady - run.start.steady).count()));
    double const begin =
        static_cast<double>((section.start.steady - run.start.steady).count()) / all * Width;
    double const length = static_cast<double>(section.Length().count()) / all * Width;
    double const width = std::max(length, section.IsBad() ? 4.0 : 1.0);
    return {std::clamp(begin, 0.0, Width - width), width};
}

std::string MarkText(Section const & section, Mark const & mark) {
    std::string text = "<a href=\"#t" + std::to_string(section.number)
                       + "\" tabindex=\"-1\"><rect class=\"" + HtmlWords::ClassOf(section)
                       + "\" x=\"" + Whole(mark.x * 10) + "\" y=\"0\" width=\""
                       + Whole(mark.width * 10) + "\" height=\"100\"><title>";
    CleanText::AppendMarkup(text, section.name);
    return text + ": " + HtmlWords::VerdictOf(section) + ", " + LengthForPeople(section.Length())
           + "</title></rect></a>";
}

// Marks of one verdict at one place are drawn once; failures come last and so on top.
std::string Marks(RunRecord const & run, bool bad) {
    std::string text;
    std::set<std::pair<long long, long long>> drawn;
    for (Section const & section : run.sections) {
        if (section.isOutside || section.IsBad() != bad) continue;
        Mark const mark = MarkOf(run, section);
        auto const place =
            std::pair(static_cast<long long>(mark.x), static_cast<long long>(mark.x + mark.width));
        if (drawn.insert(place).second) text += MarkText(section, mark);
    }
    return text;
}

} // namespace

std::string HtmlPictures::Ring(Score const & score) {
    std::string text = "<svg class=\"ring\" viewBox=\"0 0 400 400\" role=\"img\" aria-label=\""
                       + std::to_string(score.passed) + " of " + std::to_string(score.tests)
                       + " tests passed\">" + Circle + " class=\"track\"/>";
    double begin = 0;
    text += Arc("p", score.passed, score.tests, begin);
    text += Arc("f", score.failed, score.tests, begin);
    text += Arc("a", score.aborted, score.tests, begin);
    return text + "<text x=\"200\" y=\"200\">" + std::to_string(score.tests)
           + "</text><text class=\"unit\" x=\"200\" y=\"262\">"
           + (score.tests == 1 ? "test" : "tests") + "</text></svg>";
}

std::string HtmlPictures::TimeLine(RunRecord const & run) {
    auto const length = run.stop.steady - run.start.steady;
    return "<div class=\"line\" aria-hidden=\"true\"><svg viewBox=\"0 0 10000 100\" "
           "preserveAspectRatio=\"none\">"
           + Marks(run, false) + Marks(run, true) + "</svg><p><span>0 s</span><span>"
           + LengthForPeople(length / 2) + "</span><span>" + LengthForPeople(length)
           + "</span></p></div>";
}
