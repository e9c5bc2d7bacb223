// The text of a failed call.
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "platform/ComError.h"
#include "tests/platform/ComDouble.h"
#include "tests/platform/Host.h"
#include "tests/platform/Wrap.h"

MORVEX_WRAP_API(
    DWORD, FormatMessageA,
    (DWORD flags, void const * source, DWORD code, DWORD language, char * buffer, DWORD size,
     __builtin_va_list * arguments),
    (flags, source, code, language, buffer, size, arguments))
MORVEX_WRAP_API(HLOCAL, LocalFree, (HLOCAL memory), (memory))

namespace {

// What the system would answer, in memory for LocalFree.
DWORD Answer(char * buffer, char const * text) {
    std::size_t const size = std::strlen(text) + 1;
    auto * const copy = static_cast<char *>(LocalAlloc(LMEM_FIXED, size));
    std::memcpy(copy, text, size);
    std::memcpy(buffer, &copy, sizeof copy);
    return static_cast<DWORD>(size - 1);
}

std::string MessageFor(char const * systemText, HRESULT code = E_FAIL) {
    Diversion const system(
        wrapped_FormatMessageA,
        [systemText](DWORD, void const *, DWORD, DWORD, char * buffer, DWORD, auto) {
            return systemText != nullptr ? Answer(buffer, systemText) : 0;
        });
    return _com_error(code).ErrorMessage();
}

class ErrorDouble : public ComDouble<IErrorInfo> {
public:
    HRESULT WINAPI GetDescription(BSTR *) override { return E_NOTIMPL; }
};

} // namespace

TEST(ComErrorTest, SystemIsAskedForItsTextInThisWay) {
    std::string asked;
    Diversion const system(
        wrapped_FormatMessageA, [&asked](
                                    DWORD flags, void const * source, DWORD code, DWORD language,
                                    char * buffer, DWORD size, __builtin_va_list * arguments) {
            char text[80];
            std::snprintf(
                text, sizeof text, "%X %X %X %u", static_cast<unsigned>(flags),
                static_cast<unsigned>(code), static_cast<unsigned>(language),
                static_cast<unsigned>(size));
            asked += text;
            EXPECT_EQ(source, nullptr);
            EXPECT_EQ(arguments, nullptr);
            return Answer(buffer, "text");
        });
    EXPECT_STREQ(_com_error(E_POINTER).ErrorMessage(), "text");
    EXPECT_EQ(asked, "1300 80004003 400 0");
}

TEST(ComErrorTest, TextIsMadeOnceAndGivenBackOnce) {
    int made = 0;
    int freed = 0;
    {
        Diversion const system(
            wrapped_FormatMessageA,
            [&made](DWORD, void const *, DWORD, DWORD, char * buffer, DWORD, auto) {
                ++made;
                return Answer(buffer, "text");
            });
        Diversion const release(wrapped_LocalFree, [&freed](HLOCAL memory) {
            ++freed;
            return wrapped_LocalFree.Real(memory);
        });
        _com_error const failure(E_FAIL);
        EXPECT_EQ(failure.ErrorMessage(), failure.ErrorMessage());
        _com_error const copy(failure);
        EXPECT_EQ(freed, 0);
    }
    EXPECT_EQ(made, 1);
    EXPECT_EQ(freed, 1);
}

TEST(ComErrorTest, LineEndIsDropped) {
    EXPECT_EQ(MessageFor("text\r\n"), "text");
    EXPECT_EQ(MessageFor("text\n"), "text");
    EXPECT_EQ(MessageFor("text\r"), "text\r");
    EXPECT_EQ(MessageFor("text\n\r\n"), "text\n");
    EXPECT_EQ(MessageFor("\r\n"), "");
    EXPECT_EQ(MessageFor("\n"), "");
}

TEST(ComErrorTest, CodeWithoutATextIsShownAsANumber) {
    auto const message = [](unsigned code) {
        return MessageFor(nullptr, static_cast<HRESULT>(code));
    };
    EXPECT_EQ(message(0x8004FFFF), "IDispatch error #65023");
    EXPECT_EQ(message(0x80040201), "IDispatch error #1");
    EXPECT_EQ(message(0x80040200), "Unknown error 0x80040200");
    EXPECT_EQ(message(0x800401FF), "Unknown error 0x800401FF");
    EXPECT_EQ(message(0x80050000), "Unknown error 0x80050000");
    EXPECT_EQ(message(0x80050201), "Unknown error 0x80050201");
    EXPECT_EQ(message(0), "Unknown error 0x0");
}

TEST(ComErrorTest, SystemHasTextsForWhatTheLibraryMeets) {
    if (UnderWine()) GTEST_SKIP() << "Wine lacks half of them";
    for (HRESULT const code :
         {E_POINTER, E_OUTOFMEMORY, E_FAIL, E_INVALIDARG, E_NOINTERFACE, E_NOTIMPL,
          CO_E_NOTINITIALIZED, REGDB_E_CLASSNOTREG}) {
        std::string const text = _com_error(code).ErrorMessage();
        EXPECT_EQ(text.find("error #"), text.npos) << text;
        EXPECT_EQ(text.find("0x"), text.npos) << text;
        EXPECT_FALSE(text.ends_with('\n'));
    }
}

TEST(ComErrorTest, ErrorObjectIsSharedByCopiesAndGivenBackByEach) {
    g_LiveDoubles = 0;
    auto * const error = new ErrorDouble;
    {
        _com_error const first(E_FAIL, error);
        EXPECT_EQ(error->References(), 1u);
        _com_error second(first);
        EXPECT_EQ(error->References(), 2u);
        _com_error third(E_POINTER);
        third = second;
        EXPECT_EQ(third.Error(), E_FAIL);
        EXPECT_EQ(error->References(), 3u);
        third = *&third;
        EXPECT_EQ(error->References(), 3u);
        IErrorInfo * const mine = third.ErrorInfo();
        EXPECT_EQ(mine, error);
        EXPECT_EQ(error->References(), 4u);
        mine->Release();
    }
    EXPECT_EQ(g_LiveDoubles, 0);
}

TEST(ComErrorTest, ReferenceIsAddedOnRequest) {
    g_LiveDoubles = 0;
    auto * const error = new ErrorDouble;
    { _com_error const failure(E_FAIL, error, true); }
    EXPECT_EQ(error->References(), 1u);
    error->Release();
    EXPECT_EQ(g_LiveDoubles, 0);
}
