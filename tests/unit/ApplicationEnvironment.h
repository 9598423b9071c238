#ifndef BRISTEL_TESTS_APPLICATIONENVIRONMENT_H
#define BRISTEL_TESTS_APPLICATIONENVIRONMENT_H

#include <QByteArray>
#include <QtGlobal>

#include <gtest/gtest.h>

#include <memory>

namespace testsupport {

// The application object that widget and painting tests need, alive for the whole test run.
// The tests need no display: a run from a shell gets the offscreen platform too.
template <typename Application> class ApplicationEnvironment : public ::testing::Environment
{
public:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        static int argc = 1;
        static char name[] = "bristel_tests";
        static char *argv[] = {name, nullptr};
        m_application = std::make_unique<Application>(argc, argv);
    }
    void TearDown() override { m_application.reset(); }

private:
    std::unique_ptr<Application> m_application;
};

} // namespace testsupport

#endif
