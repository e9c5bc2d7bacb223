// Runs the engine's parser over a file.
//
// The parser is not stopped inside the event of an element, because the validator behind the event
// still reads the parser's buffer. It is told nothing more, and its file ends at the next read.
#include "platform/linux/XmlLoad.h"

#include <cstring>
#include <new>
#include <optional>
#include <string_view>

#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include "platform/linux/XmlErrorChannel.h"
#include "platform/linux/XmlFile.h"
#include "platform/linux/XmlMemory.h"
#include "platform/linux/XmlTreeBuilder.h"
#include "platform/linux/XmlValidation.h"

namespace {

struct ParserDeleter {
    void operator()(xmlParserCtxtPtr parser) const {
        // The engine's own, made of declarations and left behind when the document ends too early.
        xmlFreeDoc(parser->myDoc);
        xmlFreeParserCtxt(parser);
    }
};

// One file on its way to a tree.
class Loading {
public:
    explicit Loading(std::string const & path) { m_Failure.file = path; }
    Loading(Loading const &) = delete;
    Loading & operator=(Loading const &) = delete;

    XmlLoad Run(std::shared_ptr<XmlSchema const> const & schema);

private:
    static Loading & Of(void * parser) {
        return *static_cast<Loading *>(static_cast<xmlParserCtxtPtr>(parser)->_private);
    }

    static void OnStart(
        void * self, xmlChar const * name, xmlChar const * prefix, xmlChar const * uri,
        int namespaceCount, xmlChar const ** namespaces, int attributeCount, int,
        xmlChar const ** attributes);
    static void
    OnEnd(void * self, xmlChar const * name, xmlChar const * prefix, xmlChar const * uri);
    static void OnText(void * self, xmlChar const * text, int length);
    static void OnCData(void * self, xmlChar const * text, int length);
    static void OnComment(void * self, xmlChar const * text);
    static void OnInstruction(void * self, xmlChar const * target, xmlChar const * data);
    static void OnDoctype(void * self, xmlChar const *, xmlChar const *, xmlChar const *);
    static void OnError(void *, xmlErrorPtr error);
    static void OnStrayError(void * self, xmlErrorPtr error);
    static int OnRead(void * self, char * buffer, int size);
    static int OnClose(void *) { return 0; }
    static xmlSAXHandler Handler();

    void MakeParser();
    std::string_view Tag() const;
    // The first failure counts; behind it nothing is told any more.
    void Refuse(HRESULT code, char const * reason);
    void RefuseBecauseOfSize() { Refuse(xml_error::FileTooLarge, "The document is too large."); }
    void TakePlace();
    // False: the text has grown too long.
    bool Validate(std::string_view text);

    // Runs what an event does. The engine is not made for exceptions that pass through it.
    template <typename Body>
    static void Event(void * self, Body const & body) {
        auto & loading = *static_cast<Loading *>(self);
        if (loading.m_Failure) return;
        try {
            if (!body(loading)) loading.RefuseBecauseOfSize();
        } catch (std::bad_alloc const &) {
            loading.m_Failure.code = E_OUTOFMEMORY;
            loading.m_Parser->disableSAX = 1;
        }
    }

    XmlFile m_File;
    XmlFailure m_Failure;
    std::unique_ptr<xmlParserCtxt, ParserDeleter> m_Parser;
    std::optional<XmlTreeBuilder> m_Builder;
    std::optional<XmlValidation> m_Validation;
};

void Loading::TakePlace() {
    if (m_Parser->input == nullptr) return;
    m_Failure.line = m_Parser->input->line;
    m_Failure.column = m_Parser->input->col;
}

void Loading::Refuse(HRESULT code, char const * reason) {
    if (m_Failure) return;
    m_Failure.code = code;
    m_Parser->disableSAX = 1;
    TakePlace();
    try {
        m_Failure.reason = ReasonOf(reason);
    } catch (std::bad_alloc const &) {
        m_Failure.code = E_OUTOFMEMORY;
    }
}

// The parser keeps a start tag in one piece until it has told of it. A "<" does not occur inside.
std::string_view Loading::Tag() const {
    auto const * const end = m_Parser->input->cur;
    auto const * begin = end;
    while (begin != m_Parser->input->base && *begin != '<')
        --begin;
    return {AsChars(begin), AsChars(end)};
}

void Loading::OnStart(
    void * self, xmlChar const * name, xmlChar const * prefix, xmlChar const * uri,
    int namespaceCount, xmlChar const ** namespaces, int attributeCount, int,
    xmlChar const ** attributes) {
    Event(self, [&](Loading & loading) {
        if (loading.m_Builder->Depth() == MaximumXmlDepth) {
            loading.Refuse(xml_error::MaxElementDepth, "The elements are nested too deep.");
            return true;
        }
        bool const isMixed = namespaceCount != 0 && attributeCount != 0;
        if (!loading.m_Builder->StartElement(
                loading.m_Parser->dict, {name, prefix, namespaceCount, namespaces, attributeCount,
                                         attributes, isMixed ? loading.Tag() : std::string_view()}))
            return false;
        if (loading.m_Validation)
            loading.m_Validation->StartElement(
                name, prefix, uri, namespaceCount, namespaces, attributeCount, attributes);
        return true;
    });
}

void Loading::OnEnd(
    void * self, xmlChar const * name, xmlChar const * prefix, xmlChar const * uri) {
    Event(self, [&](Loading & loading) {
        if (!loading.m_Builder->EndElement()) return false;
        if (loading.m_Validation) loading.m_Validation->EndElement(name, prefix, uri);
        return true;
    });
}

bool Loading::Validate(std::string_view text) { return !m_Validation || m_Validation->Text(text); }

void Loading::OnText(void * self, xmlChar const * text, int length) {
    Event(self, [&](Loading & loading) {
        std::string_view const piece(AsChars(text), static_cast<std::size_t>(length));
        return loading.m_Builder->Text(piece) && loading.Validate(piece);
    });
}

void Loading::OnCData(void * self, xmlChar const * text, int length) {
    Event(self, [&](Loading & loading) {
        std::string_view const data(AsChars(text), static_cast<std::size_t>(length));
        return loading.m_Builder->Leaf(NODE_CDATA_SECTION, "", data) && loading.Validate(data);
    });
}

void Loading::OnComment(void * self, xmlChar const * text) {
    Event(self, [&](Loading & loading) {
        return loading.m_Builder->Leaf(NODE_COMMENT, "", AsChars(text));
    });
}

void Loading::OnInstruction(void * self, xmlChar const * target, xmlChar const * data) {
    Event(self, [&](Loading & loading) {
        return loading.m_Builder->Leaf(
            NODE_PROCESSING_INSTRUCTION, AsChars(target), data != nullptr ? AsChars(data) : "");
    });
}

void Loading::OnDoctype(void * self, xmlChar const *, xmlChar const *, xmlChar const *) {
    auto & loading = *static_cast<Loading *>(self);
    loading.Refuse(xml_error::DtdProhibited, "DTD is prohibited.");
    // At once, so that no declaration is read; nobody looks at the buffer behind this event.
    xmlStopParser(loading.m_Parser.get());
}

void Loading::OnError(void *, xmlErrorPtr error) {
    // A namespace may be any text.
    bool const matters = error->level >= XML_ERR_ERROR && error->code != XML_WAR_NS_URI;
    if (matters && error->ctxt != nullptr)
        Of(error->ctxt).Refuse(CodeOfXmlError(error->code), error->message);
}

void Loading::OnStrayError(void * self, xmlErrorPtr error) {
    if (error->level >= XML_ERR_ERROR)
        static_cast<Loading *>(self)->Refuse(CodeOfXmlError(error->code), error->message);
}

int Loading::OnRead(void * self, char * buffer, int size) {
    auto & loading = *static_cast<Loading *>(self);
    if (loading.m_Failure) return 0;
    int const count = loading.m_File.Read(buffer, size);
    if (count == -1)
        loading.Refuse(loading.m_File.Failure(), "The file cannot be read to its end.");
    return count;
}

xmlSAXHandler Loading::Handler() {
    xmlSAXHandler handler{};
    handler.initialized = XML_SAX2_MAGIC;
    handler.startElementNs = OnStart;
    handler.endElementNs = OnEnd;
    handler.characters = OnText;
    handler.ignorableWhitespace = OnText;
    handler.cdataBlock = OnCData;
    handler.comment = OnComment;
    handler.processingInstruction = OnInstruction;
    handler.internalSubset = OnDoctype;
    return handler;
}

void Loading::MakeParser() {
    xmlSAXHandler handler = Handler();
    m_Parser.reset(
        xmlCreateIOParserCtxt(&handler, this, OnRead, OnClose, this, XML_CHAR_ENCODING_NONE));
    if (!m_Parser) throw std::bad_alloc();
    m_Parser->_private = this;
    xmlCtxtUseOptions(m_Parser.get(), XML_PARSE_NOENT | XML_PARSE_NONET);
}

XmlLoad Loading::Run(std::shared_ptr<XmlSchema const> const & schema) {
    XmlFailure const unopened = m_File.Open(m_Failure.file, MaximumXmlFileSize);
    if (unopened) return {nullptr, unopened};
    MakeParser();
    XmlErrorChannel const channel(this, OnStrayError);
    m_Builder.emplace(m_Parser->dict);
    if (schema)
        m_Validation.emplace(
            schema, [this](char const * message) { Refuse(E_XML_INVALID, message); });
    m_Parser->sax->serror = OnError;
    xmlParseDocument(m_Parser.get());
    if (m_Parser->wellFormed == 0) Refuse(E_XML_NOTWF, "It is not well formed.");
    if (m_Validation && !m_Validation->IsValid()) Refuse(E_XML_INVALID, "It is not valid.");
    m_Validation.reset();
    if (m_Failure) return {nullptr, m_Failure};
    return {m_Builder->Tree(), {}};
}

} // namespace

XmlLoad LoadXml(std::string const & path, std::shared_ptr<XmlSchema const> const & schema) {
    xmlInitParser();
    return Loading(path).Run(schema);
}

XmlFailure ValidateTree(XmlTree const & tree, std::shared_ptr<XmlSchema const> const & schema) {
    XmlFailure failure;
    XmlValidation validation(schema, [&failure](char const * message) {
        if (failure) return;
        failure.code = E_XML_INVALID;
        failure.reason = ReasonOf(message);
    });
    validation.Replay(tree);
    if (!failure && !validation.IsValid()) failure = {E_XML_INVALID, "It is not valid.", {}, 0, 0};
    return failure;
}
