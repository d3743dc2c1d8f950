#include <stdio.h>
#include <stdlib.h>
#include <stdbool.h>

static int calls;

static bool yes(int x)
{
    calls++;
    return x > 0;
}

static int both(int a, int b, int c)
{
    if (a && (b || !c))
        return 1;
    else if (!(a > 1 || yes(b)))
        return 2;
    return a > b ? 3 : 4;
}

static int bits(bool a, bool b, int c)
{
    bool any = a | (b & (c == 1)) | !b;
    int plain = c & 3;
    return (a ^ b) && (any || plain);
}

static int nested(int a, int b, int c)
{
    if (yes(a && b) || c)
        return a ?: b ? 7 : 8;
    return !!a && __builtin_expect(b > 1, 0);
}

static int constant(int a)
{
    if (a && 1)
        a++;
    if (sizeof(int) == 4)
        a += 2;
    return sizeof(char[a ? 1 : 2]) == 1 ? a : 0 ? 5 : a;
}

static int leaves(int a)
{
    while (a-- > 0 && (a != 3 || (exit(calls > 4 ? 5 : 6), 0)))
        ;
    return a;
}

int main(void)
{
    printf("%d %d %d %d\n", both(1, 0, 0), both(0, 0, 1), both(0, 1, 0), both(2, 0, 1));
    printf("%d %d\n", bits(1, 0, 1), bits(0, 1, 2));
    printf("%d %d %d\n", nested(1, 1, 0), nested(0, 0, 1), nested(0, 2, 0));
    printf("%d\n", constant(1));
    fflush(stdout);
    return leaves(6);
}

/* expected
5 PR proc "yes" 7 8
5 BL simple "yes" BODY 8 11
5 PR return "yes" 10 10
4 PR proc "both" 13 14
4 BL simple "both" BODY 14 20
1 BL simple "both" THEN 16 16
2/2 CE "both" "a" 15 15
0/2 CE "both" "b" 15 15
1/1 CE "both" "c" 15 15
0,1,1,2 CC TTXTFFTFTFXX 2
1 PR return "both" 16 16
1 BL simple "both" ELSEIF 18 18
2 BL implicit "both" ELSE 17 18
1/2 CE "both" "a > 1" 17 17
1/1 CE "both" "yes(b)" 17 17
1,1,1 CC FFTXFT 1
2 AP "both" "yes" 17 17
1 PR return "both" 18 18
2 PR return "both" 19 19
1/1 CE "both" "a > b" 19 19
2 PR proc "bits" 22 23
2 BL simple "bits" BODY 23 27
1/1 CE "bits" "a" 24 24
1/1 CE "bits" "b" 24 24
1/1 CE "bits" "c == 1" 24 24
1/1 CE "bits" "b" 24 24
0,0,0,0,0,1,0,0,0,0,1,0,0,0,0,0 CC OO.A..N.
2 PR return "bits" 26 26
2/0 CE "bits" "a ^ b" 26 26
1/1 CE "bits" "any" 26 26
1/0 CE "bits" "plain" 26 26
1,1,0,0 CC TTXTFTTFFFXX 2
1/1 CE "bits" "a" 26 26
1/1 CE "bits" "b" 26 26
0,1,1,0 CC X..
3 PR proc "nested" 29 30
3 BL simple "nested" BODY 30 34
2 BL simple "nested" THEN 32 32
1 BL implicit "nested" ELSE 31 32
1/2 CE "nested" "yes(a && b)" 31 31
1/1 CE "nested" "c" 31 31
1,1,1 CC TXFTFF 2
3 AP "nested" "yes" 31 31
1/2 CE "nested" "a" 31 31
1/0 CE "nested" "b" 31 31
1,0,2 CC TTTFFX 1
2 PR return "nested" 32 32
1/1 CE "nested" "a" 32 32
0/1 CE "nested" "b" 32 32
1 PR return "nested" 33 33
0/1 CE "nested" "a" 33 33
0/0 CE "nested" "b > 1" 33 33
0,0,1 CC TTTFFX 1
1 PR proc "constant" 36 37
1 BL simple "constant" BODY 37 43
1 BL simple "constant" THEN 39 39
0 BL implicit "constant" ELSE 38 39
1/0 CE "constant" "a" 38 38
1 CA "constant" "1" 38 38
1 BL simple "constant" THEN 41 41
0 BL implicit "constant" ELSE 40 41
1 CA "constant" "sizeof(int) == 4" 40 40
1 PR return "constant" 42 42
1/0 CE "constant" "sizeof(char[a ? 1 : 2]) == 1" 42 42
1/0 CE "constant" "a" 42 42
0 CA "constant" "0" 42 42
1 PR proc "leaves" 45 46
1 BL simple "leaves" BODY 46 50
2 BL simple "leaves" WHILE 48 48
0 BL logical "leaves" WHILE_0 47 48
0 BL logical "leaves" WHILE_1 47 48
0 BL logical "leaves" WHILE_N 47 48
3/0 CE "leaves" "a-- > 0" 47 47
2/1 CE "leaves" "a != 3" 47 47
0/0 CE "leaves" "exit(calls > 4 ? 5 : 6), 0" 47 47
2,0,0,0 CC TTXTFTTFFFXX 2
1 AP "leaves" "exit" 47 47
1 PR term "leaves" 47 47
1/0 CE "leaves" "calls > 4" 47 47
0 PR return "leaves" 49 49
1 PR proc "main" 52 53
1 BL simple "main" BODY 53 60
1 AP "main" "printf" 54 54
1 AP "main" "both" 54 54
1 AP "main" "both" 54 54
1 AP "main" "both" 54 54
1 AP "main" "both" 54 54
1 AP "main" "printf" 55 55
1 AP "main" "bits" 55 55
1 AP "main" "bits" 55 55
1 AP "main" "printf" 56 56
1 AP "main" "nested" 56 56
1 AP "main" "nested" 56 56
1 AP "main" "nested" 56 56
1 AP "main" "printf" 57 57
1 AP "main" "constant" 57 57
1 AP "main" "fflush" 58 58
0 PR return "main" 59 59
1 AP "main" "leaves" 59 59
*/
