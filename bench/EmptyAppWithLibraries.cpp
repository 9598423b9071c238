// The empty application again, loading the compiler's two other libraries (QtXml and
// Core5Compat) as well: what loading them adds at start-up.

#include <QCoreApplication>
#include <QDomDocument>
#include <QXmlAttributes>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    // Never true when benchmarked: keeps both libraries linked without doing any of their work.
    if (argc > 1000) {
        const QDomDocument document;
        const QXmlAttributes attributes;
        return int(document.isNull()) + attributes.count();
    }
    return 0;
}
