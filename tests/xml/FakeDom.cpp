// Doubles of the components.
#include "tests/xml/FakeDom.h"

#include <algorithm>

namespace {

BSTR NewText(std::wstring const & text) { return SysAllocString(text.c_str()); }

// Says that the failures of some interfaces are explained.
class FakeSupport final : public ISupportErrorInfo {
public:
    FakeSupport(FakeDom & dom, IUnknown & owner) : m_Dom(dom), m_Owner(owner) {}
    virtual ~FakeSupport() = default;

    HRESULT WINAPI QueryInterface(IID const & id, void ** object) override {
        return m_Owner.QueryInterface(id, object);
    }
    ULONG WINAPI AddRef() override { return m_Owner.AddRef(); }
    ULONG WINAPI Release() override { return m_Owner.Release(); }
    HRESULT WINAPI InterfaceSupportsErrorInfo(IID const & id) override {
        m_Dom.m_AskedForErrorsOf.push_back(id);
        auto const & explained = m_Dom.m_Explained;
        return std::ranges::find(explained, id) != explained.end() ? S_OK : S_FALSE;
    }

private:
    FakeDom & m_Dom;
    IUnknown & m_Owner;
};

// A double that knows the script, and answers to ISupportErrorInfo if that says so.
template <typename Main, typename... Answered>
class Fake : public ComDouble<Main, Answered...> {
public:
    explicit Fake(FakeDom & dom) : m_Dom(dom) {}

    HRESULT WINAPI QueryInterface(IID const & id, void ** object) override {
        if (id
                == InterfaceId<
                    IXMLDOMElement> || id == InterfaceId<IXMLDOMDocument2> || id == InterfaceId<IXMLDOMSchemaCollection2> || id == InterfaceId<IXMLDOMNode>) {
            HRESULT const result = m_Dom.Called("QueryInterface");
            if (FAILED(result)) {
                *object = nullptr;
                return result;
            }
        }
        return ComDouble<Main, Answered...>::QueryInterface(id, object);
    }

protected:
    void * QueryOther(IID const & id) override {
        bool const asked = id == InterfaceId<ISupportErrorInfo> && !m_Dom.m_Explained.empty();
        return asked ? static_cast<ISupportErrorInfo *>(&m_Support) : nullptr;
    }

    // The call's answer; when that is no failure, what the call does.
    template <typename Body>
    HRESULT Answer(std::string const & call, Body const & body) {
        HRESULT const result = m_Dom.Called(call);
        if (FAILED(result)) return result;
        body();
        return result;
    }

    FakeDom & m_Dom;

private:
    FakeSupport m_Support{m_Dom, *this};
};

class FakeError : public Fake<IXMLDOMParseError, IDispatch> {
public:
    FakeError(FakeDom & dom, LONG code) : Fake(dom), m_Code(code) {}

    HRESULT WINAPI get_errorCode(LONG * code) override {
        return Answer("errorCode", [&] { *code = m_Code; });
    }
    HRESULT WINAPI get_url(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_reason(BSTR *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_line(LONG *) override { return E_NOTIMPL; }
    HRESULT WINAPI get_linepos(LONG *) override { return E_NOTIMPL; }

private:
    LONG const m_Code;
};

class FakeList : public Fake<IXMLDOMNodeList, IDispatch> {
public:
    FakeList(FakeDom & dom, std::vector<FakeNode> const & nodes) : Fake(dom), m_Nodes(nodes) {}

    HRESULT WINAPI get_item(LONG index, IXMLDOMNode ** node) override {
        return Answer(
            "item", [&] { *node = NewFakeNode(m_Dom, m_Nodes[static_cast<std::size_t>(index)]); });
    }
    HRESULT WINAPI get_length(LONG * length) override {
        return Answer("length", [&] { *length = static_cast<LONG>(m_Nodes.size()); });
    }

private:
    std::vector<FakeNode> const & m_Nodes;
};

// What is asked of every node, with the answers of an attribute.
template <typename Main, typename... Answered>
class FakeNamed : public Fake<Main, Answered...> {
public:
    FakeNamed(FakeDom & dom, std::wstring const & name, DOMNodeType type)
        : Fake<Main, Answered...>(dom), m_Name(name), m_Type(type) {}

    HRESULT WINAPI get_nodeName(BSTR * name) override {
        return this->Answer("nodeName", [&] { *name = NewText(m_Name); });
    }
    HRESULT WINAPI get_nodeValue(VARIANT *) override { return S_FALSE; }
    HRESULT WINAPI get_nodeType(DOMNodeType * type) override {
        return this->Answer("nodeType", [&] { *type = m_Type; });
    }
    HRESULT WINAPI get_childNodes(IXMLDOMNodeList **) override { return E_NOTIMPL; }
    HRESULT WINAPI get_attributes(IXMLDOMNamedNodeMap **) override { return E_NOTIMPL; }
    HRESULT WINAPI hasChildNodes(VARIANT_BOOL *) override { return E_NOTIMPL; }

private:
    std::wstring const & m_Name;
    DOMNodeType const m_Type;
};

class FakeAttributeNode : public FakeNamed<IXMLDOMNode, IDispatch> {
public:
    FakeAttributeNode(FakeDom & dom, FakeAttribute const & attribute)
        : FakeNamed(dom, attribute.name, NODE_ATTRIBUTE), m_Attribute(attribute) {}

    HRESULT WINAPI get_nodeValue(VARIANT * value) override {
        return Answer("nodeValue", [&] {
            value->vt = m_Attribute.type;
            value->bstrVal = NewText(m_Attribute.value);
            // Clearing a value of another type does not free its text.
            if (value->vt != VT_BSTR) m_Own = value->bstrVal;
        });
    }
    ~FakeAttributeNode() override { SysFreeString(m_Own); }

private:
    FakeAttribute const & m_Attribute;
    BSTR m_Own = nullptr;
};

class FakeMap : public Fake<IXMLDOMNamedNodeMap, IDispatch> {
public:
    FakeMap(FakeDom & dom, std::vector<FakeAttribute> const & attributes)
        : Fake(dom), m_Attributes(attributes) {}

    HRESULT WINAPI get_item(LONG index, IXMLDOMNode ** node) override {
        return Answer("attribute item", [&] {
            *node = new FakeAttributeNode(m_Dom, m_Attributes[static_cast<std::size_t>(index)]);
        });
    }
    HRESULT WINAPI get_length(LONG * length) override {
        return Answer(
            "attribute length", [&] { *length = static_cast<LONG>(m_Attributes.size()); });
    }

private:
    std::vector<FakeAttribute> const & m_Attributes;
};

template <typename Main, typename... Answered>
class FakeTreeNode : public FakeNamed<Main, Answered...> {
public:
    FakeTreeNode(FakeDom & dom, FakeNode const & node)
        : FakeNamed<Main, Answered...>(dom, node.name, node.type), m_Node(node) {}

    HRESULT WINAPI get_childNodes(IXMLDOMNodeList ** children) override {
        return this->Answer(
            "childNodes", [&] { *children = NewFakeList(this->m_Dom, m_Node.children); });
    }
    HRESULT WINAPI get_attributes(IXMLDOMNamedNodeMap ** attributes) override {
        return this->Answer(
            "attributes", [&] { *attributes = new FakeMap(this->m_Dom, m_Node.attributes); });
    }
    HRESULT WINAPI hasChildNodes(VARIANT_BOOL * has) override {
        return this->Answer("hasChildNodes", [&] {
            *has = m_Node.children.empty() ? VARIANT_FALSE : VARIANT_TRUE;
            if (m_Node.hasChildren != 42) *has = m_Node.hasChildren;
        });
    }

private:
    FakeNode const & m_Node;
};

class FakeSchemaCache : public Fake<IXMLDOMSchemaCollection2, IXMLDOMSchemaCollection, IDispatch> {
public:
    using Fake::Fake;

    HRESULT WINAPI add(BSTR space, VARIANT location) override {
        return m_Dom.Called("add " + AsciiOf(space) + " " + ShowValue(location));
    }
};

class FakeDocument : public Fake<IXMLDOMDocument2, IXMLDOMDocument, IDispatch> {
public:
    using Fake::Fake;
    ~FakeDocument() override {
        if (m_Schemas != nullptr) m_Schemas->Release();
    }

    HRESULT WINAPI get_documentElement(IXMLDOMElement ** element) override {
        return Answer("documentElement", [&] {
            *element = m_Dom.m_HasRoot ? NewFakeElement(m_Dom, m_Dom.m_Root) : nullptr;
        });
    }
    HRESULT WINAPI load(VARIANT source, VARIANT_BOOL * isSuccessful) override {
        *isSuccessful = VARIANT_FALSE;
        return m_Dom.Called("load " + ShowValue(source));
    }
    HRESULT WINAPI get_parseError(IXMLDOMParseError ** error) override {
        return GiveError("parseError", error, m_Dom.m_LoadCode);
    }
    HRESULT WINAPI put_async(VARIANT_BOOL on) override { return Put("async", on); }
    HRESULT WINAPI put_validateOnParse(VARIANT_BOOL on) override {
        return Put("validateOnParse", on);
    }
    HRESULT WINAPI put_resolveExternals(VARIANT_BOOL on) override {
        return Put("resolveExternals", on);
    }
    HRESULT WINAPI putref_schemas(VARIANT schemas) override {
        return Answer("schemas " + ShowValue(schemas), [&] {
            schemas.pdispVal->AddRef();
            if (m_Schemas != nullptr) m_Schemas->Release();
            m_Schemas = schemas.pdispVal;
        });
    }
    HRESULT WINAPI validate(IXMLDOMParseError ** error) override {
        return GiveError("validate", error, m_Dom.m_ValidateCode);
    }
    HRESULT WINAPI setProperty(BSTR name, VARIANT value) override {
        return m_Dom.Called("setProperty " + AsciiOf(name) + " " + ShowValue(value));
    }

private:
    HRESULT Put(std::string const & name, VARIANT_BOOL on) {
        return m_Dom.Called(name + " " + std::to_string(on));
    }
    HRESULT GiveError(char const * call, IXMLDOMParseError ** error, LONG code) {
        return Answer(
            call, [&] { *error = m_Dom.m_HasNoErrorObject ? nullptr : NewFakeError(m_Dom, code); });
    }

    IDispatch * m_Schemas = nullptr;
};

} // namespace

HRESULT FakeDom::Called(std::string const & call) {
    m_Calls.push_back(call);
    for (auto & [name, failure] : m_Failures)
        if ((call == name || call.starts_with(name + " ")) && --failure.left <= 0)
            return failure.result;
    return S_OK;
}

int FakeDom::Count(std::string const & name) const {
    return static_cast<int>(std::ranges::count(m_Calls, name));
}

std::string AsciiOf(std::wstring const & text) {
    std::string narrow;
    for (wchar_t const each : text)
        narrow += static_cast<char>(each);
    return narrow;
}

std::string ShowValue(VARIANT const & value) {
    if (value.vt == VT_DISPATCH) return "object";
    if (value.vt != VT_BSTR) return "?";
    return value.bstrVal != nullptr ? AsciiOf(value.bstrVal) : "null";
}

IUnknown * NewFakeDocument(FakeDom & dom) { return new FakeDocument(dom); }
IUnknown * NewFakeSchemaCache(FakeDom & dom) { return new FakeSchemaCache(dom); }

IXMLDOMElement * NewFakeElement(FakeDom & dom, FakeNode const & node) {
    return new FakeTreeNode<IXMLDOMElement, IXMLDOMNode, IDispatch>(dom, node);
}

IXMLDOMNode * NewFakeNode(FakeDom & dom, FakeNode const & node) {
    if (node.isElement) return NewFakeElement(dom, node);
    return new FakeTreeNode<IXMLDOMNode, IDispatch>(dom, node);
}

IXMLDOMNodeList * NewFakeList(FakeDom & dom, std::vector<FakeNode> const & nodes) {
    return new FakeList(dom, nodes);
}

IXMLDOMParseError * NewFakeError(FakeDom & dom, LONG code) { return new FakeError(dom, code); }
