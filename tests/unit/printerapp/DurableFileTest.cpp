#include "printerapp/DurableFile.h"

#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

TEST(DurableFile, WritesTheWholeFileAndLeavesNoTemporaryOne)
{
    QTemporaryDir folder;
    QString error;
    ASSERT_TRUE(DurableFile::write(folder.path(), QStringLiteral("state"), "old", &error))
        << qPrintable(error);
    ASSERT_TRUE(DurableFile::write(folder.path(), QStringLiteral("state"), "new", &error))
        << qPrintable(error);
    EXPECT_EQ(readFile(folder.filePath(QStringLiteral("state"))), QByteArray("new"));
    EXPECT_EQ(filesIn(folder.path()), QStringList{QStringLiteral("state")});
}

TEST(DurableFile, PutsAnotherWritersFileInThePlaceOfTheOldOne)
{
    QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("printers.state")), "old printers");
    writeFile(folder.filePath(QStringLiteral(".partial-printers.state")), "new printers");
    QString error;
    ASSERT_TRUE(DurableFile::replace(folder.path(), QStringLiteral(".partial-printers.state"),
                                     QStringLiteral("printers.state"), &error))
        << qPrintable(error);
    EXPECT_EQ(readFile(folder.filePath(QStringLiteral("printers.state"))), QByteArray("new printers"));
    EXPECT_EQ(filesIn(folder.path()), QStringList{QStringLiteral("printers.state")});
}

TEST(DurableFile, ReplacingWithAFileThatIsNotThereFailsAndKeepsTheOldOne)
{
    QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("printers.state")), "old printers");
    QString error;
    EXPECT_FALSE(DurableFile::replace(folder.path(), QStringLiteral(".partial-missing"),
                                      QStringLiteral("printers.state"), &error));
    EXPECT_TRUE(error.contains(QStringLiteral(".partial-missing"))) << qPrintable(error);
    EXPECT_EQ(readFile(folder.filePath(QStringLiteral("printers.state"))), QByteArray("old printers"));
}

TEST(DurableFile, RemovesAFileAndAcceptsOneAlreadyGone)
{
    QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("mark")), QByteArray());
    QString error;
    EXPECT_TRUE(DurableFile::remove(folder.path(), QStringLiteral("mark"), &error)) << qPrintable(error);
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("mark"))));
    EXPECT_TRUE(DurableFile::remove(folder.path(), QStringLiteral("mark"), &error)) << qPrintable(error);
}

} // namespace
