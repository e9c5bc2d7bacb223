// A document, its schema and its files, for the contract of the components of XML.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/ComPtr.h"
#include "platform/Xml.h"
#include "tests/platform/Host.h"
#include "tests/support/TextFolder.h"

// A text as an argument, for a full expression.
class Bstr {
public:
    explicit Bstr(std::wstring const & text) : m_Text(SysAllocString(text.c_str())) {}
    Bstr(Bstr const &) = delete;
    Bstr & operator=(Bstr const &) = delete;
    ~Bstr() { SysFreeString(m_Text); }
    operator BSTR() const { return m_Text; }
    VARIANT AsVariant() const {
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_BSTR;
        value.bstrVal = m_Text;
        return value;
    }

private:
    BSTR const m_Text;
};

// Takes a received text over.
inline std::wstring Take(BSTR text) {
    std::wstring const copy = text != nullptr ? std::wstring(text, SysStringLen(text)) : L"";
    SysFreeString(text);
    return copy;
}

inline VARIANT AsVariant(IDispatch * object) {
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_DISPATCH;
    value.pdispVal = object;
    return value;
}

template <typename Interface>
ComPtr<Interface> MakeObject(CLSID const & clsid) {
    ComPtr<Interface> object;
    EXPECT_EQ(
        CoCreateInstance(
            clsid, nullptr, CLSCTX_ALL, InterfaceId<Interface>, object.ReceiveUntyped()),
        S_OK);
    return object;
}

struct XmlError {
    HRESULT code;
    std::wstring url;
    std::wstring reason;
    LONG line;
    LONG column;
};

inline XmlError ErrorFrom(ComPtr<IXMLDOMParseError> const & error) {
    LONG code = 0;
    LONG line = 0;
    LONG column = 0;
    BSTR url = nullptr;
    BSTR reason = nullptr;
    error->get_errorCode(&code);
    error->get_url(&url);
    error->get_reason(&reason);
    error->get_line(&line);
    error->get_linepos(&column);
    return {static_cast<HRESULT>(code), Take(url), Take(reason), line, column};
}

inline std::wstring NameOf(ComPtr<IXMLDOMNode> const & node) {
    BSTR name = nullptr;
    EXPECT_EQ(node->get_nodeName(&name), S_OK);
    return Take(name);
}

inline std::wstring TextValueOf(ComPtr<IXMLDOMNode> const & node) {
    VARIANT value;
    VariantInit(&value);
    EXPECT_EQ(node->get_nodeValue(&value), S_OK);
    EXPECT_EQ(value.vt, VT_BSTR);
    return Take(value.bstrVal);
}

inline DOMNodeType TypeOf(ComPtr<IXMLDOMNode> const & node) {
    DOMNodeType type = NODE_INVALID;
    EXPECT_EQ(node->get_nodeType(&type), S_OK);
    return type;
}

template <typename List>
LONG LengthOf(ComPtr<List> const & list) {
    LONG length = -1;
    EXPECT_EQ(list->get_length(&length), S_OK);
    return length;
}

template <typename List>
ComPtr<IXMLDOMNode> ItemOf(ComPtr<List> const & list, LONG index) {
    ComPtr<IXMLDOMNode> node;
    EXPECT_EQ(list->get_item(index, node.Receive()), S_OK);
    return node;
}

class XmlFixture : public testing::Test {
protected:
    XmlFixture() {
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        m_Document = MakeObject<IXMLDOMDocument2>(CLSID_DOMDocument60);
        EXPECT_EQ(m_Document->put_async(VARIANT_FALSE), S_OK);
    }
    ~XmlFixture() override {
        m_Document.Reset();
        m_Schemas.Reset();
        CoUninitialize();
    }

    HRESULT LoadFile(std::wstring const & name) {
        return m_Document->load(Bstr(name).AsVariant(), &m_Successful);
    }

    HRESULT Load(std::string_view text) { return LoadFile(m_Folder.Write("document.xml", text)); }

    XmlError ParseError() {
        ComPtr<IXMLDOMParseError> error;
        EXPECT_EQ(m_Document->get_parseError(error.Receive()), S_OK);
        return ErrorFrom(error);
    }

    // What validate answers, with its error.
    HRESULT Validate(XmlError & error) {
        ComPtr<IXMLDOMParseError> object;
        HRESULT const result = m_Document->validate(object.Receive());
        if (object) error = ErrorFrom(object);
        return result;
    }

    // A fresh collection with the schema of a file, bound to the document.
    HRESULT AddSchema(std::wstring const & file, std::wstring const & space = L"") {
        m_Schemas = MakeObject<IXMLDOMSchemaCollection2>(CLSID_XMLSchemaCache60);
        HRESULT const result = m_Schemas->add(Bstr(space), Bstr(file).AsVariant());
        if (SUCCEEDED(result)) {
            EXPECT_EQ(m_Document->putref_schemas(AsVariant(m_Schemas.Get())), S_OK);
        }
        return result;
    }

    HRESULT AddSchemaText(std::string_view text, std::wstring const & space = L"") {
        return AddSchema(m_Folder.Write("schema.xsd", text), space);
    }

    ComPtr<IXMLDOMElement> Root() {
        ComPtr<IXMLDOMElement> root;
        EXPECT_EQ(m_Document->get_documentElement(root.Receive()), S_OK);
        return root;
    }

    ComPtr<IXMLDOMNodeList> ChildrenOf(ComPtr<IXMLDOMElement> const & element) {
        ComPtr<IXMLDOMNodeList> children;
        EXPECT_EQ(element->get_childNodes(children.Receive()), S_OK);
        return children;
    }

    ComPtr<IXMLDOMNamedNodeMap> AttributesOf(ComPtr<IXMLDOMElement> const & element) {
        ComPtr<IXMLDOMNamedNodeMap> attributes;
        EXPECT_EQ(element->get_attributes(attributes.Receive()), S_OK);
        return attributes;
    }

    // Names of the nodes in a list, in order.
    template <typename List>
    std::vector<std::wstring> NamesIn(ComPtr<List> const & list) {
        std::vector<std::wstring> names;
        for (LONG i = 0; i < LengthOf(list); ++i)
            names.push_back(NameOf(ItemOf(list, i)));
        return names;
    }

    TextFolder m_Folder;
    ComPtr<IXMLDOMDocument2> m_Document;
    ComPtr<IXMLDOMSchemaCollection2> m_Schemas;
    VARIANT_BOOL m_Successful = 42;
};
