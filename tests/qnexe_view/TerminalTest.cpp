// Tests of what the system says of a stream that is no terminal. A terminal is in TerminalRunTest.
#include "examples/QNExe/view/Terminal.h"

#include <cstdio>
#include <memory>

#include <gtest/gtest.h>

#include "platform/Pipe.h"
#include "qnexe_view/Files.h"

namespace {

TEST(TerminalTest, AFileIsKnownAsOne) {
    EXPECT_EQ(KindOf(TemporaryFile().get()), StreamKind::File);
}

TEST(TerminalTest, APipeIsNeitherFileNorTerminal) {
    EXPECT_EQ(KindOf(Pipe().Stream()), StreamKind::Other);
}

TEST(TerminalTest, WhatIsNoTerminalHasEightyColumns) {
    EXPECT_EQ(ColumnsOf(TemporaryFile().get()), 80u);
}

} // namespace
