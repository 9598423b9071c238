// The floor of a whole-process timing: the toolkit's application object and nothing else.

#include <QCoreApplication>

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    return 0;
}
