#include "preview/PreviewJob.h"

#include "devices/escpos/EscPosPaperFamily.h"

#include <QBuffer>

namespace previewjob {

RenderResult renderEscPos(QIODevice *job, const BRConfiguration &configuration,
                          const EscPosSettings &settings, QByteArray *stream)
{
    stream->clear();
    QBuffer buffer(stream);
    buffer.open(QIODevice::WriteOnly);
    return renderJob(job, &buffer, RenderFormat::EscPos, configuration, settings);
}

int paperWidthForColumns(int columns)
{
    return EscPosPaperFamily::forColumns(columns).dots;
}

} // namespace previewjob
