// A loaded document: its nodes and texts in storage of its own, which only grows.
//
// Built by one thread; afterwards it does not change and any thread may read it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

// <libxml/dict.h> leaves it to its reader.
#include <libxml/xmlstring.h>

#include <libxml/dict.h>

#include "platform/Xml.h"

// The longest text of one element or node, in bytes.
inline constexpr std::size_t MaximumXmlText = std::size_t{64} << 20;

// Name and value, UTF-8. A namespace declaration is one too.
struct XmlAttribute {
    std::string_view name;
    std::string_view value;
};

struct XmlNode {
    // An element: the name as written. A processing instruction: its target.
    std::string_view name;
    std::string_view value;
    std::span<XmlAttribute const> attributes;
    XmlNode * firstChild = nullptr;
    XmlNode * next = nullptr;
    std::uint32_t childCount = 0;
    DOMNodeType type = NODE_INVALID;
};

class XmlTree {
public:
    // What all nodes and texts of a document may take, in bytes.
    static constexpr std::size_t MaximumSize = std::size_t{512} << 20;

    // Keeps the names of the parser's dictionary alive.
    explicit XmlTree(xmlDictPtr names);
    XmlTree(XmlTree const &) = delete;
    XmlTree & operator=(XmlTree const &) = delete;
    ~XmlTree();

    // Null when the document grows beyond MaximumSize. Throw std::bad_alloc.
    XmlNode * NewNode(DOMNodeType type);
    std::span<XmlAttribute> NewAttributes(std::size_t count);
    // A copy; its data are null when the document grows beyond MaximumSize.
    std::string_view NewText(std::string_view text);

    // Null: there is none yet.
    XmlNode const * Root() const { return m_Root; }
    void SetRoot(XmlNode * root) { m_Root = root; }

private:
    void * Take(std::size_t size, std::size_t alignment);
    bool AddBlock(std::size_t needed);

    std::vector<std::unique_ptr<std::byte[]>> m_Blocks;
    std::byte * m_Free = nullptr;
    std::size_t m_Left = 0;
    std::size_t m_Size = 0;
    XmlNode * m_Root = nullptr;
    xmlDictPtr m_Names;
};
