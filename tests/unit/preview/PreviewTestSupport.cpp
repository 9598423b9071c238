#include "PreviewTestSupport.h"

#include "preview/VirtualPrinter.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

#include <memory>

namespace {

// The outline fonts of SVG and PDF need a GUI application; it lives for the whole run.
class ApplicationEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "preview_tests";
        static char *argv[] = {name, nullptr};
        m_application = std::make_unique<QGuiApplication>(argc, argv);
    }
    void TearDown() override { m_application.reset(); }

private:
    std::unique_ptr<QGuiApplication> m_application;
};

[[maybe_unused]] ::testing::Environment *const environment =
    ::testing::AddGlobalTestEnvironment(new ApplicationEnvironment);

} // namespace

Paper printed(const QByteArray &stream, int paperWidth)
{
    VirtualPrinter printer(stream, paperWidth);
    printer.printAll();
    return printer.takeSheet();
}
