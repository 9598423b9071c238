#ifndef BRISTEL_TESTS_SUPPORTHOME_H
#define BRISTEL_TESTS_SUPPORTHOME_H

#include <QString>

// Points HOME, once per process and before the configuration singleton is first used, at
// a temporary folder whose .bristel/conf/bristel.conf sets the binary path, the database
// keys and the copy numbers of every kind except "report".  Returns the folder, or the empty
// string when it could not be prepared.
QString supportHome();

#endif
