// The published examples of the digest, and digests of files.
#include "siblings/quillonlog/reports/Sha256.h"

#include <string>

#include <gtest/gtest.h>

#include "quillonlog/reports/Folder.h"
#include "siblings/QuillonReports.h"

namespace {

constexpr char OfAbc[] = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
constexpr char OfNothing[] = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";

std::string Of(std::string const & text) {
    Sha256 digest;
    digest.Add(text);
    return digest.Digits();
}

TEST(Sha256Test, PublishedExamples) {
    EXPECT_EQ(Of(""), OfNothing);
    EXPECT_EQ(Of("abc"), OfAbc);
    EXPECT_EQ(
        Of("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
        "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(
        Of(std::string(1'000'000, 'a')),
        "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256Test, PiecesMakeTheSameDigest) {
    std::string const text(300, 'x');
    for (std::size_t const at : {1u, 55u, 56u, 63u, 64u, 65u, 128u}) {
        Sha256 digest;
        digest.Add(std::string_view(text).substr(0, at));
        digest.Add(std::string_view(text).substr(at));
        EXPECT_EQ(digest.Digits(), Of(text)) << at;
    }
}

TEST(Sha256Test, FileIsReadByteForByte) {
    Folder const folder;
    folder.Write("abc", "abc");
    folder.Write("empty", "");
    folder.Write("big", std::string(1'000'000, 'a'));
    EXPECT_EQ(FileSha256(folder.File("abc")), OfAbc);
    EXPECT_EQ(FileSha256(folder.File("empty")), OfNothing);
    EXPECT_EQ(FileSha256(folder.File("big")), Of(std::string(1'000'000, 'a')));
}

TEST(Sha256Test, FileThatCannotBeReadHasNone) {
    Folder const folder;
    EXPECT_EQ(FileSha256(folder.File("none")), "");
    EXPECT_EQ(FileSha256(folder.File("")), "");
}

} // namespace
