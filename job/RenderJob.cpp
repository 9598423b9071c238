#include "job/RenderJob.h"

#include "compiler/StreamSaxReader.h"
#include "devices/commandfile/CompanyPrinterDriver.h"
#include "devices/escpos/EscPosListing.h"
#include "devices/escpos/EscPosPrinterDriver.h"

#include <QBuffer>
#include <QFileDevice>
#include <QXmlAttributes>

namespace {

// The method element's name is what the person who wrote the job needs to see to correct it.
QString unknownMethodMessage(const QXmlAttributes &method)
{
    const int name = method.index(QLatin1String("name"));
    if (name < 0)
        return QStringLiteral("no print method: the method element has no name");
    return QStringLiteral("unknown print method \"%1\"").arg(method.value(name));
}

// Parses the document into the driver and says how the parse ended.
RenderResult parseInto(QIODevice *input, PrinterDriver &driver)
{
    StreamSaxReader reader;
    reader.setContentHandler(&driver);
    RenderResult result;
    if (reader.parse(input))
        return result;
    result.line = reader.lineNumber();
    result.column = reader.columnNumber();
    if (!driver.elementError().isEmpty()) {
        result.status = RenderResult::Status::InvalidCode;
        result.message = driver.elementError();
        result.line = reader.elementLineNumber();
        result.column = reader.elementColumnNumber();
    } else if (driver.stoppedOnUnknownMethod()) {
        result.status = RenderResult::Status::UnknownMethod;
        result.message = unknownMethodMessage(reader.refusedAttributes());
    } else {
        result.status = RenderResult::Status::MalformedDocument;
        result.message = reader.errorString();
        if (result.message.isEmpty())
            result.message = QStringLiteral("the document is not well-formed");
    }
    return result;
}

RenderResult renderEscPos(QIODevice *input, QIODevice *output, const BRConfiguration &configuration,
                          const EscPosSettings &settings)
{
    EscPosPrinterDriver driver(output, &configuration, settings);
    RenderResult result = parseInto(input, driver);
    if (result.status != RenderResult::Status::Ok)
        driver.finishAbandoned();
    result.warnings = driver.warnings().join(QLatin1Char('\n'));
    if (!driver.flush() && result.status == RenderResult::Status::Ok) {
        result.status = RenderResult::Status::WriteFailed;
        result.message = output->errorString();
    }
    return result;
}

RenderResult renderText(QIODevice *input, QIODevice *output, const BRConfiguration &configuration)
{
    // The driver hands its last bytes to the device when it goes out of scope.
    CompanyPrinterDriver driver(output, &configuration);
    return parseInto(input, driver);
}

} // namespace

RenderResult renderJob(QIODevice *input, QIODevice *output, RenderFormat format,
                       const BRConfiguration &configuration, const EscPosSettings &settings)
{
    RenderResult result;
    switch (format) {
    case RenderFormat::Text:
        result = renderText(input, output, configuration);
        break;
    case RenderFormat::EscPos:
        result = renderEscPos(input, output, configuration, settings);
        break;
    case RenderFormat::Listing: {
        QBuffer stream;
        stream.open(QIODevice::WriteOnly);
        result = renderEscPos(input, &stream, configuration, settings);
        const QByteArray listing = escPosListing(stream.data()).toUtf8();
        if (output->write(listing) != listing.size() && result.status == RenderResult::Status::Ok) {
            result.status = RenderResult::Status::WriteFailed;
            result.message = output->errorString();
        }
        break;
    }
    }
    // A full disk shows only when the last bytes are handed to the file system.
    if (auto *file = qobject_cast<QFileDevice *>(output)) {
        if ((!file->flush() || file->error() != QFileDevice::NoError) &&
            (result.status == RenderResult::Status::Ok ||
             result.status == RenderResult::Status::WriteFailed)) {
            result.status = RenderResult::Status::WriteFailed;
            result.message = file->errorString();
        }
    }
    return result;
}
