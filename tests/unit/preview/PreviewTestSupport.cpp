#include "PreviewTestSupport.h"

#include "ApplicationEnvironment.h"
#include "virtualprinter/VirtualPrinter.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

namespace {

[[maybe_unused]] ::testing::Environment *const environment =
    ::testing::AddGlobalTestEnvironment(new testsupport::ApplicationEnvironment<QGuiApplication>);

} // namespace

Paper printed(const QByteArray &stream, int paperWidth)
{
    VirtualPrinter printer(stream, paperWidth);
    printer.printAll();
    return printer.takeSheet();
}
