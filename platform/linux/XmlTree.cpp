// Storage of a loaded document: blocks that double in size up to a megabyte.
#include "platform/linux/XmlTree.h"

#include <algorithm>
#include <new>

namespace {

constexpr std::size_t FirstBlock = std::size_t{4} << 10;
constexpr std::size_t LargestBlock = std::size_t{1} << 20;

} // namespace

XmlTree::XmlTree(xmlDictPtr names) : m_Names(names) {
    if (m_Names != nullptr) xmlDictReference(m_Names);
}

XmlTree::~XmlTree() {
    if (m_Names != nullptr) xmlDictFree(m_Names);
}

bool XmlTree::AddBlock(std::size_t needed) {
    // The end of a block is aligned: places are reckoned from there.
    constexpr std::size_t alignment = alignof(std::max_align_t);
    std::size_t const whole = (needed + alignment - 1) / alignment * alignment;
    std::size_t const size = std::max(whole, std::clamp(m_Size, FirstBlock, LargestBlock));
    if (size > MaximumSize - m_Size) return false;
    m_Blocks.push_back(std::make_unique_for_overwrite<std::byte[]>(size));
    m_Free = m_Blocks.back().get();
    m_Left = size;
    m_Size += size;
    return true;
}

void * XmlTree::Take(std::size_t size, std::size_t alignment) {
    std::size_t const skipped = m_Left % alignment;
    if (m_Left < skipped + size) {
        if (!AddBlock(size + alignment)) return nullptr;
        return Take(size, alignment);
    }
    m_Free += skipped;
    void * const taken = m_Free;
    m_Free += size;
    m_Left -= skipped + size;
    return taken;
}

XmlNode * XmlTree::NewNode(DOMNodeType type) {
    void * const storage = Take(sizeof(XmlNode), alignof(XmlNode));
    if (storage == nullptr) return nullptr;
    XmlNode * const node = new (storage) XmlNode;
    node->type = type;
    return node;
}

std::span<XmlAttribute> XmlTree::NewAttributes(std::size_t count) {
    void * const storage = Take(count * sizeof(XmlAttribute), alignof(XmlAttribute));
    if (storage == nullptr) return {};
    auto * const first = static_cast<XmlAttribute *>(storage);
    std::uninitialized_value_construct_n(first, count);
    return {first, count};
}

std::string_view XmlTree::NewText(std::string_view text) {
    if (text.empty()) return "";
    char * const copy = static_cast<char *>(Take(text.size(), 1));
    if (copy == nullptr) return {};
    std::ranges::copy(text, copy);
    return {copy, text.size()};
}
