#ifndef BRISTEL_COMPILER_COMPILE_H
#define BRISTEL_COMPILER_COMPILE_H

class BRConfiguration;
class QIODevice;
class QString;
class QTranslator;

// The whole run of "bristel-compile input_file output_file".
void compile(int argc, char **argv);

// Loads the translation named by the language keys into translator; false when none loads.
bool loadTranslation(QTranslator &translator, const BRConfiguration &configuration);

// Compiles one document into outputPath, emptying it first.  Without a configuration the
// process-wide one is used.
void compileDocument(QIODevice *input, const QString &outputPath,
                     const BRConfiguration *configuration = nullptr);

#endif
