// Nodes of a loaded document as components. Each keeps the document's tree and a place in it.
#include <memory>
#include <utility>

#include "platform/linux/ComObject.h"
#include "platform/linux/ComText.h"
#include "platform/linux/XmlObjects.h"
#include "platform/linux/XmlTree.h"

namespace {

using Tree = std::shared_ptr<XmlTree const>;

HRESULT GiveText(BSTR * to, std::string_view text) {
    if (!Clear(to)) return E_POINTER;
    return AsMethod([&] {
        *to = NewText(text);
        return S_OK;
    });
}

HRESULT GiveValue(VARIANT * to, std::string_view text) {
    if (to == nullptr) return E_POINTER;
    VariantInit(to);
    HRESULT const result = GiveText(&to->bstrVal, text);
    if (result == S_OK) to->vt = VT_BSTR;
    return result;
}

// Makes an object for an output.
template <typename Object, typename Interface, typename... Arguments>
HRESULT Give(Interface ** to, Arguments &&... arguments) {
    if (!Clear(to)) return E_POINTER;
    return AsMethod([&] {
        *to = new Object(std::forward<Arguments>(arguments)...);
        return S_OK;
    });
}

IXMLDOMNode * NewNode(Tree const & tree, XmlNode const & node);

class Children : public ComObject<IXMLDOMNodeList, IDispatch> {
public:
    // Null: of a node that cannot have any.
    Children(Tree const & tree, XmlNode const * parent) : m_Tree(tree), m_Parent(parent) {}

    HRESULT get_item(LONG index, IXMLDOMNode ** node) override {
        if (!Clear(node)) return E_POINTER;
        if (index < 0 || static_cast<std::uint32_t>(index) >= Count()) return S_FALSE;
        return AsMethod([&] {
            *node = NewNode(m_Tree, At(static_cast<std::uint32_t>(index)));
            return S_OK;
        });
    }

    HRESULT get_length(LONG * length) override {
        if (length == nullptr) return E_POINTER;
        *length = static_cast<LONG>(Count());
        return S_OK;
    }

private:
    std::uint32_t Count() const { return m_Parent != nullptr ? m_Parent->childCount : 0; }

    // Readers ask for one after the other: go on from the last one that was asked for.
    XmlNode const & At(std::uint32_t index) {
        if (m_Last == nullptr || index < m_LastIndex) {
            m_Last = m_Parent->firstChild;
            m_LastIndex = 0;
        }
        for (; m_LastIndex != index; ++m_LastIndex)
            m_Last = m_Last->next;
        return *m_Last;
    }

    Tree const m_Tree;
    XmlNode const * const m_Parent;
    XmlNode const * m_Last = nullptr;
    std::uint32_t m_LastIndex = 0;
};

class Attribute : public ComObject<IXMLDOMNode, IDispatch> {
public:
    Attribute(Tree const & tree, XmlAttribute const & attribute)
        : m_Tree(tree), m_Attribute(attribute) {}

    HRESULT get_nodeName(BSTR * name) override { return GiveText(name, m_Attribute.name); }
    HRESULT get_nodeValue(VARIANT * value) override { return GiveValue(value, m_Attribute.value); }

    HRESULT get_nodeType(DOMNodeType * type) override {
        if (type == nullptr) return E_POINTER;
        *type = NODE_ATTRIBUTE;
        return S_OK;
    }

    HRESULT get_childNodes(IXMLDOMNodeList ** children) override {
        return Give<Children>(children, m_Tree, nullptr);
    }

    HRESULT get_attributes(IXMLDOMNamedNodeMap ** attributes) override {
        return Clear(attributes) ? S_FALSE : E_POINTER;
    }

    HRESULT hasChildNodes(VARIANT_BOOL * has) override {
        if (has == nullptr) return E_POINTER;
        *has = VARIANT_FALSE;
        return S_FALSE;
    }

private:
    Tree const m_Tree;
    XmlAttribute const & m_Attribute;
};

class Attributes : public ComObject<IXMLDOMNamedNodeMap, IDispatch> {
public:
    Attributes(Tree const & tree, XmlNode const & element)
        : m_Tree(tree), m_Attributes(element.attributes) {}

    HRESULT get_item(LONG index, IXMLDOMNode ** node) override {
        if (!Clear(node)) return E_POINTER;
        if (index < 0 || static_cast<std::size_t>(index) >= m_Attributes.size()) return S_FALSE;
        return Give<Attribute>(node, m_Tree, m_Attributes[static_cast<std::size_t>(index)]);
    }

    HRESULT get_length(LONG * length) override {
        if (length == nullptr) return E_POINTER;
        *length = static_cast<LONG>(m_Attributes.size());
        return S_OK;
    }

private:
    Tree const m_Tree;
    std::span<XmlAttribute const> const m_Attributes;
};

// An element, or, as IXMLDOMNode, what stands in one beside elements.
template <typename Main, typename... Answered>
class Node : public ComObject<Main, Answered...> {
public:
    Node(Tree const & tree, XmlNode const & node) : m_Tree(tree), m_Node(node) {}

    HRESULT get_nodeName(BSTR * name) override { return GiveText(name, Name()); }

    HRESULT get_nodeValue(VARIANT * value) override {
        if (!IsElement()) return GiveValue(value, m_Node.value);
        if (value == nullptr) return E_POINTER;
        VariantInit(value);
        value->vt = VT_NULL;
        return S_FALSE;
    }

    HRESULT get_nodeType(DOMNodeType * type) override {
        if (type == nullptr) return E_POINTER;
        *type = m_Node.type;
        return S_OK;
    }

    HRESULT get_childNodes(IXMLDOMNodeList ** children) override {
        return Give<Children>(children, m_Tree, &m_Node);
    }

    HRESULT get_attributes(IXMLDOMNamedNodeMap ** attributes) override {
        if (IsElement()) return Give<Attributes>(attributes, m_Tree, m_Node);
        return Clear(attributes) ? S_FALSE : E_POINTER;
    }

    HRESULT hasChildNodes(VARIANT_BOOL * has) override {
        if (has == nullptr) return E_POINTER;
        *has = m_Node.childCount != 0 ? VARIANT_TRUE : VARIANT_FALSE;
        return m_Node.childCount != 0 ? S_OK : S_FALSE;
    }

private:
    bool IsElement() const { return m_Node.type == NODE_ELEMENT; }

    std::string_view Name() const {
        switch (m_Node.type) {
        case NODE_TEXT:
            return "#text";
        case NODE_CDATA_SECTION:
            return "#cdata-section";
        case NODE_COMMENT:
            return "#comment";
        default:
            return m_Node.name;
        }
    }

    Tree const m_Tree;
    XmlNode const & m_Node;
};

using Element = Node<IXMLDOMElement, IXMLDOMNode, IDispatch>;
using OtherNode = Node<IXMLDOMNode, IDispatch>;

IXMLDOMNode * NewNode(Tree const & tree, XmlNode const & node) {
    if (node.type == NODE_ELEMENT) return new Element(tree, node);
    return new OtherNode(tree, node);
}

} // namespace

IXMLDOMElement * NewXmlRoot(Tree const & tree) { return new Element(tree, *tree->Root()); }
