#include <setjmp.h>
#include <stdio.h>

static jmp_buf place;

static void fail(int n)
{
    if (n > 1)
        longjmp(place, n);
}

static int tries(int n)
{
    volatile int turn = 0;
    if (setjmp(place) == 0) {
        turn++;
        for (int i = 0; i < 3; i++)
            fail(i == n ? n : 0);
    } else {
        turn += 10;
    }
    return turn;
}

static int again(void)
{
    volatile int r = 0;
    int back;
    if ((back = setjmp(place)))
        return back;
    while (r < 5 && (fail(r), ++r))
        ;
    if (!setjmp(place))
        fail(2);
    return -1;
}

int main(void)
{
    printf("%d\n", tries(1));
    printf("%d\n", tries(2));
    printf("%d\n", again());
    return 0;
}

/* expected
9 PR proc "fail" 6 7
9 BL simple "fail" BODY 7 10
2 BL simple "fail" THEN 9 9
7 BL implicit "fail" ELSE 8 9
2/7 CE "fail" "n > 1" 8 8
2 AP "fail" "longjmp" 9 9
2 PR term "fail" 9 9
7 PR endproc "fail" 10 10
2 PR proc "tries" 12 13
2 BL simple "tries" BODY 13 23
2 BL simple "tries" THEN 15 19
1 BL atc "tries" LONGJMP 19 21
6 BL simple "tries" FOR 18 18
0 BL logical "tries" FOR_0 17 18
0 BL logical "tries" FOR_1 17 18
1 BL logical "tries" FOR_N 17 18
6/1 CE "tries" "i < 3" 17 17
6 AP "tries" "fail" 18 18
2/4 CE "tries" "i == n" 18 18
2 PR return "tries" 22 22
1 PR proc "again" 25 26
1 BL simple "again" BODY 26 36
1 BL atc "again" LONGJMP 30 30
1 BL implicit "again" ELSE 29 30
1 PR return "again" 30 30
2 BL simple "again" WHILE 32 32
0 BL logical "again" WHILE_0 31 32
0 BL logical "again" WHILE_1 31 32
0 BL logical "again" WHILE_N 31 32
3/0 CE "again" "r < 5" 31 31
2/0 CE "again" "fail(r), ++r" 31 31
2,0,0 CC TTTFFX 1
3 AP "again" "fail" 31 31
0 BL simple "again" THEN 34 34
0 BL implicit "again" ELSE 33 34
0 AP "again" "fail" 34 34
0 PR return "again" 35 35
1 PR proc "main" 38 39
1 BL simple "main" BODY 39 44
1 AP "main" "printf" 40 40
1 AP "main" "tries" 40 40
1 AP "main" "printf" 41 41
1 AP "main" "tries" 41 41
1 AP "main" "printf" 42 42
1 AP "main" "again" 42 42
1 PR return "main" 43 43
*/
