#include "preview/PreviewJob.h"

#include "preview/Paper.h"

#include <QBuffer>

namespace previewjob {

bool looksLikeXml(QByteArrayView data)
{
    if (data.startsWith("\xef\xbb\xbf"))
        data = data.sliced(3);
    for (const char byte : data) {
        if (byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n')
            continue;
        return byte == '<';
    }
    return false;
}

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
    return columns <= 32 ? Paper::width58mm : Paper::width80mm;
}

} // namespace previewjob
