// Error codes of documents that are not well formed.
#include "platform/linux/XmlFailure.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include <libxml/xmlerror.h>

#include "platform/Xml.h"

namespace {

struct Pair {
    int error;
    std::uint32_t code;
};

constexpr Pair Pairs[] = {
    {XML_ERR_DOCUMENT_EMPTY, 0xC00CE558},
    {XML_ERR_DOCUMENT_END, 0xC00CE555},
    {XML_ERR_TAG_NAME_MISMATCH, 0xC00CE56D},
    {XML_ERR_TAG_NOT_FINISHED, 0xC00CE553},
    {XML_ERR_GT_REQUIRED, 0xC00CE55E},
    {XML_ERR_ATTRIBUTE_REDEFINED, 0xC00CE554},
    {XML_ERR_ATTRIBUTE_NOT_FINISHED, 0xC00CE560},
    {XML_ERR_UNDECLARED_ENTITY, 0xC00CE57C},
    {XML_ERR_UNKNOWN_ENCODING, 0xC00CE56E},
    {XML_ERR_UNSUPPORTED_ENCODING, 0xC00CE56E},
    {XML_ERR_COMMENT_NOT_FINISHED, 0xC00CE561},
    {XML_ERR_CDATA_NOT_FINISHED, 0xC00CE564},
    {XML_ERR_PI_NOT_FINISHED, 0xC00CE55D},
    {XML_ERR_MISPLACED_CDATA_END, 0xC00CE55C},
    {XML_ERR_XMLDECL_NOT_FINISHED, 0xC00CE557},
};

} // namespace

HRESULT CodeOfXmlError(int error) {
    if (error == XML_ERR_NO_MEMORY) return E_OUTOFMEMORY;
    auto const found = std::ranges::find(Pairs, error, &Pair::error);
    return found != std::end(Pairs) ? static_cast<HRESULT>(found->code) : E_XML_NOTWF;
}

std::string ReasonOf(char const * message) {
    std::string reason = message != nullptr ? message : "";
    while (!reason.empty() && (reason.back() == '\n' || reason.back() == '\r'))
        reason.pop_back();
    return reason;
}

std::string Sentence(XmlFailure const & failure) {
    std::string place = failure.file;
    if (failure.line > 0) place.append("(").append(std::to_string(failure.line)).append(")");
    return place.empty() ? failure.reason : place + ": " + failure.reason;
}
