// One XML document, bound to one schema when it is made: loaded from a file, validated, and walked
// into a table of rows (level, text to show).
//
// An object belongs to the thread that made it, on which COM stays started meanwhile
// (CComSessionMgr). Failures travel in three ways:
// - false: the file is not well formed or not valid; a node could not be read during ParseDoc;
// - CQNDOMDocException, with a text: the components cannot be made; a node cannot be read outside
//   of ParseDoc;
// - _com_error: any other failed call, E_POINTER for an empty reference among them, and
//   E_OUTOFMEMORY for a text that cannot be passed on.
// Besides, std::bad_alloc passes.
//
// References are passed by value: each operation holds its own for the length of the call.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "app/Export.h"
#include "platform/ComPtr.h"
#include "platform/Xml.h"

class MORVEX_API CDOMDoc {
public:
    // Level and text of one element; the root has level 1.
    using Node = std::pair<std::int32_t, std::wstring>;

    // By name without prefix.
    using Attributes = std::map<std::wstring, std::wstring>;

    static constexpr std::uint32_t CURRENT_MSXML_VERSION = 6;

    // Makes an empty document with the schema at this location under its target namespace. Throws
    // CQNDOMDocException, which names both, also where a call has failed.
    CDOMDoc(std::wstring const & schema, std::wstring const & schemaNamespace);

    // Shares the table and both texts with its source, and each of the two deletes them: one of
    // the two must be abandoned.
    CDOMDoc(CDOMDoc const &) = default;
    CDOMDoc & operator=(CDOMDoc const &) = delete;
    virtual ~CDOMDoc();

    // Puts a new document in the place of the one held. `validate`: whether loading validates.
    void CreateDocument(
        std::wstring const & schema, std::wstring const & schemaNamespace, bool validate);

    // Binds the document to this schema alone, in place of the one before.
    void AttachSchema(std::wstring const & schema, std::wstring const & schemaNamespace);

    // Loads the file in place of what was loaded before. True: it is well formed and valid. The
    // table stays as it was.
    bool ValidateDoc(wchar_t const * fileName);

    // Empty when nothing is loaded.
    ComPtr<IXMLDOMElement> GetRootElement();

    // For derived classes, which give the arguments a meaning. True; nothing here calls it.
    virtual bool CanLoadDoc(wchar_t const *, wchar_t const *) { return true; }

    // Appends a row for each element, each before those of the elements within. False: a node could
    // not be read; the text of that goes to the host's output buffer, if there is one. After any
    // failure, an exception among them, the rows so far stay.
    virtual bool ParseDoc();

    // Empties what DOMError gives.
    void FailedLoadCleanup() { m_ParseError.Reset(); }

    // Empty in normal use.
    ComPtr<IXMLDOMParseError> const & DOMError() const { return m_ParseError; }

    std::uint32_t XMLVersion() const { return m_XMLVersion; }
    wchar_t const * SchemaNamespace() const { return m_Namespace->c_str(); }

    std::vector<Node> & GetNodes() const { return *m_Nodes; }

protected:
    // The file in the directory that the process had when it started: joined with a `\` between,
    // unless the name has a root of its own. Nothing checks that there is such a file.
    static std::wstring MakeFullSchemaPath(wchar_t const * fileName);

    // Whether the error's code is 0 or above.
    bool CheckDocLoad(ComPtr<IXMLDOMParseError> & error);

    // The walk behind ParseDoc: a row for the element, then its children's. What is no element
    // throws _com_error E_POINTER.
    void ParseElement(ComPtr<IXMLDOMElement> element);

    bool HasChildren(ComPtr<IXMLDOMElement> element);
    bool IsNodeComment(ComPtr<IXMLDOMNode> node);
    tagDOMNodeType GetNodeType(ComPtr<IXMLDOMNode> node);

    // What follows the first colon, or the whole name without one.
    std::wstring GetNodeName(ComPtr<IXMLDOMNode> node);
    std::wstring GetElementName(ComPtr<IXMLDOMElement> element);
    bool ConfirmElementName(ComPtr<IXMLDOMElement> element, wchar_t const * name);

    // `list` receives a reference that the caller releases.
    void GetAttributeList(ComPtr<IXMLDOMElement> element, IXMLDOMNamedNodeMap ** list);

    // The first attribute with this name without prefix, in the order of the list; empty when there
    // is none.
    std::wstring GetAttribute(ComPtr<IXMLDOMElement> element, wchar_t const * name);

    // Of several that differ by prefix alone the last; namespace declarations among them.
    Attributes GetAllAttributes(ComPtr<IXMLDOMElement> element);

    // `list` receives a reference that the caller releases, `length` the number of children and
    // `count` (may be null) that of those that are no comments.
    void GetChildList(
        ComPtr<IXMLDOMElement> element, IXMLDOMNodeList ** list, long * length, long * count);
    ComPtr<IXMLDOMNode> GetChildNode(long index, ComPtr<IXMLDOMNodeList> list);

    // The attribute "label" if there is one, else "name", else the element's name; for an empty
    // one of these "<<Unknown element>>".
    std::wstring MakeDisplayString(std::wstring const & elementName, Attributes & attributes) const;
    std::wstring MakeDisplayString(ComPtr<IXMLDOMElement> element);

    ComPtr<IXMLDOMDocument2> m_Document;
    ComPtr<IXMLDOMParseError> m_ParseError;
    std::uint32_t m_XMLVersion = CURRENT_MSXML_VERSION;
    std::vector<Node> * m_Nodes = nullptr;
    std::wstring * m_Schema = nullptr;
    std::wstring * m_Namespace = nullptr;
    // Of the element that is being walked; 0 outside of a walk that has not failed.
    std::int32_t m_Level = 0;
};
