// A make-based program on the installed libraries, compiled with the flags of
// "pkg-config --cflags --libs libbristel-support-widgets":
//
//   bristel-pkg-config <configuration file>
//
// prints the value of bristel.consumer.name and a money amount formatted by HLibrary.

#include <bristel/config/BRConfiguration.h>
#include <bristel/support/HLibrary.h>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2)
        return 2;
    const BRConfiguration configuration(QString::fromLocal8Bit(argv[1]), QStringLiteral("cfg"));
    std::printf("%s %s\n", qPrintable(configuration.getStrValue(QStringLiteral("bristel.consumer.name"))),
                qPrintable(HLibrary::truncateDecimal(2.345)));
    return 0;
}
