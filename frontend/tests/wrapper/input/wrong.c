#include <stdio.h>
int main(void)
{
    printf("%s\n", undeclared);
    return 0
}
