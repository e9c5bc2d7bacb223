// Reads strictly, by recursive descent.
#include "quillonlog/reports/StrictXml.h"

#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace {

class Reader {
public:
    explicit Reader(std::string_view text) : m_All(text), m_Rest(text) {}

    XmlElement Document() {
        CheckCharacters();
        Expect("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
        SkipBlanks();
        XmlElement root = Element();
        SkipBlanks();
        if (!m_Rest.empty()) Fail("something follows the root");
        return root;
    }

private:
    [[noreturn]] void Fail(std::string const & why) {
        throw std::runtime_error(
            why + " at byte " + std::to_string(m_All.size() - m_Rest.size()) + ": "
            + std::string(m_Rest.substr(0, 60)));
    }

    // Char of XML 1.0 in UTF-8, without surrogates and overlong forms.
    void CheckCharacters() {
        std::string_view text = m_All;
        while (!text.empty()) {
            auto const lead = static_cast<std::uint8_t>(text.front());
            std::size_t const size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
            if (text.size() < size) Fail("a character is cut");
            std::uint32_t point = size == 1 ? lead : lead & (0x7Fu >> size);
            for (std::size_t i = 1; i < size; ++i)
                point = point << 6 | (static_cast<std::uint8_t>(text[i]) & 0x3Fu);
            bool const isChar =
                point == 9 || point == 10 || point == 13 || (point >= 0x20 && point <= 0xD7FF)
                || (point >= 0xE000 && point <= 0xFFFD) || (point >= 0x10000 && point <= 0x10FFFF);
            constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
            if (!isChar || point < least[size]) Fail("no character of XML");
            text.remove_prefix(size);
        }
    }

    bool Take(std::string_view wanted) {
        if (!m_Rest.starts_with(wanted)) return false;
        m_Rest.remove_prefix(wanted.size());
        return true;
    }
    void Expect(std::string_view wanted) {
        if (!Take(wanted)) Fail("expected " + std::string(wanted));
    }
    void SkipBlanks() {
        while (!m_Rest.empty() && std::string_view(" \n\t\r").find(m_Rest.front()) != m_Rest.npos)
            m_Rest.remove_prefix(1);
    }

    std::string Name() {
        std::size_t size = 0;
        while (size < m_Rest.size() && m_Rest[size] >= 'a' && m_Rest[size] <= 'z')
            ++size;
        if (size == 0) Fail("expected a name");
        std::string name(m_Rest.substr(0, size));
        m_Rest.remove_prefix(size);
        return name;
    }

    // Up to a mark that is left; references are resolved.
    std::string Text(char end) {
        std::string text;
        while (!m_Rest.empty() && m_Rest.front() != end) {
            if (m_Rest.front() == '<') Fail("a bare <");
            if (m_Rest.starts_with("]]>")) Fail("a bare ]]>");
            if (m_Rest.front() == '&') {
                text += Reference();
                continue;
            }
            text += m_Rest.front();
            m_Rest.remove_prefix(1);
        }
        if (m_Rest.empty()) Fail("a text does not end");
        return text;
    }

    char Reference() {
        for (auto const & [name, mark] :
             {std::pair("&amp;", '&'),
              {"&lt;", '<'},
              {"&gt;", '>'},
              {"&quot;", '"'},
              {"&#39;", '\''},
              {"&#10;", '\n'},
              {"&#9;", '\t'}})
            if (Take(name)) return mark;
        Fail("an unknown reference");
    }

    XmlElement Element() {
        Expect("<");
        XmlElement element{Name(), {}, {}, {}};
        for (SkipBlanks(); !m_Rest.empty() && m_Rest.front() != '/' && m_Rest.front() != '>';
             SkipBlanks()) {
            std::string const name = Name();
            Expect("=\"");
            if (!element.attributes.emplace(name, Text('"')).second) Fail("an attribute twice");
            Expect("\"");
        }
        if (Take("/>")) return element;
        Expect(">");
        for (element.text = Text('<'); !m_Rest.starts_with("</"); element.text += Text('<'))
            element.children.push_back(Element());
        Expect("</");
        Expect(element.name);
        Expect(">");
        return element;
    }

    std::string_view m_All;
    std::string_view m_Rest;
};

} // namespace

XmlElement ReadStrictXml(std::string const & document) { return Reader(document).Document(); }
