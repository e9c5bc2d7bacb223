// Makes a tree of a parser's events.
//
// Text of nothing but white space is dropped unless xml:space keeps it; the attributes of an
// element are brought into the order of the document, declarations among them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <libxml/parser.h>

#include "platform/linux/XmlTree.h"

// Each operation throws std::bad_alloc, and answers false when the document has grown too large.
class XmlTreeBuilder {
public:
    explicit XmlTreeBuilder(xmlDictPtr names) : m_Tree(std::make_shared<XmlTree>(names)) {}

    // The events of the parser, with its arguments. `tag` is the start tag as it stands in the
    // file, from its "<" to behind the last attribute.
    struct Start {
        xmlChar const * name;
        xmlChar const * prefix;
        int namespaceCount;
        xmlChar const ** namespaces;
        int attributeCount;
        xmlChar const ** attributes;
        std::string_view tag;
    };
    bool StartElement(xmlDictPtr names, Start const & start);
    bool EndElement();
    bool Text(std::string_view text);
    bool Leaf(DOMNodeType type, std::string_view name, std::string_view value);

    // How many elements are open.
    std::size_t Depth() const { return m_Open.size(); }

    // The tree, once its root has ended.
    std::shared_ptr<XmlTree const> Tree() const { return m_Tree; }

private:
    struct Open {
        XmlNode * node;
        XmlNode * lastChild;
        bool keepsWhiteSpace;
    };

    bool FlushText();
    bool AddAttributes(xmlDictPtr names, Start const & start, XmlNode & node);
    void Append(XmlNode * node);

    std::shared_ptr<XmlTree> m_Tree;
    std::vector<Open> m_Open;
    std::string m_Text; // what has come of the text that is not yet a node
};
