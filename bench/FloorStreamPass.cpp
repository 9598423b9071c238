// The floor of a large document: one pull-parser pass over the input that writes one line
// (the element's name) per element, through a buffered text stream.

#include <QCoreApplication>
#include <QFile>
#include <QTextStream>
#include <QXmlStreamReader>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 3)
        return 1;
    QFile input(QFile::decodeName(argv[1]));
    QFile output(QFile::decodeName(argv[2]));
    if (!input.open(QIODevice::ReadOnly) || !output.open(QIODevice::WriteOnly))
        return 1;
    QTextStream stream(&output);
    QXmlStreamReader reader(&input);
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement)
            stream << reader.name() << "\r\n\r";
    }
    return reader.hasError() ? 1 : 0;
}
