#include <stdio.h>

static int count;

static int out(int n) { count += n; return n; }

static int dead(int n)
{
    for (int i = 0; i < 2; i++) {
        if (n > i) {
            continue;
            out(1);
        }
        break;
        out(2);
    }
    if (({ n++; n; }))
        goto end;
    out(4);
end:
    return n;
    out(8);
}

static int early(int n)
{
    while (({ if (n > 1) return n; n; }) && n++ < 5)
        ;
    return -1;
}

int main(void)
{
    printf("%d %d\n", dead(1), count);
    printf("%d %d %d\n", early(0), early(1), early(2));
    return 0;
}

/* expected
0 PR proc "out" 5 5
0 BL simple "out" BODY 5 5
0 PR return "out" 5 5
1 PR proc "dead" 7 8
1 BL simple "dead" BODY 8 23
2 BL simple "dead" FOR 9 16
0 BL logical "dead" FOR_0 9 16
0 BL logical "dead" FOR_1 9 16
1 BL logical "dead" FOR_N 9 16
2/0 CE "dead" "i < 2" 9 9
1 BL simple "dead" THEN 10 13
1 BL implicit "dead" ELSE 10 13
1/1 CE "dead" "n > i" 10 10
0 AP "dead" "out" 12 12
0 AP "dead" "out" 15 15
1 BL simple "dead" THEN 18 18
0 BL implicit "dead" ELSE 17 18
1/0 CE "dead" "({ n++; n; })" 17 17
0 AP "dead" "out" 19 19
1 PR return "dead" 21 21
0 AP "dead" "out" 22 22
3 PR proc "early" 25 26
3 BL simple "early" BODY 26 30
1 BL simple "early" WHILE 28 28
2 BL logical "early" WHILE_0 27 28
1 BL logical "early" WHILE_1 27 28
0 BL logical "early" WHILE_N 27 28
1/1 CE "early" "({ if (n > 1) return n; n; })" 27 27
1/0 CE "early" "n++ < 5" 27 27
1,0,1 CC TTTFFX 1
2 BL simple "early" THEN 27 27
2 BL implicit "early" ELSE 27 27
2/2 CE "early" "n > 1" 27 27
2 PR return "early" 27 27
1 PR return "early" 29 29
1 PR proc "main" 32 33
1 BL simple "main" BODY 33 37
1 AP "main" "printf" 34 34
1 AP "main" "dead" 34 34
1 AP "main" "printf" 35 35
1 AP "main" "early" 35 35
1 AP "main" "early" 35 35
1 AP "main" "early" 35 35
1 PR return "main" 36 36
*/
