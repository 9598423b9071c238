// The floor of a preview's whole-process timing: the GUI application object on the offscreen
// platform, one line of text drawn into an image, and the image saved as PNG.
//   floor-gui-image OUTPUT.png

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc < 2)
        return 2;
    QImage image(384, 30, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.drawText(0, 20, QStringLiteral("Spaghetti alla carbonara   9.00"));
    painter.end();
    return image.save(QString::fromLocal8Bit(argv[1]), "PNG") ? 0 : 1;
}
