#ifndef BRISTEL_TESTS_DOCUMENTMETHODS_H
#define BRISTEL_TESTS_DOCUMENTMETHODS_H

namespace testsupport {

// Every print method a document can name.  A code (QR or bar code) belongs to no method of
// its own: each of these prints it where it stands.
inline constexpr const char *documentMethods[] = {"printPartialOrder",
                                                  "printFullOrder",
                                                  "printFullOrderReceipt",
                                                  "printFullOrderInvoice",
                                                  "printFullOrderDelivery",
                                                  "printFullOrderFiscal",
                                                  "printAbstractOrder",
                                                  "printAbstractOrderReceipt",
                                                  "printAbstractOrderInvoice",
                                                  "printAbstractOrderFiscal",
                                                  "printReport",
                                                  "printSold",
                                                  "printStatementOfAccount"};

} // namespace testsupport

#endif
