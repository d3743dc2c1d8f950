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

static const char *same(const char *text)
{
    return text;
}

static int temporary(int n)
{
    const char *text = same((char[]){'a', 'b', '\0'}) ?: "none";
    int number = n ?: *(int[]){3};
    return text[1] + number;
}

int main(void)
{
    printf("%d %d\n", outer(2), jump(0));
    printf("%d\n", temporary(0));
    return 0;
}

/* expected
only: gcc
warns: left.c:5: function outer is left as it is: 
warns: left.c:11: function jump is left as it is: asm goto
warns: left.c:25: function temporary is left as it is: &(...){...} ?: ...
1 PR proc "same" 18 19
1 BL simple "same" BODY 19 21
1 PR return "same" 20 20
1 PR proc "main" 30 31
1 BL simple "main" BODY 31 35
1 AP "main" "printf" 32 32
1 AP "main" "outer" 32 32
1 AP "main" "jump" 32 32
1 AP "main" "printf" 33 33
1 AP "main" "temporary" 33 33
1 PR return "main" 34 34
*/
