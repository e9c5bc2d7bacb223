// From a file to a tree, or to the reason why it was refused.
#pragma once

#include <memory>
#include <string>

#include "platform/linux/XmlFailure.h"

class XmlSchema;
class XmlTree;

struct XmlLoad {
    // Null when the file was refused; `failure` says why.
    std::shared_ptr<XmlTree const> tree;
    XmlFailure failure;
};

// Elements nest this deep at most.
inline constexpr int MaximumXmlDepth = 256;

// Loads the file of this system, and validates it on the way if there is a schema. Throws
// std::bad_alloc.
XmlLoad LoadXml(std::string const & path, std::shared_ptr<XmlSchema const> const & schema);

// What is wrong with a loaded tree.
XmlFailure ValidateTree(XmlTree const & tree, std::shared_ptr<XmlSchema const> const & schema);
