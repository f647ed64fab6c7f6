// gzcheck: reports the problems of bindings files, dialog scripts and gzsh scripts.
#include "check/Checker.h"

int main(int argc, char **argv)
{
    Checker checker;
    return checker.main(argc, argv);
}
