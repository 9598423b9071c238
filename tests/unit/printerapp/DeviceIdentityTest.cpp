#include "printerapp/DeviceIdentity.h"

#include <gtest/gtest.h>

namespace {

TEST(DeviceIdentity, ReadsShortAndLongKeysInAnyCase)
{
    const DeviceIdentity shortKeys(QStringLiteral("MFG:EPSON;CMD:ESCPOS;MDL:TM-T20II;CLS:PRINTER;"));
    EXPECT_EQ(shortKeys.manufacturer(), QStringLiteral("EPSON"));
    EXPECT_EQ(shortKeys.model(), QStringLiteral("TM-T20II"));
    EXPECT_EQ(shortKeys.commandSets(), QStringLiteral("ESCPOS"));

    const DeviceIdentity longKeys(
        QStringLiteral("manufacturer: Xprinter ;model:XP-58IIH;command set:ESC/POS"));
    EXPECT_EQ(longKeys.manufacturer(), QStringLiteral("Xprinter"));
    EXPECT_EQ(longKeys.model(), QStringLiteral("XP-58IIH"));
    EXPECT_EQ(longKeys.commandSets(), QStringLiteral("ESC/POS"));
}

TEST(DeviceIdentity, TellsEscPosPrintersByCommandSetOrEpsonModel)
{
    EXPECT_TRUE(DeviceIdentity(QStringLiteral("MFG:Printer;CMD:ESC/POS;MDL:POS-80;")).speaksEscPos());
    EXPECT_TRUE(DeviceIdentity(QStringLiteral("MFG:GP;CMD:PCL, escpos ;MDL:GP-L80160;")).speaksEscPos());
    EXPECT_TRUE(DeviceIdentity(QStringLiteral("MFG:EPSON;MDL:TM-T88V;")).speaksEscPos());
    // An office printer, Star's own command set, Epson's ink-jets, and nothing at all.
    EXPECT_FALSE(
        DeviceIdentity(QStringLiteral("MFG:HP;CMD:PCL,PJL,POSTSCRIPT;MDL:LaserJet 400;")).speaksEscPos());
    EXPECT_FALSE(DeviceIdentity(QStringLiteral("MFG:STAR;CMD:STAR;MDL:TSP143IIIU;")).speaksEscPos());
    EXPECT_FALSE(DeviceIdentity(QStringLiteral("MFG:EPSON;CMD:ESCPL2,BDC;MDL:ET-2750;")).speaksEscPos());
    EXPECT_FALSE(DeviceIdentity(QString()).speaksEscPos());
}

TEST(DeviceIdentity, GuessesTheNarrowPaperFromTheModel)
{
    for (const char *narrow : {"POS-58", "POS58", "XP-58IIH", "ZJ-5890K", "Thermal 58mm", "58"})
        EXPECT_EQ(
            DeviceIdentity(QStringLiteral("CMD:ESC/POS;MDL:%1;").arg(QLatin1String(narrow))).paperWidthMm(),
            58)
            << narrow;
    for (const char *wide : {"TM-T20II", "TM-T88V", "POS-80", "XP-Q580", "GP-L80160", ""})
        EXPECT_EQ(
            DeviceIdentity(QStringLiteral("CMD:ESC/POS;MDL:%1;").arg(QLatin1String(wide))).paperWidthMm(), 80)
            << wide;
}

} // namespace
