#include "ConfigEditorWindow.h"
#include "ConfigViewsSupport.h"
#include "TestSupport.h"

#include "PreviewPane.h"

#include <QComboBox>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace {

// The shipped sample configuration, which has the receipt printer's block.
QString copyOfSample(const QTemporaryDir &dir)
{
    const QString path = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(path, readFile(QStringLiteral(BRISTEL_TEST_DATA "/../examples/bristel.conf")));
    return path;
}

QTreeWidgetItem *valueItem(const ConfigEditorWindow &window, const QStringList &texts)
{
    QTreeWidgetItem *attribute = itemAt(window.treeView()->topLevelItem(0), texts);
    return attribute && attribute->childCount() == 1 ? attribute->child(0) : nullptr;
}

// The widest printed row of the receipt, in characters.
int widestRowColumns(const ConfigEditorWindow &window)
{
    return window.previewPane()->paper().widestRow() / 12;
}

TEST(ConfigEditorPreview, ShowsTheReceiptOfTheSampleConfiguration)
{
    QTemporaryDir dir;
    ConfigEditorWindow window(copyOfSample(dir));
    PreviewPane *pane = window.previewPane();
    ASSERT_NE(pane, nullptr);
    EXPECT_EQ(pane->sampleChooser()->currentText(), QStringLiteral("printFullOrderReceipt"));
    EXPECT_GE(PreviewPane::exampleDocuments().size(), 13);
    EXPECT_EQ(pane->sampleChooser()->count(),
              PreviewPane::exampleDocuments().size() + 1); // and "Other file..."
    EXPECT_FALSE(pane->paper().runs().empty());
    EXPECT_TRUE(pane->message().isEmpty()) << qPrintable(pane->message());
}

TEST(ConfigEditorPreview, AnEditOfThePaperWidthChangesThePreviewedRows)
{
    QTemporaryDir dir;
    const QString path = copyOfSample(dir);
    const QByteArray before = readFile(path);
    ConfigEditorWindow window(path);
    const int wide = widestRowColumns(window);
    EXPECT_EQ(wide, 40); // the receipt's 40 columns, on the 80 mm paper of a 48-column printer

    QTreeWidgetItem *width = valueItem(
        window, {QStringLiteral("bristel"), QStringLiteral("receiptdoc"), QStringLiteral("paperWidth")});
    ASSERT_NE(width, nullptr);
    // The separators follow the paper width; the rows of items keep their fields' widths.
    width->setText(0, QStringLiteral("24"));
    EXPECT_LT(widestRowColumns(window), wide);
    EXPECT_TRUE(window.previewPane()->paper().rowTexts().contains(QString(24, QLatin1Char('='))));
    EXPECT_FALSE(window.previewPane()->paper().rowTexts().contains(QString(32, QLatin1Char('='))));

    width->setText(0, QStringLiteral("30"));
    EXPECT_TRUE(window.previewPane()->paper().rowTexts().contains(QString(30, QLatin1Char('='))));
    EXPECT_TRUE(window.previewPane()->message().isEmpty());
    // Nothing is saved until the user saves.
    EXPECT_EQ(readFile(path), before);
    EXPECT_TRUE(window.isWindowModified());
}

TEST(ConfigEditorPreview, AnInvalidValueShowsAMessage)
{
    QTemporaryDir dir;
    ConfigEditorWindow window(copyOfSample(dir));
    QTreeWidgetItem *width = valueItem(
        window, {QStringLiteral("bristel"), QStringLiteral("receiptdoc"), QStringLiteral("paperWidth")});
    ASSERT_NE(width, nullptr);
    width->setText(0, QStringLiteral("forty"));
    EXPECT_TRUE(window.previewPane()->message().contains(QLatin1String("bristel.receiptdoc.paperWidth")))
        << qPrintable(window.previewPane()->message());
    EXPECT_FALSE(window.previewPane()->paper().runs().empty());

    width->setText(0, QStringLiteral("99999999"));
    EXPECT_FALSE(window.previewPane()->message().isEmpty());

    QTreeWidgetItem *codePage =
        valueItem(window, {QStringLiteral("bristel"), QStringLiteral("escpos"), QStringLiteral("codePage")});
    ASSERT_NE(codePage, nullptr);
    width->setText(0, QStringLiteral("32"));
    EXPECT_TRUE(window.previewPane()->message().isEmpty()) << qPrintable(window.previewPane()->message());
    codePage->setText(0, QStringLiteral("EBCDIC"));
    EXPECT_TRUE(window.previewPane()->message().contains(QLatin1String("EBCDIC")))
        << qPrintable(window.previewPane()->message());
}

TEST(ConfigEditorPreview, ShowsAnyChosenJob)
{
    QTemporaryDir dir;
    ConfigEditorWindow window(copyOfSample(dir));
    const QString job = dir.filePath(QStringLiteral("bytes.escpos"));
    writeFile(job, QByteArray("\x1b@Hello\n\x1dV\x42\x03", 12));
    window.previewPane()->showSample(job);
    EXPECT_EQ(window.previewPane()->paper().rowTexts(), QStringList{QStringLiteral("Hello")});
    EXPECT_EQ(window.previewPane()->paper().cutPositions().size(), 1u);

    window.previewPane()->showSample(dir.filePath(QStringLiteral("missing.xml")));
    EXPECT_FALSE(window.previewPane()->message().isEmpty());
}

TEST(ConfigEditorPreview, PrinterBytesStartingWithALessThanSignAreNoJob)
{
    QTemporaryDir dir;
    const QString config = dir.filePath(QStringLiteral("bristel.conf"));
    writeFile(config, "bristel : { escpos : { columns = 32; }; };");
    ConfigEditorWindow window(config);
    const QString bytes = dir.filePath(QStringLiteral("ticket.escpos"));
    writeFile(bytes, "<<< TAVOLO 12 >>>\n");
    window.previewPane()->showSample(bytes);
    EXPECT_TRUE(window.previewPane()->message().isEmpty()) << qPrintable(window.previewPane()->message());
    EXPECT_EQ(window.previewPane()->paper().rowTexts(), QStringList{QStringLiteral("<<< TAVOLO 12 >>>")});
    // Bytes from another program come on 80 mm paper, whatever the printer of the
    // configuration takes.
    EXPECT_EQ(window.previewPane()->paper().width(), 576);
}

} // namespace
