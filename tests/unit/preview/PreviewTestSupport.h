#ifndef BRISTEL_TESTS_PREVIEWTESTSUPPORT_H
#define BRISTEL_TESTS_PREVIEWTESTSUPPORT_H

#include "virtualprinter/Paper.h"

#include <QByteArray>

// The whole stream printed on one sheet of the given width.
Paper printed(const QByteArray &stream, int paperWidth = Paper::width58mm);

#endif
