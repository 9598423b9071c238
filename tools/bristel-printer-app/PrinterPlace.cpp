#include "PrinterPlace.h"

#include "StateFile.h"

#include <cstring>

namespace {

struct PlaceSetter
{
    const char *name;
    void (*set)(pappl_printer_t *printer, const char *value);
};

constexpr PlaceSetter PlaceSetters[] = {{"printer-location", papplPrinterSetLocation},
                                        {"printer-organization", papplPrinterSetOrganization},
                                        {"printer-organizational-unit", papplPrinterSetOrganizationalUnit}};

// The place attributes of the request set on the printer; false when one is not text.
bool setPlace(pappl_client_t *client, pappl_printer_t *printer)
{
    ipp_t *request = papplClientGetRequest(client);
    for (const PlaceSetter &setter : PlaceSetters) {
        ipp_attribute_t *attribute = ippFindAttribute(request, setter.name, IPP_TAG_ZERO);
        if (!attribute)
            continue;
        if (ippGetValueTag(attribute) != IPP_TAG_TEXT || ippGetCount(attribute) != 1) {
            papplClientRespondIPPUnsupported(client, attribute);
            return false;
        }
        setter.set(printer, ippGetString(attribute, 0, nullptr));
    }
    return true;
}

void answerSetPrinterPlace(pappl_client_t *client, const QByteArray *stateFile)
{
    const http_status_t authorized = papplClientIsAuthorized(client);
    if (authorized != HTTP_STATUS_CONTINUE) {
        papplClientRespond(client, authorized, nullptr, nullptr, 0, 0);
        return;
    }
    pappl_system_t *system = papplClientGetSystem(client);
    ipp_attribute_t *id = ippFindAttribute(papplClientGetRequest(client), "printer-id", IPP_TAG_INTEGER);
    pappl_printer_t *printer =
        id ? papplSystemFindPrinter(system, nullptr, ippGetInteger(id, 0), nullptr) : nullptr;
    if (!printer) {
        papplClientRespondIPP(client, IPP_STATUS_ERROR_NOT_FOUND, "No such printer.");
        return;
    }
    if (!setPlace(client, printer))
        return;
    // The client hears that the place is set only once it is on the disk.
    if (stateFile && !saveStateDurably(system, *stateFile)) {
        papplClientRespondIPP(client, IPP_STATUS_ERROR_INTERNAL, "The place is set but could not be saved.");
        return;
    }
    papplClientRespondIPP(client, IPP_STATUS_OK, nullptr);
}

} // namespace

bool PrinterPlace::isPlaceAttribute(const char *name)
{
    for (const PlaceSetter &setter : PlaceSetters) {
        if (std::strcmp(name, setter.name) == 0)
            return true;
    }
    return false;
}

extern "C" bool answerOwnOperation(pappl_client_t *client, void *stateFile)
{
    if (papplClientGetOperation(client) != PrinterPlace::SetPrinterPlace)
        return false;
    answerSetPrinterPlace(client, static_cast<const QByteArray *>(stateFile));
    return true;
}
