// Holds ValidateDoc against the expected verdicts of a public suite of schema tests.
//
// usage: XsdConformance FOLDER MISSES-FILE
//
// Reads every *.testSet and *.testSet.xml file below the folder, in the form that the W3C has
// published: groups of schema tests and instance tests with an expected validity. Prints one line
// a set and the totals; the misses go to the file. Of several schema documents the first is used;
// sets, groups and tests of version 1.1 alone and such without a known validity are passed over.
// Ends with 0 when there was a test.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include "siblings/Keelbase.h"
#include "xml/CComSessionMgr.h"
#include "xml/CDOMDoc.h"

namespace {

namespace fs = std::filesystem;

struct Count {
    int right = 0;
    int accepted = 0; // although invalid
    int refused = 0;  // although valid

    void Add(bool isExpected, bool isFound) {
        ++(isExpected == isFound ? right : isFound ? accepted : refused);
    }
    int All() const { return right + accepted + refused; }
    Count & operator+=(Count const & other) {
        right += other.right;
        accepted += other.accepted;
        refused += other.refused;
        return *this;
    }
};

struct Counts {
    Count schemas;
    Count instances;
    int unjudged = 0; // instances whose schema was refused
};

struct DocumentDeleter {
    void operator()(xmlDocPtr document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, DocumentDeleter>;

Document Read(fs::path const & file) {
    constexpr int quietly = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
    return Document(xmlReadFile(file.c_str(), nullptr, quietly));
}

xmlChar const * AsXml(char const * text) { return reinterpret_cast<xmlChar const *>(text); }

bool Is(xmlNodePtr node, char const * name) {
    return node->type == XML_ELEMENT_NODE && xmlStrEqual(node->name, AsXml(name));
}

std::string Attribute(xmlNodePtr node, char const * name) {
    xmlChar * const value = xmlGetProp(node, AsXml(name));
    std::string const text = value != nullptr ? reinterpret_cast<char *>(value) : "";
    xmlFree(value);
    return text;
}

std::vector<xmlNodePtr> Children(xmlNodePtr parent, char const * name) {
    std::vector<xmlNodePtr> found;
    for (xmlNodePtr each = parent->children; each != nullptr; each = each->next)
        if (Is(each, name)) found.push_back(each);
    return found;
}

// Whether something is of version 1.1 of schemas and not of 1.0. The attribute lists versions.
bool IsOfLaterVersion(xmlNodePtr node) {
    std::istringstream versions(Attribute(node, "version"));
    bool later = false;
    for (std::string each; versions >> each;) {
        if (each.starts_with("1.0")) return false;
        later = later || each == "1.1";
    }
    return later;
}

// "valid", "invalid", or empty where there is nothing to compare with.
std::string Expected(xmlNodePtr test) {
    if (IsOfLaterVersion(test)) return {};
    for (xmlNodePtr const each : Children(test, "expected")) {
        if (IsOfLaterVersion(each)) continue;
        std::string const validity = Attribute(each, "validity");
        return validity == "valid" || validity == "invalid" ? validity : "";
    }
    return {};
}

std::wstring TargetNamespace(fs::path const & schema) {
    Document const document = Read(schema);
    xmlNodePtr const root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    return root != nullptr ? *Utf8ToUtf16(Attribute(root, "targetNamespace")) : std::wstring();
}

class Run {
public:
    explicit Run(std::string const & misses) : m_Misses(misses) {}

    Counts Judge(fs::path const & set) {
        Counts counts;
        Document const document = Read(set);
        xmlNodePtr const root = document ? xmlDocGetRootElement(document.get()) : nullptr;
        if (root == nullptr || IsOfLaterVersion(root)) return counts;
        m_Folder = set.parent_path();
        for (xmlNodePtr const group : Children(root, "testGroup"))
            JudgeGroup(group, counts);
        return counts;
    }

private:
    fs::path FileOf(xmlNodePtr test, char const * kind) const {
        auto const documents = Children(test, kind);
        return documents.empty() ? fs::path() : m_Folder / Attribute(documents.front(), "href");
    }

    void Note(fs::path const & file, bool isExpected) {
        m_Misses << (isExpected ? "refused  " : "accepted ") << file.lexically_normal().string()
                 << '\n';
    }

    void JudgeGroup(xmlNodePtr group, Counts & counts) {
        auto const tests = Children(group, "schemaTest");
        if (tests.empty() || IsOfLaterVersion(group)) return;
        fs::path const schema = FileOf(tests.front(), "schemaDocument");
        auto const document = Make(schema);
        std::string const expected = Expected(tests.front());
        if (!expected.empty())
            Add(counts.schemas, expected == "valid", document != nullptr, schema);
        for (xmlNodePtr const test : Children(group, "instanceTest"))
            JudgeInstance(test, document.get(), counts);
    }

    void JudgeInstance(xmlNodePtr test, CDOMDoc * document, Counts & counts) {
        std::string const expected = Expected(test);
        if (expected.empty()) return;
        if (document == nullptr) {
            ++counts.unjudged;
            return;
        }
        fs::path const file = FileOf(test, "instanceDocument");
        bool const isValid = document->ValidateDoc(Utf8ToUtf16(file.string())->c_str());
        Add(counts.instances, expected == "valid", isValid, file);
    }

    void Add(Count & count, bool isExpected, bool isFound, fs::path const & file) {
        count.Add(isExpected, isFound);
        if (isExpected != isFound) Note(file, isExpected);
    }

    static std::unique_ptr<CDOMDoc> Make(fs::path const & schema) {
        try {
            return std::make_unique<CDOMDoc>(
                *Utf8ToUtf16(schema.string()), TargetNamespace(schema));
        } catch (CQNDOMDocException const &) {
            return nullptr;
        }
    }

    std::ofstream m_Misses;
    fs::path m_Folder;
};

void Print(char const * what, Count const & count) {
    double const percent = count.All() != 0 ? 100.0 * count.right / count.All() : 0;
    std::printf(
        "  %s %d of %d right (%.2f %%), %d invalid accepted, %d valid refused", what, count.right,
        count.All(), percent, count.accepted, count.refused);
}

void Print(std::string const & name, Counts const & counts) {
    std::printf("%s:", name.c_str());
    Print("schemas", counts.schemas);
    std::printf(";");
    Print("instances", counts.instances);
    std::printf("; %d not judged\n", counts.unjudged);
}

std::vector<fs::path> SetsIn(fs::path const & folder) {
    std::vector<fs::path> sets;
    for (auto const & entry : fs::recursive_directory_iterator(folder)) {
        std::string const name = entry.path().filename().string();
        if (name.ends_with(".testSet") || name.ends_with(".testSet.xml"))
            sets.push_back(entry.path());
    }
    std::ranges::sort(sets);
    return sets;
}

} // namespace

int main(int count, char ** arguments) {
    if (count != 3 || !fs::is_directory(arguments[1])) {
        std::fputs("usage: XsdConformance FOLDER MISSES-FILE\n", stderr);
        return 2;
    }
    CComSessionMgr const session;
    Run run(arguments[2]);
    Counts all;
    for (auto const & set : SetsIn(arguments[1])) {
        Counts const counts = run.Judge(set);
        Print(set.filename().string(), counts);
        all.schemas += counts.schemas;
        all.instances += counts.instances;
        all.unjudged += counts.unjudged;
    }
    Print("all", all);
    return all.schemas.All() + all.instances.All() != 0 ? 0 : 1;
}
