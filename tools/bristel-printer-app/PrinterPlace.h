#ifndef BRISTEL_PRINTERAPP_PRINTERPLACE_H
#define BRISTEL_PRINTERAPP_PRINTERPLACE_H

#include <QByteArray>

#include <pappl/pappl.h>

#include <utility>
#include <vector>

// Where a printer stands: its printer-location, printer-organization and
// printer-organizational-unit. libpappl 1.3.1 hands all three of a Set-Printer-Attributes
// request to the printer's geo-location, which takes none of them (they are no "geo:" URIs),
// and answers that they were set; "modify" then changes nothing. So the server answers an
// operation of its own that sets them and saves the state durably before it answers, and the
// "modify" sub-command sends them with it, by the printer's id on the system's URI.
namespace PrinterPlace {

// In the range IPP leaves to vendors; libpappl passes it to its operation callback.
constexpr ipp_op_t SetPrinterPlace = ipp_op_t(0x4B52);

using Values = std::vector<std::pair<QByteArray, QByteArray>>; // IPP name, value

// Whether an attribute (or option) is one of the three.
bool isPlaceAttribute(const char *name);

} // namespace PrinterPlace

// libpappl's operation callback: answers SetPrinterPlace (printer-id and the attributes in
// the operation group); false for any other operation. stateFile is the server's state file
// (a const QByteArray *), or nullptr when it keeps none.
extern "C" bool answerOwnOperation(pappl_client_t *client, void *stateFile);

#endif
