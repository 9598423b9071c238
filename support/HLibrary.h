#ifndef BRISTEL_SUPPORT_HLIBRARY_H
#define BRISTEL_SUPPORT_HLIBRARY_H

#include "bristel_support_widgets_export.h"

#include <QSqlDatabase>
#include <QString>

#include <functional>
#include <memory>

class QComboBox;

/*
 * Static utilities shared by the installation's programs: platform paths and tool names,
 * configuration shortcuts, copy numbers per document kind, money formatting, a paced
 * line-by-line file copy for printer spooling, and small helpers.  It is never instantiated
 * and holds no data, so it has no private part to grow: new functions are added as new
 * static members.  The new-sheet prompt is a message box, which is why the library that
 * holds this class is the one support library that links Qt Widgets.
 */
class BRISTEL_SUPPORT_WIDGETS_EXPORT HLibrary
{
public:
    HLibrary() = delete;

    // Paths and tool names.
    static QString appData();
    static QString programFiles();
    static QString dataPath();
    static QString toWindowsFormat(const QString &path);
    static QString fromUtf8(const QString &text);
    static QString psql();
    static QString dropdb();
    static QString pg_dump();
    static QString pg_restore();
    // "bristel.bin.path" + "/" + file.
    static QString pathWithBinaryFile(const QString &file);
    // The first entry of the working directory matching "core*", or "".
    static QString getCoreFile();

    // Database settings from the configuration ("" when unset).
    static QString dbname();
    static QString username();
    static QString password();
    static QString hostname();

    // Opens a PostgreSQL connection with the configured settings through the process-wide
    // DatabaseManager; null on failure.
    static std::unique_ptr<QSqlDatabase> newDBConnection(const QString &connectionName);

    // "bristel.<block>.copyNumber" for a document kind ("order", "prefiscal", "fiscal",
    // "receipt", "invoice", "delivery", "report", in any case).  Another kind prints an
    // error line and falls back to the prefiscal block.
    static QString copyNumber(const QString &kind);

    // A money amount with at least two decimals: positive amounts round half up on the
    // third decimal (after dropping the later ones), negative amounts are cut toward zero.
    static QString truncateDecimal(double value);

    // Copies source to destination line by line (lines of at most 127 bytes), flushing
    // after every line.  With a page length, asks for a new sheet after line
    // pageLength + 1 and then after every further pageLength lines; with a delay, waits
    // that many milliseconds after every line.  False when a file cannot be opened.
    static bool copy(const QString &source, const QString &destination, int pageLength, int delay);
    // The same with page length and delay given as decimal texts.
    static bool copy(const QString &source, const QString &destination, const QString &pageLength,
                     const QString &delay);
    // Copies page number page (from 0) of pageLength lines, waiting delay milliseconds
    // between its lines.  False when a file cannot be opened or the page is past the end.
    static bool copy(const QString &source, const QString &destination, int pageLength, int delay, int page);

    // Opens path for writing and closes it: creates a missing file, empties an existing one.
    static void touch(const QString &path);

    // Reseeds the standard generator with the current second and draws one number, so two
    // calls within the same second give the same text.
    static QString getNewRand();

    // The index of the first item whose text equals text exactly, or -1.
    static int comboBoxIndexOf(const QComboBox *comboBox, const QString &text);

    // Blocks the calling thread for whole seconds.
    static void hsleep(unsigned int seconds);

    // Asks the operator for a new sheet of paper and waits for the answer.  With a
    // QApplication this is a modal message box; in a console program (or without a
    // display) it prints "Insert a new sheet" on standard output and waits for a line on
    // standard input.
    static void newSheetPrompt();
    // Replaces the prompt used by copy(); an empty function restores the built-in one.
    // Meant for tests and for programs with their own way of asking.
    static void setNewSheetPrompt(std::function<void()> prompt);
};

#endif
