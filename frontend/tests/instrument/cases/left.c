#include <stdio.h>

static int outer(int n)
{
    int inner(int k) { return k > n; }
    return inner(3);
}

static int jump(int n)
{
    __asm__ goto("" : : : : away);
    if (n)
        return 1;
away:
    return 2;
}

int main(void)
{
    printf("%d %d\n", outer(2), jump(0));
    return 0;
}

/* expected
only: gcc
warns: left.c:5: function outer is left as it is: 
warns: left.c:11: function jump is left as it is: asm goto
1 PR proc "main" 18 19
1 BL simple "main" BODY 19 22
1 AP "main" "printf" 20 20
1 AP "main" "outer" 20 20
1 AP "main" "jump" 20 20
1 PR return "main" 21 21
*/
