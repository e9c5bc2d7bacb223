// The document's life, its schema, loading and validating.
#include "xml/CDOMDoc.h"

#include <memory>

#include "app/CAppState.h"
#include "siblings/Keelbase.h"
#include "xml/ComArguments.h"
#include "xml/DOMFailure.h"
#include "xml/SchemaPath.h"

namespace {

// Makes a component in the running state. On a negative result `made` is empty.
template <typename Interface>
HRESULT MakeComponent(CLSID const & clsid, ComPtr<Interface> & made) {
    ComPtr<IUnknown> unknown;
    HRESULT result = CoCreateInstance(
        clsid, nullptr, CLSCTX_ALL, InterfaceId<IUnknown>, unknown.ReceiveUntyped());
    if (FAILED(result)) unknown.Detach();
    if (SUCCEEDED(result)) result = OleRun(unknown.Get());
    if (SUCCEEDED(result))
        result = unknown->QueryInterface(InterfaceId<Interface>, made.ReceiveUntyped());
    if (FAILED(result)) made.Detach();
    return result;
}

std::string MessageOf(_com_error const & failure) {
    if (char const * const message = failure.ErrorMessage()) return message;
    CSimpleBuffer buffer;
    return FormatText(
        nullptr, &buffer, FormatPadding{0, 0}, "COM Error Code 0x%08X", failure.Error());
}

std::int32_t ErrorCodeOf(ComPtr<IXMLDOMParseError> const & error) {
    LONG code = 0;
    CheckCall<IXMLDOMParseError>(error->get_errorCode(&code), error);
    return static_cast<std::int32_t>(code);
}

} // namespace

CDOMDoc::CDOMDoc(std::wstring const & schema, std::wstring const & schemaNamespace) {
    try {
        auto ownSchema = std::make_unique<std::wstring>(schema);
        auto ownNamespace = std::make_unique<std::wstring>(schemaNamespace);
        auto nodes = std::make_unique<std::vector<Node>>();
        CreateDocument(schema, schemaNamespace, true);
        m_Schema = ownSchema.release();
        m_Namespace = ownNamespace.release();
        m_Nodes = nodes.release();
    } catch (_com_error const & failure) {
        ThrowQNDOMDoc(
            "DOM Doc Create Exception (schema: \"%S\", namespace \"%S\") - %s", schema,
            schemaNamespace, MessageOf(failure));
    }
}

// Deliberate: a copy deletes table and texts as well.
// Pinned by CDOMDocTest.CopySharesItsTableAndItsTexts.
CDOMDoc::~CDOMDoc() {
    m_Document.Reset();
    m_ParseError.Reset();
    delete m_Nodes;
    delete m_Schema;
    delete m_Namespace;
}

void CDOMDoc::CreateDocument(
    std::wstring const & schema, std::wstring const & schemaNamespace, bool validate) {
    m_Document.Reset();
    HRESULT const made = MakeComponent(CLSID_DOMDocument60, m_Document);
    if (FAILED(made)) {
        if (m_Document) m_Document->get_parseError(m_ParseError.Receive());
        ThrowWithStatus("Couldn't create XML DOM document.  (status=0x%08X (%lu))", made);
    }
    AttachSchema(schema, schemaNamespace);
    // Deliberate: 1, and not the platform's true value.
    // Pinned by CDOMDocCallsTest.DocumentIsMadeInThisOrder.
    VARIANT_BOOL const on = validate ? 1 : 0;
    CheckCall<IXMLDOMDocument>(m_Document->put_async(0), m_Document);
    CheckCall<IXMLDOMDocument>(m_Document->put_validateOnParse(on), m_Document);
    CheckCall<IXMLDOMDocument>(m_Document->put_resolveExternals(on), m_Document);
    TextArgument const property(L"SelectionLanguage");
    Value const language(L"XPath");
    CheckCall<IXMLDOMDocument2>(
        m_Document->setProperty(property.Get(), language.Get()), m_Document);
}

// Deliberate: a schema that cannot be added has no text of its own.
// Pinned by CDOMDocCallsTest.RefusedSchemaIsAComError.
void CDOMDoc::AttachSchema(std::wstring const & schema, std::wstring const & schemaNamespace) {
    ComPtr<IXMLDOMSchemaCollection2> collection;
    HRESULT const made = MakeComponent(CLSID_XMLSchemaCache60, collection);
    if (FAILED(made))
        ThrowWithStatus("Couldn't create Schema Collection.  (status=0x%08X (%lu))", made);
    {
        Value const location(schema.c_str());
        TextArgument const target(schemaNamespace.c_str());
        CheckCall<IXMLDOMSchemaCollection>(
            collection->add(target.Get(), location.Get()), collection);
    }
    auto & document = *m_Document.operator->();
    Value const schemas(collection.Get());
    CheckCall<IXMLDOMDocument2>(document.putref_schemas(schemas.Get()), m_Document);
}

bool CDOMDoc::ValidateDoc(wchar_t const * fileName) {
    auto & document = *m_Document.operator->();
    {
        Value const source(fileName);
        VARIANT_BOOL isSuccessful = VARIANT_FALSE;
        CheckCall<IXMLDOMDocument>(document.load(source.Get(), &isSuccessful), m_Document);
    }
    ComPtr<IXMLDOMParseError> error;
    CheckCall<IXMLDOMDocument>(document.get_parseError(error.Receive()), m_Document);
    if (ErrorCodeOf(error) < 0) return false;
    CheckCall<IXMLDOMDocument2>(document.validate(error.Receive()), m_Document);
    // Deliberate: a positive code is a success. Pinned by CDOMDocCallsTest.PositiveErrorCodePasses.
    return ErrorCodeOf(error) >= 0;
}

ComPtr<IXMLDOMElement> CDOMDoc::GetRootElement() {
    ComPtr<IXMLDOMElement> root;
    CheckRead(m_Document->get_documentElement(root.Receive()), "Couldn't get Root Element.");
    return root;
}

std::wstring CDOMDoc::MakeFullSchemaPath(wchar_t const * fileName) {
    return AppendPath(CAppState::InitialWorkingDirectory(), fileName);
}

bool CDOMDoc::CheckDocLoad(ComPtr<IXMLDOMParseError> & error) { return ErrorCodeOf(error) >= 0; }
