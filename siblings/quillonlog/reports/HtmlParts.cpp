// Composes the page.
#include "siblings/quillonlog/reports/HtmlParts.h"

#include "siblings/quillonlog/reports/CleanText.h"
#include "siblings/quillonlog/reports/HtmlPictures.h"
#include "siblings/quillonlog/reports/HtmlWords.h"
#include "siblings/quillonlog/reports/PageParts.h"

using CleanText::Markup;
using HtmlWords::Amount;

namespace {

// The filter stands in the page hidden, and is shown by the script that it needs.
constexpr char Tools[] =
    "<form class=\"tools\" role=\"search\" aria-label=\"Filter of the entries\" hidden>\n"
    "<label class=\"find\">Text <input type=\"search\" id=\"q\" autocomplete=\"off\" "
    "spellcheck=\"false\"></label>\n"
    "<fieldset><legend>Show</legend>\n"
    "<label><input type=\"checkbox\" name=\"k\" value=\"fae\" checked> Failures</label>\n"
    "<label><input type=\"checkbox\" name=\"k\" value=\"w\" checked> Warnings</label>\n"
    "<label><input type=\"checkbox\" name=\"k\" value=\"iu\" checked> Information</label>\n"
    "<label><input type=\"checkbox\" name=\"k\" value=\"qd\" checked> Questions, devices</label>\n"
    "</fieldset>\n"
    "<label><input type=\"checkbox\" id=\"bad\"> Only tests that failed</label>\n"
    "<span class=\"fold\"><button type=\"button\" id=\"unfold\">Unfold all</button>\n"
    "<button type=\"button\" id=\"fold\">Fold all</button></span>\n"
    "<output id=\"found\" for=\"q bad\"></output>\n"
    "</form>\n";

constexpr char NothingElse[] =
    "default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'; base-uri 'none'; "
    "form-action 'none'";

std::string NameOf(std::string const & suite) { return suite.empty() ? "Test suite" : suite; }

std::string Pill(char const * style, std::string const & word) {
    return std::string("<span class=\"pill ") + style + "\">" + word + "</span>";
}

std::string Title(RunRecord const & run) {
    return "<p class=\"kind\">Test report</p>\n<h1>" + Markup(NameOf(run.facts.suite)) + "</h1>\n";
}

std::string Fact(char const * name, std::string const & value) {
    return std::string("<div><dt>") + name + "</dt><dd>" + value + "</dd></div>\n";
}

std::string TopOf(RunRecord const & run) {
    std::string text = std::string("<header class=\"top ") + HtmlWords::ClassOf(run) + "\">\n"
                       + Title(run) + "<p class=\"verdict\">"
                       + Pill(HtmlWords::ClassOf(run), HtmlWords::VerdictOf(run));
    if (!run.reason.empty()) text += " <span>" + Markup(run.reason) + "</span>";
    text += "</p>\n<dl class=\"when\">\n";
    text += Fact("Start", UtcForPeople(run.start.utc));
    text += Fact("Duration", LengthForPeople(run.stop.steady - run.start.steady));
    text += Fact("Tests", std::to_string(run.score.tests));
    return text + "</dl>\n</header>\n";
}

std::string Legend(char const * style, char const * name, std::size_t count) {
    return std::string("<tr><th scope=\"row\"><span class=\"dot ") + style + "\"></span>" + name
           + "</th><td>" + std::to_string(count) + "</td></tr>\n";
}

std::string Result(Score const & score) {
    return "<section class=\"result\" aria-labelledby=\"h-result\">\n<h2 "
           "id=\"h-result\">Result</h2>\n"
           "<div class=\"split\">"
           + HtmlPictures::Ring(score) + "\n<table>\n" + Legend("p", "Passed", score.passed)
           + Legend("f", "Failed", score.failed) + Legend("a", "Aborted", score.aborted)
           + "</table></div>\n</section>\n";
}

std::string FailureItem(Section const & section) {
    std::string text = "<li>" + Pill(HtmlWords::ClassOf(section), HtmlWords::VerdictOf(section))
                       + "<div><a href=\"#t" + std::to_string(section.number) + "\">"
                       + Markup(section.name) + "</a>";
    if (!section.firstProblem.empty()) text += "<p>" + Markup(section.firstProblem) + "</p>";
    return text + "</div></li>\n";
}

std::string Failures(RunRecord const & run) {
    std::string items;
    for (Section const & section : run.sections)
        if (section.IsBad()) items += FailureItem(section);
    if (items.empty()) return {};
    return "<section id=\"failures\" aria-labelledby=\"h-failures\">\n"
           "<h2 id=\"h-failures\">What failed</h2>\n<ol>\n"
           + items + "</ol>\n</section>\n";
}

std::string TimeLine(RunRecord const & run) {
    return "<section class=\"time\" aria-labelledby=\"h-time\">\n<h2 id=\"h-time\">Time line</h2>\n"
           + HtmlPictures::TimeLine(run) + "\n</section>\n";
}

std::string GroupText(CReportFacts::Group const & group) {
    std::string text = "<details class=\"group\"><summary><h3>" + Markup(group.title)
                       + "</h3></summary>\n<table>\n";
    for (auto const & [name, value] : group.pairs)
        text +=
            "<tr><th scope=\"row\">" + Markup(name) + "</th><td>" + Markup(value) + "</td></tr>\n";
    return text + "</table></details>\n";
}

std::string About(CReportFacts const & facts) {
    std::string groups;
    for (auto const & group : facts.groups)
        if (!group.pairs.empty()) groups += GroupText(group);
    if (groups.empty()) return {};
    return "<section id=\"about\" aria-labelledby=\"h-about\">\n"
           "<h2 id=\"h-about\">What was tested with what</h2>\n"
           + groups + "</section>\n";
}

std::string TestsBegin() {
    return std::string("<section id=\"tests\" aria-labelledby=\"h-tests\">\n"
                       "<h2 id=\"h-tests\">Tests</h2>\n")
           + Tools;
}

std::string Counted(Section const & section) {
    struct Form {
        EntryKind kind;
        char const * one;
        char const * many;
    };
    std::string text;
    for (auto const & [kind, one, many] :
         {Form{EntryKind::Fail, "failure", "failures"},
          {EntryKind::Abort, "abort", "aborts"},
          {EntryKind::Error, "error", "errors"},
          {EntryKind::Warning, "warning", "warnings"}})
        if (std::size_t const count = section.CountOf(kind); count != 0)
            text += Amount(count, one, many) + ", ";
    return text;
}

std::size_t EntriesOf(Section const & section) {
    std::size_t all = 0;
    for (std::size_t const count : section.counts)
        all += count;
    return all;
}

std::string Anchor(Section const & section) {
    return std::string("t").append(std::to_string(section.number));
}

// Bold when it is a test of a device.
std::string Heading(Section const & section) {
    return std::string("<h3") + (section.isTest ? ">" : " class=\"aside\">") + Markup(section.name)
           + "</h3>";
}

} // namespace

std::string HtmlParts::DocumentBegin(std::string const & suite) {
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n"
           "<meta http-equiv=\"Content-Security-Policy\" content=\""
           + std::string(NothingElse) + "\">\n<title>" + Markup(NameOf(suite))
           + " \xE2\x80\x93 test report</title>\n<style>\n" + PageParts::StyleSheet
           + "</style>\n<script>\n" + PageParts::Script
           + "</script>\n</head>\n<body>\n<a class=\"skip\" href=\"#tests\">To the tests</a>\n";
}

std::string HtmlParts::LeftOut(std::size_t count) {
    if (count == 0) return {};
    return "<p class=\"more\">" + Amount(count, "entry", "entries")
           + " of information left out, as the run is long. Every other entry is here; the journal "
             "has them all.</p>\n";
}

std::string HtmlParts::Head(RunRecord const & run, std::size_t leftOut) {
    return TopOf(run) + "<main>\n<div class=\"cards\">\n" + Result(run.score) + TimeLine(run)
           + "</div>\n" + Failures(run) + About(run.facts) + TestsBegin() + LeftOut(leftOut);
}

std::string HtmlParts::SectionBegin(Section const & section) {
    std::string const style = HtmlWords::ClassOf(section);
    std::size_t const entries = EntriesOf(section);
    return "<details class=\"t " + style + "\" id=\"" + Anchor(section) + "\" data-n=\""
           + std::to_string(entries) + "\"" + (section.IsBad() ? " open" : "") + "><summary>"
           + Pill(style.c_str(), HtmlWords::VerdictOf(section)) + Heading(section)
           + "<span class=\"m\">" + Counted(section) + Amount(entries, "entry", "entries") + ", "
           + LengthForPeople(section.Length()) + "</span></summary><div class=\"log\">\n";
}

std::string HtmlParts::SectionEnd() { return "</div></details>\n"; }

std::string HtmlParts::DocumentEnd() {
    return "</section>\n</main>\n<footer><p>An entry's time counts from the begin of its test; it "
           "is "
           "also a link to the entry.</p></footer>\n</body>\n</html>\n";
}

std::string HtmlParts::State(RunRecord const & run) {
    return "<header class=\"top o\"><p class=\"verdict\">" + Pill("o", "Not finished")
           + " <span>So far " + Amount(run.score.tests, "test", "tests") + ": "
           + std::to_string(run.score.passed) + " passed, " + std::to_string(run.score.failed)
           + " failed, " + std::to_string(run.score.aborted)
           + " aborted. The run goes on, or it has died: a test without a result counts as failed."
             "</span></p></header>";
}

std::string HtmlParts::GrowingHead(RunRecord const & run) {
    return "<main>\n" + Title(run) + "<dl class=\"when\">\n"
           + Fact("Start", UtcForPeople(run.start.utc)) + "</dl>\n" + About(run.facts)
           + TestsBegin();
}

std::string HtmlParts::GrowingSectionBegin(Section const & section) {
    return "<details class=\"t o\" id=\"" + Anchor(section) + "\" open><summary>"
           + Pill("o", "Not finished") + Heading(section)
           + "<span class=\"m\">counts as failed</span></summary><div class=\"log\">\n";
}

std::string HtmlParts::GrowingSectionEnd(Section const & section) {
    return "</div><p class=\"r\">"
           + Pill(HtmlWords::ClassOf(section), HtmlWords::VerdictOf(section)) + " after "
           + LengthForPeople(section.Length()) + "</p></details>\n";
}
