#include <stdio.h>
#include "x.h"
#include <from_directory.h>

#ifndef GREETING
#define GREETING "hello"
#endif

static int never_used(int a) { return a; }

int pick(int a, int b)
{
    if (a > 1 && b)
        return a;
#ifndef SHORT
    for (int i = 0; i < a; i++)
        b += twice(i);
#endif
    return b;
}

int main(int argc, char **argv)
{
    int unused;
    printf("%s %d %s\n", GREETING, pick(argc, FROM_DIRECTORY), argv[argc] ? "?" : "end");
    return 0;
}
