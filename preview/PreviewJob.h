#ifndef BRISTEL_PREVIEW_PREVIEWJOB_H
#define BRISTEL_PREVIEW_PREVIEWJOB_H

#include "job/RenderJob.h"

#include <QByteArray>

class BRConfiguration;
class QIODevice;

/*
 * Where the preview's bytes come from: an ESC/POS file is previewed as it stands; an XML job
 * is rendered first through the ESC/POS back-end, exactly as bristel-render renders it, so
 * the preview shows the bytes the printer would get.
 */
namespace previewjob {

// The ESC/POS bytes of an XML job; what was rendered before a fault is kept in *stream.
RenderResult renderEscPos(QIODevice *job, const BRConfiguration &configuration,
                          const EscPosSettings &settings, QByteArray *stream);

// The paper a printer of this many columns takes at 203 dpi: 58 mm (384 dots) up to 32
// columns, 80 mm (576 dots) above.
int paperWidthForColumns(int columns);

} // namespace previewjob

#endif
