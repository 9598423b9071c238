#include "SupportHome.h"

#include "TestSupport.h"

#include <QFile>
#include <QTemporaryDir>

QString supportHome()
{
    static QTemporaryDir dir;
    static const bool prepared = [] {
        writeFile(dir.filePath(QStringLiteral(".bristel/conf/bristel.conf")),
                  "bristel : {\n"
                  "  bin : { path = /opt/bristel/bin; };\n"
                  "  db : {\n"
                  "    dbname = shop;\n    username = cashier;\n    password = \"secret\";\n"
                  "    hostname = db.example;\n"
                  "  };\n"
                  "  doc : { copyNumber = 1; };\n"
                  "  prefiscaldoc : { copyNumber = 2; };\n"
                  "  fiscaldoc : { copyNumber = 3; };\n"
                  "  receiptdoc : { copyNumber = 4; };\n"
                  "  invoicedoc : { copyNumber = 5; };\n"
                  "  deliverydoc : { copyNumber = 6; };\n"
                  "};\n");
        qputenv("HOME", dir.path().toLocal8Bit());
        return dir.isValid() && QFile::exists(dir.filePath(QStringLiteral(".bristel/conf/bristel.conf")));
    }();
    return prepared ? dir.path() : QString();
}
