#ifndef BRISTEL_TESTS_DOCUMENTFIXTURE_H
#define BRISTEL_TESTS_DOCUMENTFIXTURE_H

#include "config/BRConfiguration.h"
#include "devices/commandfile/CompanyPrinterDriver.h"

#include "DocumentBytes.h"
#include "TestSupport.h"

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <utility>

// The command-file back-end that also keeps a trace of every device call, so that tests
// can check the calls that leave no bytes in the file (bold, centring, character size...).
class RecordingDriver : public CompanyPrinterDriver
{
public:
    using CompanyPrinterDriver::CompanyPrinterDriver;
    using CompanyPrinterDriver::println;
    using CompanyPrinterDriver::setCharSize;

    QStringList trace;

    void setBold() override;
    void setCharSize() override;
    void setCharSize(int size) override;
    void setCenterJustify() override;
    void initPrinter() override;
    void printLogo() override;
    void fullCut() override;
    void generatePulse() override;
    void reset() override;
    void println(unsigned int indent, const QString &text) override;

    // Widens access for tests.
    using PrinterDriver::descriptionRow;
    using PrinterDriver::oneTime;
    void flush();
};

using Attributes = std::initializer_list<std::pair<const char *, const char *>>;

QXmlAttributes attributes(Attributes list);

/*
 * A driver writing into a temporary file, with a configuration given as text.
 *
 *   DocumentTest t;  t.configure("bristel : { receiptdoc : { paperWidth = 40; }; };");
 *   t.start("printFullOrderReceipt");
 *   t.element("receipe", {{"number", "2"}, {"name", "Acqua"}});
 *   EXPECT_EQ(t.output(), QByteArray("..."));
 */
class DocumentTest : public ::testing::Test
{
protected:
    void configure(const QByteArray &configurationText);
    // Feeds startDocument and the "method" element; creates the driver on first use.
    void start(const char *method);
    void element(const char *name, Attributes list = {});
    void element(const char *name, const QXmlAttributes &attributes);
    // Ends the document (endDocument) and returns every byte written to the file.
    QByteArray finish();
    // The bytes written so far; the driver stays usable.
    QByteArray output();
    RecordingDriver &driver();
    // The configuration the driver reads, created by configure() or on first use.
    const BRConfiguration *configuration();

private:
    QTemporaryDir m_dir;
    std::unique_ptr<BRConfiguration> m_configuration;
    std::unique_ptr<RecordingDriver> m_driver;
};

#endif
