// A document loaded, validated and flattened, beside the bare engine that does the same: its own
// tree, its own validator, and the least walk that yields the same table.
//
// The schema is compiled before; a document of ours is made anew each time, as a suite does, and
// finds its schema kept. The goals: at most 1.15 times the time and 1.1 times the peak memory. The
// topics of memory show bytes as if they were nanoseconds; a document made with a schema that is
// kept is shown beside the compiling of that schema.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlschemas.h>
#include <unistd.h>

#include "benchmarks/HeapPeak.h"
#include "xml/CComSessionMgr.h"
#include "xml/CDOMDoc.h"

namespace {

using Rows = std::vector<CDOMDoc::Node>;

constexpr double TimeGoal = 1.15;
constexpr double MemoryGoal = 1.1;

struct Size {
    char const * name;
    std::size_t bytes;
};
constexpr Size Sizes[] = {{"10KB", 10'000}, {"1MB", 1'000'000}, {"20MB", 20'000'000}};

constexpr char Schema[] = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
  <xs:element name="suite"><xs:complexType>
    <xs:sequence><xs:element name="group" maxOccurs="unbounded"><xs:complexType>
      <xs:sequence><xs:element name="test" minOccurs="0" maxOccurs="unbounded"><xs:complexType>
        <xs:attribute name="label" type="xs:string" use="required"/>
        <xs:attribute name="limit" type="xs:int"/>
        <xs:attribute name="kind" type="xs:NMTOKEN"/>
      </xs:complexType></xs:element></xs:sequence>
      <xs:attribute name="name" type="xs:string" use="required"/>
    </xs:complexType></xs:element></xs:sequence>
  </xs:complexType></xs:element>
</xs:schema>
)";

// The files of a run, gone with it.
class Files {
public:
    Files() : m_Folder(std::filesystem::temp_directory_path() / ("morvex-bench-" + Id())) {
        std::filesystem::create_directories(m_Folder);
        std::ofstream(m_Folder / "suite.xsd") << Schema;
        for (auto const & [name, bytes] : Sizes)
            Write(Document(name), bytes);
        // A schema that changed only just now is not kept.
        usleep(200'000);
    }
    ~Files() { std::filesystem::remove_all(m_Folder); }

    std::filesystem::path SchemaFile() const { return m_Folder / "suite.xsd"; }
    std::filesystem::path Document(std::string const & size) const {
        return m_Folder / (size + ".xml");
    }

private:
    static std::string Id() { return std::to_string(getpid()); }

    static void Write(std::filesystem::path const & path, std::size_t bytes) {
        std::ofstream file(path);
        file << "<?xml version=\"1.0\"?>\n<suite>\n";
        for (int group = 0; static_cast<std::size_t>(file.tellp()) < bytes; ++group) {
            file << "  <group name=\"Group " << group << "\">\n";
            for (int test = 0; test != 20; ++test)
                file << "    <test label=\"Rise time of lane " << test << "\" limit=\""
                     << group * test << "\" kind=\"electrical\"/>\n";
            file << "  </group>\n";
        }
        file << "</suite>\n";
    }

    std::filesystem::path const m_Folder;
};

// The bare engine.
class Engine {
public:
    explicit Engine(std::filesystem::path const & schema) {
        auto * const parser = xmlSchemaNewParserCtxt(schema.c_str());
        m_Schema = xmlSchemaParse(parser);
        xmlSchemaFreeParserCtxt(parser);
    }
    ~Engine() { xmlSchemaFree(m_Schema); }
    Engine(Engine const &) = delete;
    Engine & operator=(Engine const &) = delete;

    std::size_t Run(std::filesystem::path const & file) const {
        xmlDocPtr const document = xmlReadFile(file.c_str(), nullptr, XML_PARSE_NONET);
        auto * const validator = xmlSchemaNewValidCtxt(m_Schema);
        if (xmlSchemaValidateDoc(validator, document) != 0) std::abort();
        xmlSchemaFreeValidCtxt(validator);
        Rows rows;
        Walk(xmlDocGetRootElement(document), 1, rows);
        xmlFreeDoc(document);
        return rows.size();
    }

private:
    static std::wstring Wide(xmlChar const * text) {
        std::wstring wide;
        while (*text != 0) {
            int length = 4;
            wide += static_cast<wchar_t>(xmlGetUTF8Char(text, &length));
            text += length;
        }
        return wide;
    }

    static xmlChar const * Name(char const * text) {
        return reinterpret_cast<xmlChar const *>(text);
    }

    static std::wstring TextOf(xmlNodePtr element) {
        xmlAttrPtr label = nullptr;
        xmlAttrPtr name = nullptr;
        for (xmlAttrPtr each = element->properties; each != nullptr; each = each->next) {
            if (xmlStrEqual(each->name, Name("label"))) label = each;
            if (xmlStrEqual(each->name, Name("name"))) name = each;
        }
        xmlAttrPtr const shown = label != nullptr ? label : name;
        if (shown == nullptr) return Wide(element->name);
        return shown->children != nullptr ? Wide(shown->children->content) : std::wstring();
    }

    static void Walk(xmlNodePtr element, std::int32_t level, Rows & rows) {
        rows.emplace_back(level, TextOf(element));
        for (xmlNodePtr child = element->children; child != nullptr; child = child->next)
            if (child->type == XML_ELEMENT_NODE) Walk(child, level + 1, rows);
    }

    xmlSchemaPtr m_Schema;
};

std::size_t RunOurs(std::filesystem::path const & schema, std::filesystem::path const & file) {
    CDOMDoc document(schema.wstring(), L"");
    if (!document.ValidateDoc(file.wstring().c_str()) || !document.ParseDoc()) std::abort();
    return document.GetNodes().size();
}

void AddTime(std::string const & name, double goal, std::function<void()> const & work) {
    benchmark::RegisterBenchmark(name.c_str(), [goal, work](benchmark::State & state) {
        for (auto _ : state)
            work();
        if (goal != 0) state.counters["goal"] = goal;
    });
}

void AddPeak(std::string const & name, double goal, double bytes) {
    benchmark::RegisterBenchmark(
        name.c_str(),
        [goal, bytes](benchmark::State & state) {
            for (auto _ : state)
                state.SetIterationTime(bytes / 1e9);
            if (goal != 0) state.counters["goal"] = goal;
        })
        ->UseManualTime()
        ->Iterations(1);
}

// Both ways of doing the work on one document, in turn.
void AddDocument(Engine const & engine, Files const & files, Size const & size) {
    auto const bare = [&engine, file = files.Document(size.name)] {
        benchmark::DoNotOptimize(engine.Run(file));
    };
    auto const ours = [schema = files.SchemaFile(), file = files.Document(size.name)] {
        benchmark::DoNotOptimize(RunOurs(schema, file));
    };
    // The first time something may be made that is kept.
    bare();
    ours();
    std::string const name = size.name;
    AddPeak("XmlHeapPeakBytes/" + name + "/limit", 0, HeapPeakOf(bare));
    AddPeak("XmlHeapPeakBytes/" + name + "/morvex", MemoryGoal, HeapPeakOf(ours));
    AddTime("XmlDocument/" + name + "/limit", 0, bare);
    AddTime("XmlDocument/" + name + "/morvex", TimeGoal, ours);
}

} // namespace

int main(int argc, char ** argv) {
    benchmark::Initialize(&argc, argv);
    Files const files;
    CComSessionMgr const session;
    Engine const engine(files.SchemaFile());
    for (Size const & size : Sizes)
        AddDocument(engine, files, size);
    AddTime("XmlSchema/limit", 0, [&files] { Engine const made(files.SchemaFile()); });
    AddTime("XmlSchema/morvex", 0.2, [&files] {
        CDOMDoc const document(files.SchemaFile().wstring(), L"");
    });
    benchmark::RunSpecifiedBenchmarks();
}
