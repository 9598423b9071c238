#ifndef BRISTEL_LOG_HLOGMANAGER_H
#define BRISTEL_LOG_HLOGMANAGER_H

#include "bristel_log_export.h"

#include <QString>

#include <memory>

class HLogManagerPrivate;
class Logger;

/*
 * The process-wide registry of loggers by name, reached through SyncSingleton<HLogManager>.
 *
 * The empty name stands for "default".  The manager owns every logger it created and
 * deletes them, in name order, when it is destroyed at program exit.  A logger replaced by
 * a later set() under the same name stays alive until then, so pointers handed out
 * earlier remain valid.  No locking: creation is guarded by the singleton only.  The
 * registry lives behind a private pointer, so that the class keeps its layout in the shared
 * library.
 */
class BRISTEL_LOG_EXPORT HLogManager
{
public:
    HLogManager();
    ~HLogManager();

    HLogManager(const HLogManager &) = delete;
    HLogManager &operator=(const HLogManager &) = delete;

    // Creates a logger (passing it first) and stores it under name, or "default" when
    // name is empty.
    void set(const QString &first, const QString &name = QString());

    // The empty name returns the "default" entry, inserting a null one if there is none.
    // Any other name returns its logger, or null when it was never set (nothing inserted).
    Logger *getLog(const QString &name = QString());

    // Whether an entry (possibly null) exists under name; for inspection.
    bool contains(const QString &name) const;

private:
    std::unique_ptr<HLogManagerPrivate> d;
};

#endif
