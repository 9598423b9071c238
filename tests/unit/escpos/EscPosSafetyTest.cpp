// No document text or configuration value ever reaches the receipt printer as a command: the
// stream holds only the commands the back-end itself writes, whatever a waiter, an online
// order or the configuration file says.

#include "EscPosRendering.h"

#include "devices/escpos/EscPosTokenizer.h"
#include "job/PrinterSettingTable.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using Kind = EscPosCommand::Kind;

// The commands the back-end writes; anything else in its stream came from a text.
const std::set<Kind> emitted = {Kind::Text,        Kind::LineFeed,      Kind::Initialize,    Kind::CodeTable,
                                Kind::Emphasis,    Kind::CharacterSize, Kind::Justification, Kind::Cut,
                                Kind::DrawerPulse, Kind::RasterImage};

std::vector<EscPosCommand> commandsOf(const QByteArray &stream)
{
    std::vector<EscPosCommand> commands;
    EscPosTokenizer tokenizer(stream);
    EscPosCommand command;
    while (tokenizer.next(&command)) {
        EXPECT_EQ(emitted.count(command.kind), 1u)
            << "command " << int(command.kind) << " at " << tokenizer.position();
        commands.push_back(command);
    }
    return commands;
}

int count(const std::vector<EscPosCommand> &commands, Kind kind)
{
    return int(std::count_if(commands.begin(), commands.end(),
                             [kind](const EscPosCommand &command) { return command.kind == kind; }));
}

const QByteArray Profile = "bristel : { receiptdoc : { printCustomer = true; printHeader = true; }; };";

TEST(EscPosSafety, ControlCharactersInACustomerNamePrintAsQuestionMarks)
{
    // XML admits the C1 controls (CSI starts a terminal sequence), DEL, tab and CR as
    // characters; the smiley is what some tables keep at byte 1.
    const QByteArray document = documentOf(
        "printFullOrderReceipt", "<customer name=\"Mario&#x9B;p&#x7F;&#x9;&#xD;&#x85;&#x263A;&#x90;V\"/>"
                                 "<headers a=\"&#x9B;@&#x9B;t\"/>");
    const Rendered r = renderInMemory(document, Profile);
    ASSERT_EQ(r.result.status, RenderResult::Status::Ok);
    const std::vector<EscPosCommand> commands = commandsOf(r.bytes);
    EXPECT_EQ(count(commands, Kind::DrawerPulse), 0);
    EXPECT_EQ(count(commands, Kind::Cut), 1); // the document's own, at its end
    EXPECT_EQ(count(commands, Kind::Initialize), 1);
    EXPECT_EQ(count(commands, Kind::CodeTable), 1);
    EXPECT_TRUE(r.bytes.contains("Mario?p??????V")) << r.bytes.toHex(' ').constData();
    EXPECT_TRUE(r.bytes.contains("?@?t"));
}

TEST(EscPosSafety, ControlCharactersInEveryKindOfFieldAreDisarmed)
{
    const QByteArray hostile = "&#x9B;p&#x80;&#x9F;&#x7F;&#x9;&#xD;";
    QByteArray elements;
    for (const char *element : {"company", "orderinfo", "receipt", "printers"})
        elements += QByteArray("<") + element + " name=\"" + hostile + "\" date=\"" + hostile +
                    "\" serialnumber=\"" + hostile + "\" note=\"" + hostile + "\" a=\"" + hostile + "\"/>";
    elements += "<receipe number=\"" + hostile + "\" name=\"" + hostile + "\" price=\"" + hostile +
                "\" totalPrice=\"" + hostile + "\"/><total price=\"" + hostile + "\"/><notPaid price=\"" +
                hostile + "\"/>";
    const QByteArray everything = "bristel : { receiptdoc : { printCompany = true; printHeader = true; "
                                  "printDate = true; printNote = true; }; };";
    const Rendered r = renderInMemory(documentOf("printFullOrderReceipt", elements), everything);
    ASSERT_EQ(r.result.status, RenderResult::Status::Ok);
    const std::vector<EscPosCommand> commands = commandsOf(r.bytes);
    EXPECT_EQ(count(commands, Kind::DrawerPulse), 0);
}

TEST(EscPosSafety, AConfigurationValueHoldingAnEscapeChangesNoPrinterSetting)
{
    // Values that try to smuggle commands are refused and the defaults stand.
    const QByteArray configuration =
        "bristel : { escpos : { codePage = \"PC858\x1bp\"; codePageNumber = \"19\x1b@\"; "
        "cut = \"full\x1d\"; columns = \"\x1b"
        "48\"; drawerPin = \"2\x1bp\"; }; "
        "receiptdoc : { printHeader = true; }; };";
    const ConfigurationFile file(configuration);
    QString problems;
    const EscPosSettings settings = printerSettingsFromConfiguration(file.configuration(), &problems);
    EXPECT_EQ(settings.codePage, QStringLiteral("PC858"));
    EXPECT_EQ(settings.codePageNumber, 19);
    EXPECT_EQ(settings.cut, EscPosSettings::Cut::Partial);
    EXPECT_EQ(settings.columns, 32);
    EXPECT_EQ(settings.drawerPin, 2);
    EXPECT_EQ(problems.count(QLatin1Char('\n')), 5) << problems.toStdString();

    const Rendered r =
        renderInMemory(documentOf("printFullOrderReceipt", "<headers a=\"x\"/>"), configuration, settings);
    const std::vector<EscPosCommand> commands = commandsOf(r.bytes);
    EXPECT_EQ(count(commands, Kind::DrawerPulse), 0);
}

TEST(EscPosSafety, AProfileWidthHoldingAnEscapeIsNoNumber)
{
    // The paper width falls back to the printer's columns, and the separator stays '='.
    const QByteArray configuration = "bristel : { receiptdoc : { paperWidth = \"\x1b"
                                     "8\"; printHeader = true; }; };";
    const Rendered r =
        renderInMemory(documentOf("printFullOrderReceipt", "<headers a=\"x\"/>"), configuration);
    commandsOf(r.bytes);
    EXPECT_TRUE(r.bytes.contains(QByteArray(32, '=') + '\n'));
}

} // namespace
