#include <stdio.h>

static int turns(int n)
{
    int sum = 0;
    while (sum < n)
        sum++;
    for (int i = 0; i < n; i++) {
        if (i == 2)
            break;
        sum += i;
    }
    do
        sum--;
    while (sum > 0);
    for (;;) {
        if (sum++ == n)
            return sum;
    }
}

static int jumps(int n)
{
    int i = 0;
    while (1) {
        for (int j = 0; j < 2; j++)
            if (++i > n)
                goto out;
    }
out:
    do {
        i++;
    } while (0);
    while (0)
        i--;
    return i;
}

int main(void)
{
    printf("%d %d %d\n", turns(0), turns(1), turns(3));
    printf("%d\n", jumps(2));
    return 0;
}

/* expected
3 PR proc "turns" 3 4
3 BL simple "turns" BODY 4 20
4 BL simple "turns" WHILE 7 7
1 BL logical "turns" WHILE_0 6 7
1 BL logical "turns" WHILE_1 6 7
1 BL logical "turns" WHILE_N 6 7
4/3 CE "turns" "sum < n" 6 6
4 BL simple "turns" FOR 8 12
1 BL logical "turns" FOR_0 8 12
1 BL logical "turns" FOR_1 8 12
1 BL logical "turns" FOR_N 8 12
4/2 CE "turns" "i < n" 8 8
1 BL simple "turns" THEN 10 10
3 BL implicit "turns" ELSE 9 10
1/3 CE "turns" "i == 2" 9 9
6 BL simple "turns" DO 14 14
2 BL logical "turns" DO_1 13 15
1 BL logical "turns" DO_N 13 15
3/3 CE "turns" "sum > 0" 15 15
8 BL simple "turns" FOR 16 19
0 BL logical "turns" FOR_1 16 19
3 BL logical "turns" FOR_N 16 19
3 BL simple "turns" THEN 18 18
5 BL implicit "turns" ELSE 17 18
3/5 CE "turns" "sum++ == n" 17 17
3 PR return "turns" 18 18
1 PR proc "jumps" 22 23
1 BL simple "jumps" BODY 23 37
2 BL simple "jumps" WHILE 25 29
0 BL logical "jumps" WHILE_1 25 29
1 BL logical "jumps" WHILE_N 25 29
2 CA "jumps" "1" 25 25
3 BL simple "jumps" FOR 27 28
0 BL logical "jumps" FOR_0 26 28
1 BL logical "jumps" FOR_1 26 28
1 BL logical "jumps" FOR_N 26 28
3/1 CE "jumps" "j < 2" 26 26
1 BL simple "jumps" THEN 28 28
2 BL implicit "jumps" ELSE 27 28
1/2 CE "jumps" "++i > n" 27 27
1 BL simple "jumps" DO 31 33
1 CA "jumps" "0" 33 33
0 BL simple "jumps" WHILE 35 35
1 CA "jumps" "0" 34 34
1 PR return "jumps" 36 36
1 PR proc "main" 39 40
1 BL simple "main" BODY 40 44
1 AP "main" "printf" 41 41
1 AP "main" "turns" 41 41
1 AP "main" "turns" 41 41
1 AP "main" "turns" 41 41
1 AP "main" "printf" 42 42
1 AP "main" "jumps" 42 42
1 PR return "main" 43 43
*/
