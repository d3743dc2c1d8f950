#include <stdarg.h>
#include <stdatomic.h>
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

static _Atomic int shared;
static int atomic(int n) { return(atomic_fetch_add(&shared, n) && twice(shared++)); }
static int local(int n)
{
    __label__ end;
    if (n) { __label__ end; goto end; end:; }
    goto end;
end:
    return(twice(n));
}

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
    printf("%d\n", atomic(1));
    printf("%d\n", atomic(2) + local(1));
    return (int)strlen("ab") - 2 ? 1 : 0;
}

/* expected
6 PR proc "twice" 10 10
6 BL simple "twice" BODY 10 10
6 PR return "twice" 10 10
2 PR proc "inside" 12 13
2 BL simple "inside" BODY 13 16
1 BL simple "inside" THEN 14 14
1 BL implicit "inside" ELSE 14 14
1/1 CE "inside" "k > 2" 14 14
3 BL simple "inside" WHILE 14 14
0 BL logical "inside" WHILE_0 14 14
1 BL logical "inside" WHILE_1 14 14
1 BL logical "inside" WHILE_N 14 14
3/2 CE "inside" "k > 0" 14 14
3/0 CE "inside" "n" 14 14
3,0,2 CC TTTFFX 1
1/1 CE "inside" "n > 1" 14 14
1 AP "inside" "table[0]" 14 14
1 AP "inside" "*table[1]" 14 14
2 PR return "inside" 15 15
1 PR proc "sizes" 18 19
1 BL simple "sizes" BODY 19 24
1/0 CE "sizes" "n > 3" 20 20
1 PR return "sizes" 23 23
1 PR proc "threaded" 26 27
1 BL simple "threaded" BODY 27 40
5 BL simple "threaded" FOR 30 37
0 BL logical "threaded" FOR_1 30 37
1 BL logical "threaded" FOR_N 30 37
1 PR return "threaded" 39 39
1 PR proc "select_type" 42 43
1 BL simple "select_type" BODY 43 49
1/0 CE "select_type" "n" 44 44
1 CA "select_type" "1" 44 44
1 AP "select_type" "twice" 44 44
1/0 CE "select_type" "f->high" 45 45
1/0 CE "select_type" "f->low" 46 46
1/0 CE "select_type" "f->low" 46 46
0/1 CE "select_type" "f->seen++" 46 46
0,1,0 CC TTTFFX 1
1 AP "select_type" "twice" 47 47
1 PR return "select_type" 48 48
3 PR proc "nothing" 51 51
3 BL simple "nothing" BODY 51 51
3 PR endproc "nothing" 51 51
2 PR proc "pass" 52 52
2 BL simple "pass" BODY 52 52
2 BL simple "pass" THEN 52 52
0 BL implicit "pass" ELSE 52 52
2/0 CE "pass" "n" 52 52
2 PR return "pass" 52 52
2 AP "pass" "nothing" 52 52
0 PR return "pass" 52 52
1 PR proc "make" 54 54
1 BL simple "make" BODY 54 54
1 PR return "make" 54 54
1/0 CE "make" "n > 2" 54 54
1 PR proc "sum" 56 57
1 BL simple "sum" BODY 57 65
2 BL simple "sum" WHILE 62 62
0 BL logical "sum" WHILE_0 61 62
0 BL logical "sum" WHILE_1 61 62
1 BL logical "sum" WHILE_N 61 62
2/1 CE "sum" "count-- > 0" 61 61
1 PR return "sum" 64 64
2 PR proc "name" 67 67
2 BL simple "name" BODY 67 67
2 PR return "name" 67 67
1/1 CE "name" "n == 1" 67 67
0/1 CE "name" "n == 2" 67 67
1 AP "name" "pass" 67 67
2 PR proc "into" 69 70
2 BL simple "into" BODY 70 81
1 BL simple "into" THEN 73 73
1 BL implicit "into" ELSE 72 73
1/1 CE "into" "n" 72 72
4 BL simple "into" FOR 74 79
0 BL logical "into" FOR_0 74 79
0 BL logical "into" FOR_1 74 79
2 BL logical "into" FOR_N 74 79
4/2 CE "into" "turns < 3" 74 74
2 BL simple "into" THEN 75 78
2 BL implicit "into" ELSE 75 78
2/2 CE "into" "n > 5" 75 75
2 PR return "into" 80 80
1 PR proc "fields" 83 83
1 BL simple "fields" BODY 83 83
1 PR return "fields" 83 83
1/0 CE "fields" "f->low" 83 83
0/1 CE "fields" "f->is" 83 83
1 AP "fields" "nothing" 83 83
2 PR proc "atomic" 86 86
2 BL simple "atomic" BODY 86 86
2 PR return "atomic" 86 86
1/1 CE "atomic" "atomic_fetch_add(&shared, n)" 86 86
1/0 CE "atomic" "twice(shared++)" 86 86
1,0,1 CC TTTFFX 1
1 AP "atomic" "twice" 86 86
1 PR proc "local" 87 88
1 BL simple "local" BODY 88 94
1 BL simple "local" THEN 90 90
0 BL implicit "local" ELSE 90 90
1/0 CE "local" "n" 90 90
1 PR return "local" 93 93
1 AP "local" "twice" 93 93
1 PR proc "main" 96 97
1 BL simple "main" BODY 97 111
1 AP "main" "printf" 100 100
1 AP "main" "inside" 100 100
1 AP "main" "inside" 100 100
1 AP "main" "printf" 101 101
1 AP "main" "sizes" 101 101
1 AP "main" "printf" 102 102
1 AP "main" "threaded" 102 102
1 AP "main" "printf" 103 103
1 AP "main" "select_type" 103 103
1 AP "main" "pass" 104 104
1 AP "main" "printf" 105 105
1 AP "main" "make" 105 105
1 AP "main" "sum" 105 105
1 AP "main" "name" 105 105
1 AP "main" "name" 105 105
1 AP "main" "printf" 106 106
1 AP "main" "into" 106 106
1 AP "main" "into" 106 106
1 AP "main" "printf" 107 107
1 AP "main" "fields" 107 107
1 AP "main" "printf" 108 108
1 AP "main" "atomic" 108 108
1 AP "main" "printf" 109 109
1 AP "main" "atomic" 109 109
1 AP "main" "local" 109 109
1 PR return "main" 110 110
0/1 CE "main" "(int)strlen(\"ab\") - 2" 110 110
1 AP "main" "strlen" 110 110
*/
