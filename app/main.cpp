#include "app/Compile.h"

int main(int argc, char **argv)
{
    compile(argc, argv);
    return 0;
}
