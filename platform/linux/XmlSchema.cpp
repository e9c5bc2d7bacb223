// Compiling schemas and keeping them.
//
// The engine finds included files through one function of the whole process. Ours stands in front
// of the one before it and speaks up only on a thread that is compiling a schema here.
#include "platform/linux/XmlSchema.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <mutex>
#include <new>
#include <system_error>

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/schemasInternals.h>
#include <libxml/uri.h>
#include <libxml/xmlIO.h>
#include <libxml/xmlschemastypes.h>
#include <time.h>

#include "platform/Xml.h"
#include "platform/linux/XmlErrorChannel.h"
#include "platform/linux/XmlMemory.h"

namespace {

constexpr char FileScheme[] = "file://";

// How long two changes of a file may bear the same time.
constexpr std::int64_t SameMoment = 50'000'000;

// A process that makes schemas up must not fill its memory with them.
constexpr std::size_t MaximumKept = 16;

std::int64_t Now() {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return now.tv_sec * std::int64_t{1'000'000'000} + now.tv_nsec;
}

std::string UriOf(std::string const & path) {
    XmlText const escaped(xmlURIEscapeStr(AsXml(path.c_str()), AsXml("/")));
    if (!escaped) throw std::bad_alloc();
    return FileScheme + std::string(AsChars(escaped.get()));
}

// Empty for what is not in a file.
std::string PathOfUri(std::string const & uri) {
    if (uri.starts_with("/")) return uri;
    if (!uri.starts_with(FileScheme)) return {};
    XmlText const plain(reinterpret_cast<xmlChar *>(
        xmlURIUnescapeString(uri.c_str() + sizeof FileScheme - 1, 0, nullptr)));
    if (!plain) throw std::bad_alloc();
    return NativePath(AsChars(plain.get()));
}

// One compilation: what it reads and what goes wrong first.
class Compilation {
public:
    explicit Compilation(std::string path) : m_Path(std::move(path)) {}

    std::shared_ptr<XmlSchema const> Run();
    XmlFailure const & Failure() const { return m_Failure; }

    static thread_local Compilation * s_Current;

    xmlParserInputPtr Load(char const * uri, xmlParserCtxtPtr parser);

private:
    static void OnError(void * self, xmlErrorPtr error);
    // Of the parser, which is not made here and does not know us.
    static void OnParserError(void *, xmlErrorPtr error) { OnError(s_Current, error); }
    static void
    OnDoctype(void * parser, xmlChar const *, xmlChar const * externalId, xmlChar const * systemId);
    static int OnRead(void * file, char * buffer, int size);
    static int OnClose(void * file);

    // The engine is not made for exceptions that pass through it.
    template <typename Body>
    void Guarded(Body const & body) {
        try {
            body();
        } catch (std::bad_alloc const &) {
            m_Failure.code = E_OUTOFMEMORY;
        }
    }

    xmlParserInputPtr Open(std::string const & path, char const * uri, xmlParserCtxtPtr parser);

    void Note(XmlFailure const & failure) {
        if (!m_Failure) m_Failure = failure;
    }
    void NoteAt(HRESULT code, std::string reason, char const * uri, int line);

    std::string const m_Path;
    XmlFailure m_Failure;
    XmlSchema::Files m_Files;
    std::int64_t m_Left = MaximumXmlSchemaSize;
};

thread_local Compilation * Compilation::s_Current = nullptr;

xmlExternalEntityLoader s_NextLoader = nullptr;

xmlParserInputPtr LoadEntity(char const * uri, char const * id, xmlParserCtxtPtr parser) {
    if (Compilation::s_Current != nullptr) return Compilation::s_Current->Load(uri, parser);
    return s_NextLoader != nullptr ? s_NextLoader(uri, id, parser) : nullptr;
}

// Under the lock of the store. Another part of the process may have set its own meanwhile.
void StandInFront() {
    if (xmlGetExternalEntityLoader() == LoadEntity) return;
    s_NextLoader = xmlGetExternalEntityLoader();
    xmlSetExternalEntityLoader(LoadEntity);
}

void Compilation::OnError(void * self, xmlErrorPtr error) {
    if (error->level < XML_ERR_ERROR) return;
    auto & compilation = *static_cast<Compilation *>(self);
    compilation.Guarded([&] {
        compilation.NoteAt(
            error->code == XML_ERR_NO_MEMORY ? E_OUTOFMEMORY : E_FAIL, ReasonOf(error->message),
            error->file, error->line);
    });
}

void Compilation::NoteAt(HRESULT code, std::string reason, char const * uri, int line) {
    XmlFailure failure;
    failure.code = code;
    failure.reason = std::move(reason);
    failure.file = uri != nullptr ? PathOfUri(uri) : m_Path;
    failure.line = line;
    Note(failure);
}

void Compilation::OnDoctype(void * parser, xmlChar const *, xmlChar const *, xmlChar const *) {
    auto * const context = static_cast<xmlParserCtxtPtr>(parser);
    s_Current->Guarded([&] {
        s_Current->NoteAt(
            xml_error::DtdProhibited, "DTD is prohibited.", context->input->filename,
            context->input->line);
    });
    xmlStopParser(context);
}

int Compilation::OnRead(void * file, char * buffer, int size) {
    return static_cast<XmlFile *>(file)->Read(buffer, size);
}

int Compilation::OnClose(void * file) {
    delete static_cast<XmlFile *>(file);
    return 0;
}

xmlParserInputPtr Compilation::Load(char const * uri, xmlParserCtxtPtr parser) {
    xmlParserInputPtr input = nullptr;
    Guarded([&] {
        std::string const path = PathOfUri(uri != nullptr ? uri : "");
        if (!path.empty()) input = Open(path, uri, parser);
    });
    // To the engine a schema that is not there is another thing than one that cannot be read.
    if (input == nullptr) {
        xmlLastError.domain = XML_FROM_IO;
        xmlLastError.code = XML_IO_LOAD_ERROR;
    }
    return input;
}

xmlParserInputPtr
Compilation::Open(std::string const & path, char const * uri, xmlParserCtxtPtr parser) {
    auto file = std::make_unique<XmlFile>();
    XmlFailure const failure = file->Open(path, m_Left);
    m_Files.emplace_back(path, file->State());
    if (failure) {
        // What is imported may be missing: whoever needs it says so.
        if (path == m_Path || failure.code == xml_error::FileTooLarge) Note(failure);
        return nullptr;
    }
    m_Left -= file->State().size;
    parser->sax->internalSubset = OnDoctype;
    parser->sax->serror = OnParserError;
    auto * const buffer =
        xmlParserInputBufferCreateIO(OnRead, OnClose, file.get(), XML_CHAR_ENCODING_NONE);
    if (buffer == nullptr) throw std::bad_alloc();
    file.release();
    auto * const input = xmlNewIOInputStream(parser, buffer, XML_CHAR_ENCODING_NONE);
    if (input == nullptr) {
        xmlFreeParserInputBuffer(buffer);
        throw std::bad_alloc();
    }
    input->filename = reinterpret_cast<char *>(xmlStrdup(AsXml(uri)));
    return input;
}

std::shared_ptr<XmlSchema const> Compilation::Run() {
    std::unique_ptr<xmlSchemaParserCtxt, decltype(&xmlSchemaFreeParserCtxt)> const parser(
        xmlSchemaNewParserCtxt(UriOf(m_Path).c_str()), xmlSchemaFreeParserCtxt);
    if (!parser) throw std::bad_alloc();
    xmlSchemaSetParserStructuredErrors(parser.get(), OnError, this);
    XmlErrorChannel const channel(this, OnError);
    s_Current = this;
    xmlSchemaPtr const compiled = xmlSchemaParse(parser.get());
    s_Current = nullptr;
    if (compiled == nullptr) {
        NoteAt(E_FAIL, "It is not a schema.", nullptr, 0);
        return nullptr;
    }
    auto schema = std::make_shared<XmlSchema const>(compiled, std::move(m_Files));
    return m_Failure ? nullptr : schema;
}

// The engine (2.9.14) takes the white space off a value when its type is marked so. Of the types
// that it brings along some are not: " 5 " would be no xs:int. A type hands the mark down to what
// is derived from it if it is marked for facets, too.
void MakeTypesCollapseWhiteSpace() {
    constexpr int marks = (XML_SCHEMAS_TYPE_NORMVALUENEEDED) | (XML_SCHEMAS_TYPE_HAS_FACETS);
    xmlSchemaInitTypes();
    for (int type = XML_SCHEMAS_NORMSTRING; type != XML_SCHEMAS_ANYTYPE; ++type)
        if (auto * const builtIn = xmlSchemaGetBuiltInType(static_cast<xmlSchemaValType>(type)))
            builtIn->flags |= marks;
}

// The schemas of the process by path, each with the number of its last use.
class Store {
public:
    std::shared_ptr<XmlSchema const> Get(std::string const & path, XmlFailure & failure) {
        std::scoped_lock const lock(m_Mutex);
        auto & kept = m_Schemas[path];
        kept.used = ++m_Uses;
        if (kept.schema && kept.schema->IsCurrent()) return kept.schema;
        kept.schema.reset();
        StandInFront();
        Compilation compilation(path);
        auto const schema = kept.schema = compilation.Run();
        failure = compilation.Failure();
        DropOldest();
        return schema;
    }

private:
    struct Kept {
        std::shared_ptr<XmlSchema const> schema;
        std::uint64_t used = 0;
    };

    void DropOldest() {
        std::erase_if(m_Schemas, [](auto const & entry) { return !entry.second.schema; });
        if (m_Schemas.size() <= MaximumKept) return;
        m_Schemas.erase(std::ranges::min_element(
            m_Schemas, {}, [](auto const & entry) { return entry.second.used; }));
    }

    std::mutex m_Mutex;
    std::map<std::string, Kept> m_Schemas;
    std::uint64_t m_Uses = 0;
};

} // namespace

XmlSchema::XmlSchema(xmlSchemaPtr compiled, Files files)
    : m_Compiled(compiled), m_Files(std::move(files)), m_Made(Now()) {}

XmlSchema::~XmlSchema() { xmlSchemaFree(m_Compiled); }

std::string XmlSchema::TargetNamespace() const {
    xmlChar const * const name = m_Compiled->targetNamespace;
    return name != nullptr ? AsChars(name) : "";
}

bool XmlSchema::IsCurrent() const {
    return std::ranges::all_of(m_Files, [this](auto const & file) {
        XmlFileState const & state = file.second;
        return state == StateOf(file.first) && state.changed < m_Made - SameMoment;
    });
}

std::shared_ptr<XmlSchema const> SchemaIn(std::string const & path, XmlFailure & failure) {
    // Never destroyed: a schema may be asked for while the process ends.
    static Store & store = *[] {
        xmlInitParser();
        MakeTypesCollapseWhiteSpace();
        return new Store;
    }();
    std::error_code error;
    auto const whole = std::filesystem::absolute(path, error);
    if (!error) return store.Get(whole.native(), failure);
    failure = {xml_error::FileNotFound, "The file does not exist.", path, 0, 0};
    return nullptr;
}
