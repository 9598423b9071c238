#ifndef BRISTEL_TESTS_ESCPOSCOMMANDSAMPLES_H
#define BRISTEL_TESTS_ESCPOSCOMMANDSAMPLES_H

#include "devices/escpos/EscPosCommandTable.h"

#include <QByteArray>

#include <vector>

// Whole commands of the table's kind of parameters, their parameters made of printable bytes
// wherever the command admits them, so that a reader that takes a parameter for text shows
// it.  Each sample is one complete command, prefix included.
std::vector<QByteArray> escPosCommandSamples(const EscPosCommandEntry &entry);

#endif
