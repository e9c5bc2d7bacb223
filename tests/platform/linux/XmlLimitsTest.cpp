// Documents and schemas of extreme size: each is read or refused, in bounded time and memory, and
// the process lives on.
//
// Each runs in a process of its own, with so much memory beyond what that has already. A sanitizer
// takes memory as it likes: there, time alone is limited.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/XmlFile.h"
#include "tests/platform/Wrap.h"
#include "tests/platform/XmlFixture.h"

MORVEX_WRAP(int, fstat, (int descriptor, struct stat * status), (descriptor, status))

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool LimitsMemory = false;
#else
constexpr bool LimitsMemory = true;
#endif

constexpr std::size_t Megabyte = std::size_t{1} << 20;
constexpr rlim_t Seconds = 60;

constexpr HRESULT FILE_TOO_LARGE = static_cast<HRESULT>(0x800700DF);
constexpr HRESULT ATTRIBUTE_TOO_LONG = static_cast<HRESULT>(0xC00CE560);

// How a process has ended that did so by itself.
enum End { Accepted, TooLarge, OutOfMemory, OtherError };

End EndOf(HRESULT code) {
    if (code == S_OK) return Accepted;
    if (code == E_OUTOFMEMORY) return OutOfMemory;
    return code == FILE_TOO_LARGE ? TooLarge : OtherError;
}

// In bytes.
std::size_t MemoryOfProcess() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

void Limit(std::size_t memory) {
    rlimit const time{Seconds, Seconds};
    setrlimit(RLIMIT_CPU, &time);
    rlimit const noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    rlimit const space{MemoryOfProcess() + memory, RLIM_INFINITY};
    if (LimitsMemory) setrlimit(RLIMIT_AS, &space);
}

class XmlLimitsTest : public XmlFixture {
protected:
    // Without a value: killed.
    static std::optional<End> InChild(std::size_t memory, std::function<HRESULT()> const & body) {
        pid_t const child = fork();
        if (child == 0) {
            Limit(memory);
            _exit(EndOf(body()));
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        if (!WIFEXITED(status)) return std::nullopt;
        return static_cast<End>(WEXITSTATUS(status));
    }

    std::optional<End> EndOfLoading(std::wstring const & file, std::size_t memory) {
        return InChild(memory, [&] { return LoadAndValidate(file); });
    }

    // S_OK, the code of the error, or that of the failed call. Without a schema all is valid.
    HRESULT LoadAndValidate(std::wstring const & file) {
        HRESULT const loaded = LoadFile(file);
        if (loaded == S_FALSE) {
            // Lack of memory is a failed call.
            HRESULT const code = ParseErrorCode();
            return code == E_OUTOFMEMORY ? E_FAIL : code;
        }
        if (loaded != S_OK) return loaded;
        ComPtr<IXMLDOMParseError> error;
        HRESULT const validated = m_Document->validate(error.Receive());
        if (validated != S_FALSE) return validated;
        HRESULT const code = CodeOf(error);
        return code == E_XML_NODTD ? S_OK : code;
    }

    static HRESULT CodeOf(ComPtr<IXMLDOMParseError> const & error) {
        LONG code = 0;
        error->get_errorCode(&code);
        return static_cast<HRESULT>(code);
    }

    HRESULT ParseErrorCode() {
        ComPtr<IXMLDOMParseError> error;
        m_Document->get_parseError(error.Receive());
        return CodeOf(error);
    }

    // A file of a head, a piece so many times, and a tail.
    std::wstring Write(
        char const * name, char const * head, std::string_view piece, std::size_t count,
        char const * tail) {
        std::string block;
        while (block.size() < Megabyte)
            block += piece;
        std::size_t const inBlock = block.size() / piece.size();
        std::ofstream file(m_Folder.Path() / name, std::ios::binary);
        file << head;
        for (; count >= inBlock; count -= inBlock)
            file << block;
        file << std::string_view(block).substr(0, count * piece.size()) << tail;
        return m_Folder.Name(name);
    }

    std::wstring Sparse(char const * name, std::int64_t size) {
        auto const file = m_Folder.Write(name, "<a/>");
        EXPECT_EQ(truncate((m_Folder.Path() / name).c_str(), size), 0);
        return file;
    }

    void BindSchema(std::string const & declaration) {
        ASSERT_EQ(
            AddSchemaText(
                "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>" + declaration
                + "</xs:schema>"),
            S_OK);
    }

    void BindSchemaOfText() { BindSchema("<xs:element name='a' type='xs:string'/>"); }
    void BindSchemaOfAnything() { BindSchema("<xs:element name='a'/>"); }
};

} // namespace

TEST_F(XmlLimitsTest, GigabytesAreRefusedWithoutBeingRead) {
    auto const file = Sparse("huge.xml", std::int64_t{8} << 30);
    EXPECT_EQ(EndOfLoading(file, 64 * Megabyte), TooLarge);
}

TEST_F(XmlLimitsTest, FileThatGrowsWhileItIsReadIsReadUpToTheLimit) {
    Sparse("growing.xml", std::int64_t{8} << 30);
    Diversion const small(wrapped_fstat, [](int descriptor, struct stat * status) {
        int const result = wrapped_fstat.Real(descriptor, status);
        status->st_size = 4;
        return result;
    });
    XmlFile file;
    ASSERT_EQ(file.Open(m_Folder.Path() / "growing.xml", 5'000'000).code, S_OK);
    std::string buffer(1'000'000, ' ');
    int reads = 0;
    while (reads < 100 && file.Read(buffer.data(), 1'000'000) == 1'000'000)
        ++reads;
    EXPECT_EQ(reads, 5);
    EXPECT_EQ(file.Failure(), FILE_TOO_LARGE);
}

TEST_F(XmlLimitsTest, LongTextIsReadAndHeldAgainstItsType) {
    BindSchemaOfText();
    auto const file = Write("text.xml", "<a>", "0123456789abcdef", 3 * Megabyte, "</a>");
    EXPECT_EQ(EndOfLoading(file, 600 * Megabyte), Accepted);
}

TEST_F(XmlLimitsTest, TextBeyondTheLimitIsRefused) {
    auto const file = Write("text.xml", "<a>", "0123456789abcdef", 5 * Megabyte, "</a>");
    EXPECT_EQ(EndOfLoading(file, 400 * Megabyte), TooLarge);
    BindSchemaOfText();
    EXPECT_EQ(EndOfLoading(file, 600 * Megabyte), TooLarge);
}

TEST_F(XmlLimitsTest, TextBeyondTheLimitIsRefusedAlsoBetweenComments) {
    std::string const piece = std::string(1'000'000, 'x') + "<!---->";
    auto const file = Write("pieces.xml", "<a>", piece, 80, "</a>");
    EXPECT_EQ(EndOfLoading(file, 400 * Megabyte), Accepted);
    BindSchemaOfText();
    EXPECT_EQ(EndOfLoading(file, 600 * Megabyte), TooLarge);
}

TEST_F(XmlLimitsTest, TextInMillionsOfPiecesIsReadInTime) {
    BindSchemaOfText();
    auto const references = Write("references.xml", "<a>", "&#65;", 4'000'000, "</a>");
    EXPECT_EQ(EndOfLoading(references, 400 * Megabyte), Accepted);
    auto const comments = Write("comments.xml", "<a>", "A<!---->", 2'000'000, "</a>");
    EXPECT_EQ(EndOfLoading(comments, 600 * Megabyte), Accepted);
}

TEST_F(XmlLimitsTest, TreeInMillionsOfPiecesIsValidatedInTime) {
    BindSchemaOfText();
    m_Document->put_validateOnParse(VARIANT_FALSE);
    auto const comments = Write("comments.xml", "<a>", "A<!---->", 1'000'000, "</a>");
    EXPECT_EQ(EndOfLoading(comments, 600 * Megabyte), Accepted);
}

TEST_F(XmlLimitsTest, AttributeIsReadUpToTenMegabytes) {
    BindSchemaOfAnything();
    auto const fits = Write("fits.xml", "<a b='", "0123456789", 900'000, "'/>");
    EXPECT_EQ(EndOfLoading(fits, 200 * Megabyte), Accepted);
    auto const longer = Write("longer.xml", "<a b='", "0123456789", 1'100'000, "'/>");
    EXPECT_EQ(EndOfLoading(longer, 200 * Megabyte), OtherError);
    EXPECT_EQ(LoadAndValidate(longer), ATTRIBUTE_TOO_LONG);
}

TEST_F(XmlLimitsTest, ElementsBeyondTheLimitAreRefused) {
    BindSchemaOfAnything();
    auto const file = Write("elements.xml", "<a>", "<b/>", 10'000'000, "</a>");
    EXPECT_EQ(EndOfLoading(file, 700 * Megabyte), TooLarge);
}

TEST_F(XmlLimitsTest, NamesWithoutEndAreRefused) {
    auto const file = Write("name.xml", "<", "a", 20 * Megabyte, "/>");
    EXPECT_EQ(EndOfLoading(file, 200 * Megabyte), OtherError);
}

// The document is good: whatever there is too little memory for, it is never told to be anything
// else.
TEST_F(XmlLimitsTest, LackOfMemoryIsNoVerdict) {
    if (!LimitsMemory) GTEST_SKIP() << "the sanitizer needs more memory than the limit leaves";
    BindSchema("<xs:element name='a'><xs:complexType><xs:sequence>"
               "<xs:element name='b' type='xs:string' maxOccurs='unbounded'/>"
               "</xs:sequence></xs:complexType></xs:element>");
    std::string const piece = "<b>" + std::string(100'000, 'x') + "</b>";
    auto const file = Write("good.xml", "<a>", piece, 200, "</a>");
    for (std::size_t memory = 64 * 1024; memory <= 64 * Megabyte; memory += memory / 8) {
        SCOPED_TRACE(memory);
        auto const end = EndOfLoading(file, memory);
        ASSERT_TRUE(end.has_value());
        EXPECT_TRUE(*end == Accepted || *end == OutOfMemory) << *end;
    }
    EXPECT_EQ(EndOfLoading(file, 64 * Megabyte), Accepted);
    EXPECT_EQ(EndOfLoading(file, 64 * 1024), OutOfMemory);
}

TEST_F(XmlLimitsTest, SchemaBeyondTheLimitIsRefused) {
    std::string const head = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>";
    auto const file =
        Write("large.xsd", head.c_str(), "<!-- 0123456789 -->", Megabyte, "</xs:schema>");
    auto const adding = [&] { return AddSchema(file); };
    EXPECT_EQ(InChild(100 * Megabyte, adding), OtherError);
    EXPECT_EQ(AddSchema(file), E_FAIL);
    EXPECT_EQ(AddSchema(Sparse("huge.xsd", std::int64_t{8} << 30)), E_FAIL);
}

TEST_F(XmlLimitsTest, IncludesCountTogether) {
    std::string const head = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>";
    std::string const padding = "<!--" + std::string(1'000'000, ' ') + "-->";
    auto const schema = [&](int includes) {
        std::string text = head;
        for (int i = 0; i != includes; ++i) {
            std::string const name = "part" + std::to_string(i) + ".xsd";
            m_Folder.Write(name, head + padding + "</xs:schema>");
            text += "<xs:include schemaLocation='" + name + "'/>";
        }
        return m_Folder.Write("whole.xsd", text + "</xs:schema>");
    };
    EXPECT_EQ(AddSchema(schema(15)), S_OK);
    EXPECT_EQ(AddSchema(schema(17)), E_FAIL);
}
