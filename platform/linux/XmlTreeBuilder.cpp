// From events to nodes.
#include "platform/linux/XmlTreeBuilder.h"

#include <algorithm>
#include <new>

#include "platform/linux/XmlMemory.h"

namespace {

constexpr std::string_view WhiteSpace = " \t\r\n";

bool IsBlank(std::string_view text) { return text.find_first_not_of(WhiteSpace) == text.npos; }

std::string_view View(xmlChar const * text) { return AsChars(text); }

// The name as written, kept by the dictionary.
std::string_view Qualified(xmlDictPtr names, xmlChar const * prefix, xmlChar const * local) {
    if (prefix == nullptr) return View(local);
    xmlChar const * const name = xmlDictQLookup(names, prefix, local);
    if (name == nullptr) throw std::bad_alloc();
    return View(name);
}

std::string_view DeclarationName(xmlDictPtr names, xmlChar const * prefix) {
    static constexpr std::string_view xmlns = "xmlns";
    if (prefix == nullptr) return xmlns;
    return Qualified(names, AsXml(xmlns.data()), prefix);
}

// The names of the attributes of a start tag in their order.
std::vector<std::string_view> NamesIn(std::string_view tag) {
    std::vector<std::string_view> names;
    tag.remove_prefix(std::min(tag.find_first_of(WhiteSpace), tag.size()));
    for (;;) {
        tag.remove_prefix(std::min(tag.find_first_not_of(WhiteSpace), tag.size()));
        auto const end = tag.find_first_of(" \t\r\n=");
        auto const quote = tag.find_first_of("\"'");
        if (end == tag.npos || quote == tag.npos) return names;
        names.push_back(tag.substr(0, end));
        auto const close = tag.find(tag[quote], quote + 1);
        if (close == tag.npos) return names;
        tag.remove_prefix(close + 1);
    }
}

void OrderAsIn(std::string_view tag, std::span<XmlAttribute> attributes) {
    auto next = attributes.begin();
    for (auto const name : NamesIn(tag)) {
        auto const found = std::find_if(
            next, attributes.end(), [&](auto const & attribute) { return attribute.name == name; });
        if (found == attributes.end()) continue;
        std::rotate(next, found, found + 1);
        ++next;
    }
}

std::optional<bool> SpaceRule(std::span<XmlAttribute const> attributes) {
    for (auto const & [name, value] : attributes)
        if (name == "xml:space") return value == "preserve";
    return std::nullopt;
}

} // namespace

void XmlTreeBuilder::Append(XmlNode * node) {
    if (m_Open.empty()) return m_Tree->SetRoot(node);
    Open & parent = m_Open.back();
    (parent.lastChild != nullptr ? parent.lastChild->next : parent.node->firstChild) = node;
    parent.lastChild = node;
    ++parent.node->childCount;
}

bool XmlTreeBuilder::AddAttributes(xmlDictPtr names, Start const & start, XmlNode & node) {
    auto const declared = static_cast<std::size_t>(start.namespaceCount);
    auto const given = static_cast<std::size_t>(start.attributeCount);
    if (declared + given == 0) return true;
    auto const attributes = m_Tree->NewAttributes(declared + given);
    if (attributes.empty()) return false;
    auto * to = attributes.data();
    for (auto const * from = start.namespaces; to != attributes.data() + declared; from += 2, ++to)
        *to = {DeclarationName(names, from[0]), View(from[1])};
    // Five fields each: name, prefix, namespace, start and end of the value.
    for (auto const * from = start.attributes; to != attributes.data() + attributes.size();
         from += 5, ++to) {
        auto const value = m_Tree->NewText({AsChars(from[3]), AsChars(from[4])});
        if (value.data() == nullptr) return false;
        *to = {Qualified(names, from[1], from[0]), value};
    }
    if (declared != 0 && given != 0) OrderAsIn(start.tag, attributes);
    node.attributes = attributes;
    return true;
}

bool XmlTreeBuilder::StartElement(xmlDictPtr names, Start const & start) {
    if (!FlushText()) return false;
    XmlNode * const node = m_Tree->NewNode(NODE_ELEMENT);
    if (node == nullptr || !AddAttributes(names, start, *node)) return false;
    node->name = Qualified(names, start.prefix, start.name);
    Append(node);
    bool const inherited = !m_Open.empty() && m_Open.back().keepsWhiteSpace;
    m_Open.push_back({node, nullptr, SpaceRule(node->attributes).value_or(inherited)});
    return true;
}

bool XmlTreeBuilder::EndElement() {
    bool const fits = FlushText();
    m_Open.pop_back();
    return fits;
}

bool XmlTreeBuilder::Text(std::string_view text) {
    m_Text.append(text);
    return m_Text.size() <= MaximumXmlText;
}

bool XmlTreeBuilder::FlushText() {
    if (m_Text.empty()) return true;
    bool const drops = IsBlank(m_Text) && !m_Open.back().keepsWhiteSpace;
    auto const text = drops ? std::string_view("") : m_Tree->NewText(m_Text);
    m_Text.clear();
    if (drops) return true;
    XmlNode * const node = text.data() != nullptr ? m_Tree->NewNode(NODE_TEXT) : nullptr;
    if (node == nullptr) return false;
    node->value = text;
    Append(node);
    return true;
}

bool XmlTreeBuilder::Leaf(DOMNodeType type, std::string_view name, std::string_view value) {
    // What stands beside the root is not kept.
    if (m_Open.empty()) return true;
    if (!FlushText()) return false;
    XmlNode * const node = m_Tree->NewNode(type);
    auto const keptName = m_Tree->NewText(name);
    auto const keptValue = m_Tree->NewText(value);
    if (node == nullptr || keptName.data() == nullptr || keptValue.data() == nullptr) return false;
    node->name = keptName;
    node->value = keptValue;
    Append(node);
    return true;
}
