#ifndef BRISTEL_LAYOUT_DOCUMENTPROFILE_H
#define BRISTEL_LAYOUT_DOCUMENTPROFILE_H

/*
 * The layout profile of one kind of document, as the configuration gives it: the column
 * widths and paper size in characters, and the switches that say which header blocks print.
 * A profile that the configuration lacks altogether is all zeros and all off, except the paper
 * width, which the back-end answers then.
 */
struct DocumentProfile
{
    int quantityFieldWidth = 0;
    int priceFieldWidth = 0;
    int totalPriceFieldWidth = 0;
    int paperWidth = 0;
    int paperRows = 0; // Kept: loaded with the others, read by nothing

    bool printGeometry = false;
    bool printHeader = false;
    bool printLogo = false; // Kept: loaded, but a "logo" element prints whatever it says
    bool printCompany = false;
    bool printDeliveryAddress = false;
    bool printTelephone = false;
    bool printDate = false;
    bool printTime = false;
    bool printTable = false;
    bool printCustomer = false;
    bool printBillingAddress = false;
    bool printLicenseNumber = false;
    bool printFiscalCode = false;
    bool printCredit = false;
    bool printWaiter = false;
    bool printNote = false;
    bool openCashDrawer = false; // read by the back-ends that drive a cash drawer
};

#endif
