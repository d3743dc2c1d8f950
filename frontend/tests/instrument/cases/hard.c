#include <stdarg.h>
#include <stdio.h>
#include <string.h>

struct flags { unsigned low : 3; int high : 5; volatile int seen; _Bool is : 1; };

static int (*table[2])(int);

static int twice(x) int x; { return 2 * x; }

static int inside(int n)
{
    int m = ({ int k = n; if (k > 2) k = 2; while (k > 0 && n) k--; k; }) + (n > 1 ? table[0](n) : (*table[1])(n));
    return m;
}

static int sizes(int n, int m)
{
    char a[n > 3 ? n : 3];
    int fixed[sizeof(int) > 2 ? 4 : 8];
    typeof(a) *p = &a;
    return (int)(sizeof a + sizeof fixed + sizeof *p) + (int)sizeof(n && m);
}

static int threaded(const char *code)
{
    static const void *const jump[] = { &&stop, &&up, &&down };
    int value = 0;
    for (;;) {
        goto *jump[*code++ % 3];
up:
        value++;
        continue;
down:
        value--;
    }
stop:
    return value;
}

static int select_type(struct flags *f, int n)
{
    int g = _Generic(n, int: n && 1 ? twice(n) : 0, default: twice(n) || n);
    f->low = f->high ?: n;
    f->seen = f->low ? f->low && f->seen++ : 5;
    __asm__ volatile("" : "+r"(g) : "r"(twice(g)) : "memory");
    return f->low;
}

static void nothing(void) {}
static void pass(int n) { if (n) return nothing(); return; }

static struct flags make(int n) { return (struct flags){ .low = n, .high = n > 2 ? 3 : -1 }; }

static double sum(int count, ...)
{
    va_list list;
    double total = 0;
    va_start(list, count);
    while (count-- > 0)
        total += va_arg(list, double);
    va_end(list);
    return total;
}

static const char *name(int n) { return n == 1 ? "one" : n == 2 ? 0 : (pass(n), "many"); }

static int into(int n)
{
    int turns = 0;
    if (n)
        goto middle;
    for (turns = 1; turns < 3; turns++) {
        if (n > 5) {
middle:
            n--;
        }
    }
    return turns + n;
}

static int fields(struct flags *f) { return (f->low ?: 7) + (f->is ?: 4) + (nothing(), f->low); }

int main(void)
{
    struct flags f = { .high = -2 };
    table[0] = table[1] = twice;
    printf("%d %d\n", inside(1), inside(4));
    printf("%d\n", sizes(5, 1));
    printf("%d\n", threaded("\1\1\2\1\3"));
    printf("%d %d\n", select_type(&f, 3), f.seen);
    pass(1);
    printf("%d %g %s %s\n", make(3).high, sum(2, 1.5, 2.0), name(1), name(3));
    printf("%d %d\n", into(0), into(9));
    printf("%d\n", fields(&f));
    return (int)strlen("ab") - 2 ? 1 : 0;
}

/* expected
4 PR proc "twice" 9 9
4 BL simple "twice" BODY 9 9
4 PR return "twice" 9 9
2 PR proc "inside" 11 12
2 BL simple "inside" BODY 12 15
1 BL simple "inside" THEN 13 13
1 BL implicit "inside" ELSE 13 13
1/1 CE "inside" "k > 2" 13 13
3 BL simple "inside" WHILE 13 13
0 BL logical "inside" WHILE_0 13 13
1 BL logical "inside" WHILE_1 13 13
1 BL logical "inside" WHILE_N 13 13
3/2 CE "inside" "k > 0" 13 13
3/0 CE "inside" "n" 13 13
3,0,2 CC TTTFFX 1
1/1 CE "inside" "n > 1" 13 13
1 AP "inside" "table[0]" 13 13
1 AP "inside" "*table[1]" 13 13
2 PR return "inside" 14 14
1 PR proc "sizes" 17 18
1 BL simple "sizes" BODY 18 23
1/0 CE "sizes" "n > 3" 19 19
1 PR return "sizes" 22 22
1 PR proc "threaded" 25 26
1 BL simple "threaded" BODY 26 39
5 BL simple "threaded" FOR 29 36
0 BL logical "threaded" FOR_1 29 36
1 BL logical "threaded" FOR_N 29 36
1 PR return "threaded" 38 38
1 PR proc "select_type" 41 42
1 BL simple "select_type" BODY 42 48
1/0 CE "select_type" "n" 43 43
1 CA "select_type" "1" 43 43
1 AP "select_type" "twice" 43 43
1/0 CE "select_type" "f->high" 44 44
1/0 CE "select_type" "f->low" 45 45
1/0 CE "select_type" "f->low" 45 45
0/1 CE "select_type" "f->seen++" 45 45
0,1,0 CC TTTFFX 1
1 AP "select_type" "twice" 46 46
1 PR return "select_type" 47 47
3 PR proc "nothing" 50 50
3 BL simple "nothing" BODY 50 50
3 PR endproc "nothing" 50 50
2 PR proc "pass" 51 51
2 BL simple "pass" BODY 51 51
2 BL simple "pass" THEN 51 51
0 BL implicit "pass" ELSE 51 51
2/0 CE "pass" "n" 51 51
2 PR return "pass" 51 51
2 AP "pass" "nothing" 51 51
0 PR return "pass" 51 51
1 PR proc "make" 53 53
1 BL simple "make" BODY 53 53
1 PR return "make" 53 53
1/0 CE "make" "n > 2" 53 53
1 PR proc "sum" 55 56
1 BL simple "sum" BODY 56 64
2 BL simple "sum" WHILE 61 61
0 BL logical "sum" WHILE_0 60 61
0 BL logical "sum" WHILE_1 60 61
1 BL logical "sum" WHILE_N 60 61
2/1 CE "sum" "count-- > 0" 60 60
1 PR return "sum" 63 63
2 PR proc "name" 66 66
2 BL simple "name" BODY 66 66
2 PR return "name" 66 66
1/1 CE "name" "n == 1" 66 66
0/1 CE "name" "n == 2" 66 66
1 AP "name" "pass" 66 66
2 PR proc "into" 68 69
2 BL simple "into" BODY 69 80
1 BL simple "into" THEN 72 72
1 BL implicit "into" ELSE 71 72
1/1 CE "into" "n" 71 71
4 BL simple "into" FOR 73 78
0 BL logical "into" FOR_0 73 78
0 BL logical "into" FOR_1 73 78
2 BL logical "into" FOR_N 73 78
4/2 CE "into" "turns < 3" 73 73
2 BL simple "into" THEN 74 77
2 BL implicit "into" ELSE 74 77
2/2 CE "into" "n > 5" 74 74
2 PR return "into" 79 79
1 PR proc "fields" 82 82
1 BL simple "fields" BODY 82 82
1 PR return "fields" 82 82
1/0 CE "fields" "f->low" 82 82
0/1 CE "fields" "f->is" 82 82
1 AP "fields" "nothing" 82 82
1 PR proc "main" 84 85
1 BL simple "main" BODY 85 97
1 AP "main" "printf" 88 88
1 AP "main" "inside" 88 88
1 AP "main" "inside" 88 88
1 AP "main" "printf" 89 89
1 AP "main" "sizes" 89 89
1 AP "main" "printf" 90 90
1 AP "main" "threaded" 90 90
1 AP "main" "printf" 91 91
1 AP "main" "select_type" 91 91
1 AP "main" "pass" 92 92
1 AP "main" "printf" 93 93
1 AP "main" "make" 93 93
1 AP "main" "sum" 93 93
1 AP "main" "name" 93 93
1 AP "main" "name" 93 93
1 AP "main" "printf" 94 94
1 AP "main" "into" 94 94
1 AP "main" "into" 94 94
1 AP "main" "printf" 95 95
1 AP "main" "fields" 95 95
1 PR return "main" 96 96
0/1 CE "main" "(int)strlen(\"ab\") - 2" 96 96
1 AP "main" "strlen" 96 96
*/
