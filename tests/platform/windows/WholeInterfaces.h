// What a double of an interface of the system needs besides the methods that are called: the rest,
// which answers E_NOTIMPL and does nothing else.
#pragma once

#include "platform/Xml.h"

template <typename Interface>
struct WholeDispatch : Interface {
    HRESULT WINAPI GetTypeInfoCount(UINT *) override { return E_NOTIMPL; }
    HRESULT WINAPI GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
    HRESULT WINAPI GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override {
        return E_NOTIMPL;
    }
    HRESULT WINAPI
    Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *) override {
        return E_NOTIMPL;
    }
};

template <typename Interface>
struct WholeNode : WholeDispatch<Interface> {
    HRESULT WINAPI put_nodeValue(VARIANT) override { return E_NOTIMPL; }
    HRESULT WINAPI get_parentNode(IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_firstChild(IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_lastChild(IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_previousSibling(IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_nextSibling(IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI insertBefore(IXMLDOMNode *, VARIANT, IXMLDOMNode **) override {
        return E_NOTIMPL;
    }
    HRESULT WINAPI replaceChild(IXMLDOMNode *, IXMLDOMNode *, IXMLDOMNode **) override {
        return E_NOTIMPL;
    }
    HRESULT WINAPI removeChild(IXMLDOMNode *, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI appendChild(IXMLDOMNode *, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_ownerDocument(IXMLDOMDocument **) override { return E_NOTIMPL; }
    HRESULT WINAPI cloneNode(VARIANT_BOOL, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_nodeTypeString(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_text(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI put_text(BSTR) override { return E_NOTIMPL; }
    HRESULT WINAPI get_specified(VARIANT_BOOL *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_definition(IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_nodeTypedValue(VARIANT *) override { return E_NOTIMPL; }
    HRESULT WINAPI put_nodeTypedValue(VARIANT) override { return E_NOTIMPL; }
    HRESULT WINAPI get_dataType(VARIANT *) override { return E_NOTIMPL; }
    HRESULT WINAPI put_dataType(BSTR) override { return E_NOTIMPL; }
    HRESULT WINAPI get_xml(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI transformNode(IXMLDOMNode *, BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI selectNodes(BSTR, IXMLDOMNodeList **) override { return E_NOTIMPL; }
    HRESULT WINAPI selectSingleNode(BSTR, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_parsed(VARIANT_BOOL *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_namespaceURI(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_prefix(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_baseName(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI transformNodeToObject(IXMLDOMNode *, VARIANT) override { return E_NOTIMPL; }
};

struct WholeElement : WholeNode<IXMLDOMElement> {
    HRESULT WINAPI get_tagName(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI getAttribute(BSTR, VARIANT *) override { return E_NOTIMPL; }
    HRESULT WINAPI setAttribute(BSTR, VARIANT) override { return E_NOTIMPL; }
    HRESULT WINAPI removeAttribute(BSTR) override { return E_NOTIMPL; }
    HRESULT WINAPI getAttributeNode(BSTR, IXMLDOMAttribute **) override { return E_NOTIMPL; }
    HRESULT WINAPI setAttributeNode(IXMLDOMAttribute *, IXMLDOMAttribute **) override {
        return E_NOTIMPL;
    }
    HRESULT WINAPI removeAttributeNode(IXMLDOMAttribute *, IXMLDOMAttribute **) override {
        return E_NOTIMPL;
    }
    HRESULT WINAPI getElementsByTagName(BSTR, IXMLDOMNodeList **) override { return E_NOTIMPL; }
    HRESULT WINAPI normalize() override { return E_NOTIMPL; }
};

struct WholeNodeList : WholeDispatch<IXMLDOMNodeList> {
    HRESULT WINAPI nextNode(IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI reset() override { return E_NOTIMPL; }
    HRESULT WINAPI get__newEnum(IUnknown **) override { return E_NOTIMPL; }
};

struct WholeNamedNodeMap : WholeDispatch<IXMLDOMNamedNodeMap> {
    HRESULT WINAPI getNamedItem(BSTR, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI setNamedItem(IXMLDOMNode *, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI removeNamedItem(BSTR, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI getQualifiedItem(BSTR, BSTR, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI removeQualifiedItem(BSTR, BSTR, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI nextNode(IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI reset() override { return E_NOTIMPL; }
    HRESULT WINAPI get__newEnum(IUnknown **) override { return E_NOTIMPL; }
};

struct WholeParseError : WholeDispatch<IXMLDOMParseError> {
    HRESULT WINAPI get_srcText(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_filepos(LONG *) override { return E_NOTIMPL; }
};

template <typename Interface>
struct WholeSchemaCollection : WholeDispatch<Interface> {
    HRESULT WINAPI get(BSTR, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI remove(BSTR) override { return E_NOTIMPL; }
    HRESULT WINAPI get_length(LONG *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_namespaceURI(LONG, BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI addCollection(IXMLDOMSchemaCollection *) override { return E_NOTIMPL; }
    HRESULT WINAPI get__newEnum(IUnknown **) override { return E_NOTIMPL; }
};

struct WholeSchemaCollection2 : WholeSchemaCollection<IXMLDOMSchemaCollection2> {
    HRESULT WINAPI validate() override { return E_NOTIMPL; }
    HRESULT WINAPI put_validateOnLoad(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT WINAPI get_validateOnLoad(VARIANT_BOOL *) override { return E_NOTIMPL; }
    HRESULT WINAPI getSchema(BSTR, ISchema **) override { return E_NOTIMPL; }
    HRESULT WINAPI getDeclaration(IXMLDOMNode *, ISchemaItem **) override { return E_NOTIMPL; }
};

template <typename Interface>
struct WholeDocument : WholeNode<Interface> {
    HRESULT WINAPI get_doctype(IXMLDOMDocumentType **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_implementation(IXMLDOMImplementation **) override { return E_NOTIMPL; }
    HRESULT WINAPI putref_documentElement(IXMLDOMElement *) override { return E_NOTIMPL; }
    HRESULT WINAPI createElement(BSTR, IXMLDOMElement **) override { return E_NOTIMPL; }
    HRESULT WINAPI createDocumentFragment(IXMLDOMDocumentFragment **) override { return E_NOTIMPL; }
    HRESULT WINAPI createTextNode(BSTR, IXMLDOMText **) override { return E_NOTIMPL; }
    HRESULT WINAPI createComment(BSTR, IXMLDOMComment **) override { return E_NOTIMPL; }
    HRESULT WINAPI createCDATASection(BSTR, IXMLDOMCDATASection **) override { return E_NOTIMPL; }
    HRESULT WINAPI
    createProcessingInstruction(BSTR, BSTR, IXMLDOMProcessingInstruction **) override {
        return E_NOTIMPL;
    }
    HRESULT WINAPI createAttribute(BSTR, IXMLDOMAttribute **) override { return E_NOTIMPL; }
    HRESULT WINAPI createEntityReference(BSTR, IXMLDOMEntityReference **) override {
        return E_NOTIMPL;
    }
    HRESULT WINAPI getElementsByTagName(BSTR, IXMLDOMNodeList **) override { return E_NOTIMPL; }
    HRESULT WINAPI createNode(VARIANT, BSTR, BSTR, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI nodeFromID(BSTR, IXMLDOMNode **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_readyState(LONG *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_url(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_async(VARIANT_BOOL *) override { return E_NOTIMPL; }
    HRESULT WINAPI abort() override { return E_NOTIMPL; }
    HRESULT WINAPI loadXML(BSTR, VARIANT_BOOL *) override { return E_NOTIMPL; }
    HRESULT WINAPI save(VARIANT) override { return E_NOTIMPL; }
    HRESULT WINAPI get_validateOnParse(VARIANT_BOOL *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_resolveExternals(VARIANT_BOOL *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_preserveWhiteSpace(VARIANT_BOOL *) override { return E_NOTIMPL; }
    HRESULT WINAPI put_preserveWhiteSpace(VARIANT_BOOL) override { return E_NOTIMPL; }
    HRESULT WINAPI put_onreadystatechange(VARIANT) override { return E_NOTIMPL; }
    HRESULT WINAPI put_ondataavailable(VARIANT) override { return E_NOTIMPL; }
    HRESULT WINAPI put_ontransformnode(VARIANT) override { return E_NOTIMPL; }
    HRESULT WINAPI get_nodeName(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_nodeValue(VARIANT *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_nodeType(DOMNodeType *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_childNodes(IXMLDOMNodeList **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_attributes(IXMLDOMNamedNodeMap **) override { return E_NOTIMPL; }
    HRESULT WINAPI hasChildNodes(VARIANT_BOOL *) override { return E_NOTIMPL; }
};

struct WholeDocument2 : WholeDocument<IXMLDOMDocument2> {
    HRESULT WINAPI get_namespaces(IXMLDOMSchemaCollection **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_schemas(VARIANT *) override { return E_NOTIMPL; }
    HRESULT WINAPI getProperty(BSTR, VARIANT *) override { return E_NOTIMPL; }
};

template <typename Interface>
struct WholeOf;
template <>
struct WholeOf<IXMLDOMElement> {
    using Type = WholeElement;
};
template <>
struct WholeOf<IXMLDOMNode> {
    using Type = WholeNode<IXMLDOMNode>;
};
template <>
struct WholeOf<IXMLDOMNodeList> {
    using Type = WholeNodeList;
};
template <>
struct WholeOf<IXMLDOMNamedNodeMap> {
    using Type = WholeNamedNodeMap;
};
template <>
struct WholeOf<IXMLDOMParseError> {
    using Type = WholeParseError;
};
template <>
struct WholeOf<IXMLDOMSchemaCollection2> {
    using Type = WholeSchemaCollection2;
};
template <>
struct WholeOf<IXMLDOMDocument2> {
    using Type = WholeDocument2;
};

// IErrorInfo has methods beside the one that is read.
struct WholeErrorInfo : IErrorInfo {
    HRESULT WINAPI GetGUID(GUID *) override { return E_NOTIMPL; }
    HRESULT WINAPI GetSource(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI GetHelpFile(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI GetHelpContext(DWORD *) override { return E_NOTIMPL; }
};
template <>
struct WholeOf<IErrorInfo> {
    using Type = WholeErrorInfo;
};
