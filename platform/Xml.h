// XML documents: loaded from files, validated against schemas, walked node by node.
//
// On Windows it is MSXML 6. Elsewhere these are the operations that are called, with the published
// names, identifiers, results and error codes. An object belongs to one thread at a time; documents
// on several threads may share a schema. A method that fails leaves its output null.
//
// Safe by default off Windows: a DOCTYPE is refused, so that there are no entities but the five of
// XML; nothing is fetched over a network; elements nest 256 deep at most. Refused for its size is a
// file of more than 256 MB, one that would take more than 512 MB as a tree, a text of more than
// 64 MB, an attribute of more than 10 MB, and a schema of more than 16 MB with all that it
// includes.
#pragma once

#include "platform/Com.h"

#if defined(_WIN32)

#if __has_include(<msxml6.h>)
#include <msxml6.h>
#else
#include <msxml2.h>
#define MORVEX_MSXML6_CLASSES
#endif

#else

#define MORVEX_MSXML6_CLASSES

// No document stands where one is asked for; there is no schema to validate against; not valid.
inline constexpr HRESULT E_XML_NOTWF = static_cast<HRESULT>(0xC00CE223);
inline constexpr HRESULT E_XML_NODTD = static_cast<HRESULT>(0xC00CE224);
inline constexpr HRESULT E_XML_INVALID = static_cast<HRESULT>(0xC00CE225);

enum tagDOMNodeType {
    NODE_INVALID = 0,
    NODE_ELEMENT = 1,
    NODE_ATTRIBUTE = 2,
    NODE_TEXT = 3,
    NODE_CDATA_SECTION = 4,
    NODE_PROCESSING_INSTRUCTION = 7,
    NODE_COMMENT = 8,
};
using DOMNodeType = tagDOMNodeType;

struct IXMLDOMNodeList;
struct IXMLDOMNamedNodeMap;

struct IXMLDOMNode : IDispatch {
    // As written, with its prefix; "#text", "#comment" and "#cdata-section" for what has no name.
    virtual HRESULT get_nodeName(BSTR * name) = 0;
    // VT_BSTR; S_FALSE and VT_NULL for an element.
    virtual HRESULT get_nodeValue(VARIANT * value) = 0;
    virtual HRESULT get_nodeType(DOMNodeType * type) = 0;
    // What an element contains, in document order: text of nothing but white space is not kept,
    // unless xml:space says "preserve". Empty for every other node.
    virtual HRESULT get_childNodes(IXMLDOMNodeList ** children) = 0;
    // In the order of the document, namespace declarations among them. S_FALSE and null for what
    // is no element.
    virtual HRESULT get_attributes(IXMLDOMNamedNodeMap ** attributes) = 0;
    // S_OK and VARIANT_TRUE, or S_FALSE and VARIANT_FALSE.
    virtual HRESULT hasChildNodes(VARIANT_BOOL * has) = 0;

protected:
    ~IXMLDOMNode() = default;
};

// Only elements answer to it.
struct IXMLDOMElement : IXMLDOMNode {
protected:
    ~IXMLDOMElement() = default;
};

struct IXMLDOMNodeList : IDispatch {
    // S_FALSE and null beyond the ends.
    virtual HRESULT get_item(LONG index, IXMLDOMNode ** node) = 0;
    virtual HRESULT get_length(LONG * length) = 0;

protected:
    ~IXMLDOMNodeList() = default;
};

struct IXMLDOMNamedNodeMap : IDispatch {
    // S_FALSE and null beyond the ends.
    virtual HRESULT get_item(LONG index, IXMLDOMNode ** node) = 0;
    virtual HRESULT get_length(LONG * length) = 0;

protected:
    ~IXMLDOMNamedNodeMap() = default;
};

// Where and why a document was refused. Without an error: code 0, and S_FALSE with a null text or
// with 0 for the rest.
struct IXMLDOMParseError : IDispatch {
    virtual HRESULT get_errorCode(LONG * code) = 0;
    // The file as it was named.
    virtual HRESULT get_url(BSTR * url) = 0;
    virtual HRESULT get_reason(BSTR * reason) = 0;
    // Both counted from 1; 0 when the place is not known.
    virtual HRESULT get_line(LONG * line) = 0;
    virtual HRESULT get_linepos(LONG * column) = 0;

protected:
    ~IXMLDOMParseError() = default;
};

struct IXMLDOMSchemaCollection : IDispatch {
    // Binds the schema in a file, named by a text, to its target namespace (empty: none). A file
    // with its includes and imports is compiled once in the process, and again when one of them has
    // changed. E_FAIL when the file cannot be read, is no schema or has another target namespace;
    // E_NOTIMPL for a second file, of whatever namespace. Either leaves an error object that says
    // what and where, and the collection as it was.
    //
    // Types, keys and references between keys are checked; not checked is whether the values of
    // type xs:ID differ and whether an xs:IDREF has its ID.
    virtual HRESULT add(BSTR namespaceUri, VARIANT location) = 0;

protected:
    ~IXMLDOMSchemaCollection() = default;
};

struct IXMLDOMSchemaCollection2 : IXMLDOMSchemaCollection {
protected:
    ~IXMLDOMSchemaCollection2() = default;
};

struct IXMLDOMDocument : IDispatch {
    // The root; S_FALSE and null while nothing is loaded.
    virtual HRESULT get_documentElement(IXMLDOMElement ** element) = 0;
    // Loads the file that a text names, with `\` and `/` alike, in place of what was loaded.
    // S_FALSE and VARIANT_FALSE when it is refused: the document is then empty, and parseError says
    // why.
    virtual HRESULT load(VARIANT source, VARIANT_BOOL * isSuccessful) = 0;
    // What the last load has met, never null.
    virtual HRESULT get_parseError(IXMLDOMParseError ** error) = 0;
    // Any value but 0 is refused with E_NOTIMPL: a load has ended when it returns.
    virtual HRESULT put_async(VARIANT_BOOL isAsync) = 0;
    // Whether load refuses a document that is not valid. At first it does.
    virtual HRESULT put_validateOnParse(VARIANT_BOOL isValidating) = 0;
    // Accepted; there is nothing external in a document without a DOCTYPE.
    virtual HRESULT put_resolveExternals(VARIANT_BOOL isResolving) = 0;

protected:
    ~IXMLDOMDocument() = default;
};

struct IXMLDOMDocument2 : IXMLDOMDocument {
    // The schemas to validate against: an IXMLDOMSchemaCollection2 in a VT_DISPATCH, kept with a
    // reference. VT_NULL takes them away.
    virtual HRESULT putref_schemas(VARIANT schemas) = 0;
    // Validates what is loaded: S_OK, or S_FALSE with the reason in `error`, which is never null:
    // E_XML_NOTWF when nothing is loaded, E_XML_NODTD without schemas, else E_XML_INVALID.
    virtual HRESULT validate(IXMLDOMParseError ** error) = 0;
    // "SelectionLanguage" is "XPath"; E_INVALIDARG for any other value or name.
    virtual HRESULT setProperty(BSTR name, VARIANT value) = 0;

protected:
    ~IXMLDOMDocument2() = default;
};

#endif

#if defined(MORVEX_MSXML6_CLASSES)
#undef MORVEX_MSXML6_CLASSES
inline constexpr CLSID CLSID_DOMDocument60 = {
    0x88D96A05, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};
inline constexpr CLSID CLSID_XMLSchemaCache60 = {
    0x88D96A07, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};
#endif

MORVEX_INTERFACE_ID(
    IXMLDOMDocument2, 0x2933BF95, 0x7B36, 0x11D2, 0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60)
MORVEX_INTERFACE_ID(
    IXMLDOMDocument, 0x2933BF81, 0x7B36, 0x11D2, 0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60)
MORVEX_INTERFACE_ID(
    IXMLDOMSchemaCollection2, 0x50EA08B0, 0xDD1B, 0x4664, 0x9A, 0x50, 0xC2, 0xF4, 0x0F, 0x4B, 0xD7,
    0x9A)
MORVEX_INTERFACE_ID(
    IXMLDOMSchemaCollection, 0x373984C8, 0xB845, 0x449B, 0x91, 0xE7, 0x45, 0xAC, 0x83, 0x03, 0x6A,
    0xDE)
MORVEX_INTERFACE_ID(
    IXMLDOMParseError, 0x3EFAA426, 0x272F, 0x11D2, 0x83, 0x6F, 0x00, 0x00, 0xF8, 0x7A, 0x77, 0x82)
MORVEX_INTERFACE_ID(
    IXMLDOMNode, 0x2933BF80, 0x7B36, 0x11D2, 0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60)
MORVEX_INTERFACE_ID(
    IXMLDOMNodeList, 0x2933BF82, 0x7B36, 0x11D2, 0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60)
MORVEX_INTERFACE_ID(
    IXMLDOMNamedNodeMap, 0x2933BF83, 0x7B36, 0x11D2, 0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60)
MORVEX_INTERFACE_ID(
    IXMLDOMElement, 0x2933BF86, 0x7B36, 0x11D2, 0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60)
