#include "EscPosRendering.h"

#include <QBuffer>

#include <gtest/gtest.h>

ConfigurationFile::ConfigurationFile(const QByteArray &text)
{
    EXPECT_TRUE(m_file.open());
    m_file.write(text);
    m_file.close();
    m_configuration = std::make_unique<BRConfiguration>(m_file.fileName(), QStringLiteral("cfg"));
}

Rendered renderInMemory(const QByteArray &document, const QByteArray &configuration,
                        const EscPosSettings &settings, RenderFormat format)
{
    const ConfigurationFile file(configuration);
    const BRConfiguration &config = file.configuration();
    QBuffer input;
    input.setData(document);
    input.open(QIODevice::ReadOnly);
    QBuffer output;
    output.open(QIODevice::WriteOnly);
    Rendered rendered;
    rendered.result = renderJob(&input, &output, format, config, settings);
    rendered.bytes = output.data();
    return rendered;
}

QByteArray documentOf(const char *method, const QByteArray &elements)
{
    return QByteArray("<document><method name=\"") + method + "\"/>" + elements + "</document>";
}
