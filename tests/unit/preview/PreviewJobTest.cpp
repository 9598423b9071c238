#include "TestSupport.h"

#include "config/BRConfiguration.h"
#include "job/PrinterSettingTable.h"
#include "preview/PreviewJob.h"

#include <QBuffer>

#include <gtest/gtest.h>

namespace {

// 42 columns of Font A are the older 80 mm printers' 512 dots, not 576 with a margin.
TEST(PreviewJob, PaperFollowsTheColumns)
{
    EXPECT_EQ(previewjob::paperWidthForColumns(32), 384);
    EXPECT_EQ(previewjob::paperWidthForColumns(42), 512);
    EXPECT_EQ(previewjob::paperWidthForColumns(48), 576);
}

TEST(PreviewJob, RendersAJobAsBristelRenderDoes)
{
    QByteArray xml = readFile(QStringLiteral(BRISTEL_EXAMPLES "/documents/printFullOrder.xml"));
    QBuffer job(&xml);
    ASSERT_TRUE(job.open(QIODevice::ReadOnly));
    const BRConfiguration configuration(QStringLiteral("/dev/null"), QStringLiteral("cfg"));
    QByteArray stream;
    const RenderResult result = previewjob::renderEscPos(
        &job, configuration, printerSettingsFromConfiguration(configuration), &stream);
    EXPECT_EQ(result.status, RenderResult::Status::Ok) << qPrintable(result.message);
    EXPECT_TRUE(stream.startsWith("\x1b@\x1bt\x13"));
}

} // namespace
