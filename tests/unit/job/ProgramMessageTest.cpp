// How the programs tell their user about a problem.

#include "job/ProgramMessage.h"

#include "TestSupport.h"

#include <gtest/gtest.h>

TEST(ProgramMessage, NamesTheProgramThenTheMessageOnOneLineOfStandardError)
{
    QByteArray printedOut;
    const QByteArray printedError = captureStderr([&] {
        printedOut = captureStdout(
            [] { printProgramMessage("bristel-render", QStringLiteral("--columns: unusable value \"0\"")); });
    });
    EXPECT_EQ(printedError, QByteArray("bristel-render: --columns: unusable value \"0\"\n"));
    EXPECT_TRUE(printedOut.isEmpty());
}

TEST(ProgramMessage, WritesTheMessageInUtf8WhateverTheLocale)
{
    const QByteArray printed = captureStderr(
        [] { printProgramMessage("bristel-preview", QStringLiteral("cannot read Caff\u00e8 \u20ac.xml")); });
    EXPECT_EQ(printed, QByteArray("bristel-preview: cannot read Caff\xc3\xa8 \xe2\x82\xac.xml\n"));
}
