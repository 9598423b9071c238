#ifndef BRISTEL_TESTS_DOCUMENTBYTES_H
#define BRISTEL_TESTS_DOCUMENTBYTES_H

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QTranslator>

#include <initializer_list>
#include <memory>
#include <utility>

// The bytes of one text line as the command-file back-end ends it: the indent, the text, the
// indent again, then CR LF CR.
inline QByteArray textLine(const QByteArray &text, unsigned int indent = 0)
{
    const QByteArray blanks(static_cast<int>(indent), ' ');
    return blanks + text + blanks + QByteArray("\r\n\r");
}

// Several lines at indent 0.
inline QByteArray textLines(std::initializer_list<QByteArray> texts)
{
    QByteArray bytes;
    for (const QByteArray &text : texts)
        bytes += textLine(text);
    return bytes;
}

// The rule of equal signs across the paper.
inline QByteArray ruleLine(int paperWidth)
{
    return textLine(QByteArray(paperWidth, '='));
}

// One fiscal command record: the fields, then CR LF.
inline QByteArray record(const QByteArray &fields)
{
    return fields + QByteArray("\r\n");
}

inline QByteArray repeated(char c, int count)
{
    return QByteArray(count, c);
}

/*
 * A real translation file, built from source/translation pairs of the context "QObject" with
 * lrelease, loaded and installed for as long as the object lives.  Creates the application
 * object that translators need when the test program has none.
 */
class CompiledTranslation
{
public:
    explicit CompiledTranslation(std::initializer_list<std::pair<const char *, const char *>> messages);
    ~CompiledTranslation();
    CompiledTranslation(const CompiledTranslation &) = delete;
    CompiledTranslation &operator=(const CompiledTranslation &) = delete;

    bool installed() const { return m_installed; }

private:
    QTemporaryDir m_dir;
    QTranslator m_translator;
    bool m_installed = false;
};

#endif
