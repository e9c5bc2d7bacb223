// Walking the elements, and the small readers that the walk is made of.
#include <optional>
#include <string_view>
#include <utility>

#include "output/COutputBuffer.h"
#include "output/CUIUpdate.h"
#include "siblings/Keelbase.h"
#include "xml/CDOMDoc.h"
#include "xml/ComArguments.h"
#include "xml/DOMFailure.h"

namespace {

constexpr char NoAttributeList[] = "ERROR:  Unable to get attribute list.";
constexpr char NoAttributeListLength[] = "ERROR:  Unable to get attribute list length.";
constexpr char NoNode[] = "ERROR:  Unable to get node from node list.";
constexpr char NoNodeValue[] = "ERROR:  Unable to get node value.";
constexpr char NoNodeName[] = "ERROR:  Couldn't get node name.\r\n";
constexpr char NoChildList[] = "ERROR:  Couldn't get child node list.";
constexpr char NoChildListLength[] = "ERROR:  Couldn't get child node list length.";
constexpr char NoNodeType[] = "ERROR:  Unable to get node type from element.";

constexpr unsigned long FailureColor = 0x7F007F;

ComPtr<IXMLDOMNamedNodeMap> AttributesOf(ComPtr<IXMLDOMElement> const & element) {
    ComPtr<IXMLDOMNamedNodeMap> list;
    CheckRead(element->get_attributes(list.Receive()), NoAttributeList);
    return list;
}

LONG LengthOf(ComPtr<IXMLDOMNamedNodeMap> const & list) {
    LONG length = 0;
    CheckRead(list->get_length(&length), NoAttributeListLength);
    return length;
}

template <typename List>
ComPtr<IXMLDOMNode> ItemOf(ComPtr<List> const & list, LONG index) {
    ComPtr<IXMLDOMNode> node;
    CheckRead(list->get_item(index, node.Receive()), NoNode);
    return node;
}

void ReadValue(ComPtr<IXMLDOMNode> const & node, Value & value) {
    CheckRead(node->get_nodeValue(value.Receive()), NoNodeValue);
}

// Deliberate: a bit is tested, not the whole type.
// Pinned by CDOMDocReadersTest.AnyTypeWithTheBitOfATextIsAText.
bool IsText(Value const & value) { return (value.Get().vt & VT_BSTR) != 0; }

std::wstring_view TextOf(Value const & value) { return ViewOf(value.Get().bstrVal); }

std::wstring_view LocalName(ReceivedText const & name) {
    auto const view = name.View();
    auto const colon = view.find(L':');
    return colon != view.npos ? view.substr(colon + 1) : view;
}

void ReadName(ComPtr<IXMLDOMNode> const & node, ReceivedText & name) {
    CheckRead(node->get_nodeName(name.Receive()), NoNodeName);
}

// Reads all attributes in their order, and tells of those that have a text.
template <typename Reader>
void ReadAttributes(ComPtr<IXMLDOMElement> const & element, Reader const & reader) {
    auto const list = AttributesOf(element);
    LONG const length = LengthOf(list);
    for (LONG i = 0; i < length; ++i) {
        auto const node = ItemOf(list, i);
        ReceivedText name;
        ReadName(node, name);
        Value value;
        ReadValue(node, value);
        if (IsText(value)) reader(LocalName(name), TextOf(value));
    }
}

std::wstring OrUnknown(std::wstring text) { return text.empty() ? L"<<Unknown element>>" : text; }

} // namespace

bool CDOMDoc::ParseDoc() {
    m_Level = 0;
    try {
        ParseElement(GetRootElement());
        return true;
    } catch (CQNDOMDocException const & failure) {
        CBasicFormattedString<char> const text("%s\n", failure.what());
        if (COutputBuffer * const buffer = CUIUpdate::GetUIUpdate()->GetOutputBuffer())
            buffer->AddVerbose(text, 0, FailureColor);
        return false;
    }
}

void CDOMDoc::ParseElement(ComPtr<IXMLDOMElement> element) {
    ++m_Level;
    // Deliberate: what is no element arrives here empty and ends the walk.
    // Pinned by CDOMDocWalkTest.TextContentIsAnEmptyReference.
    if (IsNodeComment(QueryFor<IXMLDOMNode>(element))) {
        --m_Level;
        return;
    }
    m_Nodes->emplace_back(m_Level, MakeDisplayString(element));
    if (HasChildren(element)) {
        ComPtr<IXMLDOMNodeList> children;
        long length = 0;
        GetChildList(element, children.Receive(), &length, nullptr);
        for (long i = 0; i < length; ++i)
            ParseElement(QueryFor<IXMLDOMElement>(GetChildNode(i, children)));
    }
    --m_Level;
}

bool CDOMDoc::HasChildren(ComPtr<IXMLDOMElement> element) {
    VARIANT_BOOL has = VARIANT_FALSE;
    CheckCall<IXMLDOMNode>(element->hasChildNodes(&has), element);
    // Deliberate: any other value is no. Pinned by CDOMDocReadersTest.ChildrenAreThereForTrueAlone.
    return has == VARIANT_TRUE;
}

bool CDOMDoc::IsNodeComment(ComPtr<IXMLDOMNode> node) { return GetNodeType(node) == NODE_COMMENT; }

tagDOMNodeType CDOMDoc::GetNodeType(ComPtr<IXMLDOMNode> node) {
    DOMNodeType type = NODE_INVALID;
    CheckRead(node->get_nodeType(&type), NoNodeType);
    return type;
}

std::wstring CDOMDoc::GetNodeName(ComPtr<IXMLDOMNode> node) {
    ReceivedText name;
    ReadName(node, name);
    return std::wstring(LocalName(name));
}

std::wstring CDOMDoc::GetElementName(ComPtr<IXMLDOMElement> element) {
    return GetNodeName(QueryFor<IXMLDOMNode>(element));
}

bool CDOMDoc::ConfirmElementName(ComPtr<IXMLDOMElement> element, wchar_t const * name) {
    return GetElementName(element) == name;
}

void CDOMDoc::GetAttributeList(ComPtr<IXMLDOMElement> element, IXMLDOMNamedNodeMap ** list) {
    CheckRead(element->get_attributes(list), NoAttributeList);
}

std::wstring CDOMDoc::GetAttribute(ComPtr<IXMLDOMElement> element, wchar_t const * name) {
    auto const list = AttributesOf(element);
    LONG const length = LengthOf(list);
    for (LONG i = 0; i < length; ++i) {
        auto const node = ItemOf(list, i);
        ReceivedText itsName;
        ReadName(node, itsName);
        if (LocalName(itsName) != name) continue;
        Value value;
        ReadValue(node, value);
        if (IsText(value)) return std::wstring(TextOf(value));
    }
    return {};
}

CDOMDoc::Attributes CDOMDoc::GetAllAttributes(ComPtr<IXMLDOMElement> element) {
    Attributes attributes;
    ReadAttributes(element, [&](std::wstring_view name, std::wstring_view value) {
        attributes.insert_or_assign(std::wstring(name), std::wstring(value));
    });
    return attributes;
}

void CDOMDoc::GetChildList(
    ComPtr<IXMLDOMElement> element, IXMLDOMNodeList ** list, long * length, long * count) {
    CheckRead(element->get_childNodes(list), NoChildList);
    ComPtr<IXMLDOMNodeList> const children(*list);
    LONG all = 0;
    CheckRead(children->get_length(&all), NoChildListLength);
    *length = all;
    if (count == nullptr) return;
    long others = 0;
    for (long i = 0; i < *length; ++i)
        if (!IsNodeComment(GetChildNode(i, children))) ++others;
    *count = others;
}

ComPtr<IXMLDOMNode> CDOMDoc::GetChildNode(long index, ComPtr<IXMLDOMNodeList> list) {
    return ItemOf(list, static_cast<LONG>(index));
}

// Deliberate: the key decides, not its value.
// Pinned by CDOMDocReadersTest.EmptyLabelHidesTheName.
std::wstring
CDOMDoc::MakeDisplayString(std::wstring const & elementName, Attributes & attributes) const {
    auto found = attributes.find(L"label");
    if (found == attributes.end()) found = attributes.find(L"name");
    return OrUnknown(found != attributes.end() ? found->second : elementName);
}

// Every attribute is read, although two alone are shown: whoever cannot be read ends the walk.
std::wstring CDOMDoc::MakeDisplayString(ComPtr<IXMLDOMElement> element) {
    std::wstring elementName = GetElementName(element);
    std::optional<std::wstring> label;
    std::optional<std::wstring> name;
    ReadAttributes(element, [&](std::wstring_view key, std::wstring_view value) {
        if (key == L"label") label = value;
        if (key == L"name") name = value;
    });
    if (label) return OrUnknown(*std::move(label));
    return OrUnknown(name ? *std::move(name) : std::move(elementName));
}
