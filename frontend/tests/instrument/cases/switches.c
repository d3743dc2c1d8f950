#include <stdio.h>

static int kind(int n)
{
    int k = 0;
    switch (n) {
    case 1:
        k = 10;
        __attribute__((fallthrough));
    case 2: case 3:
        k += 1;
        break;
    case 4 ... 6:
        k = 4;
        goto again;
    case 7:
        k++;
again:
        k++;
        break;
    default:
        k = -1;
    }
    return k;
}

/* Duff's device: a switch that jumps into a loop. */
static int copy(char *to, const char *from, int count)
{
    int n = (count + 3) / 4;
    switch (count % 4) {
    case 0: do { *to++ = *from++;
    case 3:      *to++ = *from++;
    case 2:      *to++ = *from++;
    case 1:      *to++ = *from++;
            } while (--n > 0);
    }
    return n;
}

static int none(int n)
{
    switch (n)
    case 1: n = 5;
    switch (n) { }
    return n;
}

int main(void)
{
    char text[16] = "";
    for (int i = 1; i < 9; i++)
        printf("%d ", kind(i));
    printf("%d %d ", copy(text, "abcdef", 6), copy(text, "x", 1));
    printf("%s %d %d\n", text, none(1), none(2));
    return 0;
}

/* expected
8 PR proc "kind" 3 4
8 BL simple "kind" BODY 4 25
1 CA "kind" "case 1" 7 7
1 BL simple "kind" CASE 7 9
1 CA "kind" "case 2" 10 10
1 CA "kind" "case 3" 10 10
3 BL simple "kind" CASE 10 12
3 CA "kind" "case 4 ... 6" 13 13
3 BL simple "kind" CASE 13 15
1 CA "kind" "case 7" 16 16
4 BL simple "kind" CASE 16 20
1 BL simple "kind" DEFAULT 21 22
8 PR return "kind" 24 24
2 PR proc "copy" 28 29
2 BL simple "copy" BODY 29 39
0 CA "copy" "case 0" 32 32
0 BL simple "copy" CASE 32 32
1 BL simple "copy" DO 32 36
1 BL logical "copy" DO_1 32 36
1 BL logical "copy" DO_N 32 36
0 CA "copy" "case 3" 33 33
1 BL simple "copy" CASE 33 33
1 CA "copy" "case 2" 34 34
2 BL simple "copy" CASE 34 34
1 CA "copy" "case 1" 35 35
3 BL simple "copy" CASE 35 36
1/2 CE "copy" "--n > 0" 36 36
0 BL implicit "copy" DEFAULT 31 37
2 PR return "copy" 38 38
2 PR proc "none" 41 42
2 BL simple "none" BODY 42 47
1 CA "none" "case 1" 44 44
1 BL simple "none" CASE 44 44
1 BL implicit "none" DEFAULT 43 44
2 BL implicit "none" DEFAULT 45 45
2 PR return "none" 46 46
1 PR proc "main" 49 50
1 BL simple "main" BODY 50 57
8 BL simple "main" FOR 53 53
0 BL logical "main" FOR_0 52 53
0 BL logical "main" FOR_1 52 53
1 BL logical "main" FOR_N 52 53
8/1 CE "main" "i < 9" 52 52
8 AP "main" "printf" 53 53
8 AP "main" "kind" 53 53
1 AP "main" "printf" 54 54
1 AP "main" "copy" 54 54
1 AP "main" "copy" 54 54
1 AP "main" "printf" 55 55
1 AP "main" "none" 55 55
1 AP "main" "none" 55 55
1 PR return "main" 56 56
*/
