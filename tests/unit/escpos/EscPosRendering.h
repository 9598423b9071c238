#ifndef BRISTEL_TESTS_ESCPOSRENDERING_H
#define BRISTEL_TESTS_ESCPOSRENDERING_H

// Renders small jobs in memory for the ESC/POS tests.

#include "job/RenderJob.h"

#include "config/BRConfiguration.h"

#include <QByteArray>
#include <QTemporaryFile>

#include <memory>

// A configuration read from a temporary file holding the given text.
class ConfigurationFile
{
public:
    explicit ConfigurationFile(const QByteArray &text);
    const BRConfiguration &configuration() const { return *m_configuration; }

private:
    QTemporaryFile m_file;
    std::unique_ptr<BRConfiguration> m_configuration;
};

struct Rendered
{
    QByteArray bytes;
    RenderResult result;
};

// The job rendered with the given configuration text (the brace-and-semicolon format).
Rendered renderInMemory(const QByteArray &document, const QByteArray &configuration,
                        const EscPosSettings &settings = EscPosSettings(),
                        RenderFormat format = RenderFormat::EscPos);

// A document of one print method and the given elements.
QByteArray documentOf(const char *method, const QByteArray &elements);

#endif
