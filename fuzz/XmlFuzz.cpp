// Any bytes as a document, and as a schema: loading, validating and flattening must end, without a
// leak, and with one of the results that are told of.
//
// The first byte says what the rest is: an even one a document for a schema of ours, an odd one a
// schema.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "siblings/Keelbase.h"
#include "xml/CComSessionMgr.h"
#include "xml/CDOMDoc.h"

namespace {

constexpr std::string_view Schema =
    R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" targetNamespace="urn:f"
  xmlns="urn:f" elementFormDefault="qualified">
  <xs:element name="suite"><xs:complexType mixed="true">
    <xs:choice minOccurs="0" maxOccurs="unbounded">
      <xs:element ref="suite"/>
      <xs:element name="test"><xs:complexType>
        <xs:attribute name="limit" type="xs:int"/>
        <xs:attribute name="id" type="xs:NCName" use="required"/>
        <xs:anyAttribute namespace="##other" processContents="lax"/>
      </xs:complexType></xs:element>
      <xs:element name="date" type="xs:dateTime" nillable="true"/>
      <xs:element name="name" type="xs:QName"/>
      <xs:any namespace="##other" processContents="lax"/>
    </xs:choice>
    <xs:attribute name="label" type="xs:string"/>
    <xs:attribute name="kind" default="a"><xs:simpleType><xs:list><xs:simpleType>
      <xs:restriction base="xs:string"><xs:pattern value="[a-c]{1,5}(x|y)*"/></xs:restriction>
    </xs:simpleType></xs:list></xs:simpleType></xs:attribute>
  </xs:complexType>
  <xs:key name="k"><xs:selector xpath="test"/><xs:field xpath="@id"/></xs:key></xs:element>
</xs:schema>)";

constexpr std::string_view Document = R"(<suite xmlns="urn:f" label="l"><test id="a"/></suite>)";

// A file that lives in memory.
class MemoryFile {
public:
    MemoryFile() : m_Descriptor(memfd_create("fuzz", MFD_CLOEXEC)) {}

    void Put(std::string_view bytes) const {
        if (ftruncate(m_Descriptor, 0) != 0
            || pwrite(m_Descriptor, bytes.data(), bytes.size(), 0)
                   != static_cast<ssize_t>(bytes.size()))
            std::abort();
    }
    std::wstring Name() const { return L"/proc/self/fd/" + std::to_wstring(m_Descriptor); }

private:
    int const m_Descriptor;
};

void Flatten(CDOMDoc & document, std::wstring const & file) {
    if (!document.ValidateDoc(file.c_str())) return;
    try {
        document.ParseDoc();
    } catch (_com_error const & failure) {
        // Text beside elements.
        if (failure.Error() != E_POINTER) std::abort();
    }
    for (auto const & [level, text] : document.GetNodes())
        if (level < 1 || level > 256 || text.empty()) std::abort();
}

void TryDocument(std::string_view bytes) {
    static MemoryFile const schema;
    static bool const isPut = (schema.Put(Schema), true);
    static MemoryFile const file;
    if (!isPut) return;
    file.Put(bytes);
    CDOMDoc document(schema.Name(), L"urn:f");
    Flatten(document, file.Name());
    // The tree is told to the validator as the file was.
    document.CreateDocument(schema.Name(), L"urn:f", false);
    bool const isValid = document.ValidateDoc(file.Name().c_str());
    document.CreateDocument(schema.Name(), L"urn:f", true);
    if (isValid != document.ValidateDoc(file.Name().c_str())) std::abort();
}

void TrySchema(std::string_view bytes) {
    static MemoryFile const schema;
    static MemoryFile const file;
    schema.Put(bytes);
    file.Put(Document);
    try {
        CDOMDoc document(schema.Name(), L"urn:f");
        Flatten(document, file.Name());
    } catch (CQNDOMDocException const &) {
    }
}

} // namespace

// The library has the classes that are compiled anew here as well.
extern "C" char const * __asan_default_options() { return "detect_odr_violation=0"; }

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size) {
    static CComSessionMgr const session;
    if (size == 0) return 0;
    std::string_view const bytes(reinterpret_cast<char const *>(data) + 1, size - 1);
    if (*data % 2 == 0)
        TryDocument(bytes);
    else
        TrySchema(bytes);
    return 0;
}
