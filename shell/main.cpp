// gzsh: the reference host shell.
#include "shell/Shell.h"

int main(int argc, char **argv)
{
    Shell shell;
    return shell.main(argc, argv);
}
