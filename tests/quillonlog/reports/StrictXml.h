// A reader of XML 1.0 that accepts no more than the tests of reports need: declaration, elements,
// attributes in double quotes, text, the five named entities and decimal references.
//
// Whatever is not well-formed throws std::runtime_error with the place.
#pragma once

#include <map>
#include <string>
#include <vector>

struct XmlElement {
    std::string name;
    std::map<std::string, std::string> attributes;
    std::vector<XmlElement> children;
    std::string text;
};

// The root of a document that is well-formed to its last byte.
XmlElement ReadStrictXml(std::string const & document);
