// The collection of findings and their one-line form.
#include "Finding.h"

#include <utility>

#include "Text.h"

namespace usb {

std::string ToText(Finding const & finding) {
    return Join(
        finding.rule, " at offset ", Hex(finding.offset, 4), " is ",
        Hex(finding.value, 2 * finding.width), ": ", finding.text);
}

void Findings::Shall(Descriptor const & descriptor, Field const & field, std::string text) {
    Add(Severity::Shall, descriptor, field, std::move(text));
}

void Findings::Should(Descriptor const & descriptor, Field const & field, std::string text) {
    Add(Severity::Should, descriptor, field, std::move(text));
}

void Findings::Add(
    Severity severity, Descriptor const & descriptor, Field const & field, std::string text) {
    char const * const standard = field.standard != nullptr ? field.standard : m_Standard;
    m_List.push_back(
        {severity, Join(standard, " ", field.rule), descriptor.offset + field.at,
         descriptor.Get(field), field.width, std::move(text)});
}

} // namespace usb
