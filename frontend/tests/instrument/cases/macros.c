#include <assert.h>
#include <ctype.h>
#include <stdio.h>

#define LOW 1
#define IS_OK(x) ((x) > LOW && \
                  (x) < 10) /* twice */
#define CHECK(c) if (!(c)) bad++
#define TWICE(e) ((e) + (e))
#define FUNCTION(name, op) static int name(int a) { return a op LOW ? a : -a; }
#define LIKELY(x) __builtin_expect(!!(x), 1)
#define PASTE(a, b) a##b
#define OPEN {
#define CLOSE }
#define NEGATIVE -(1)
#define WHEN(c) if (c) {
#define END }

static int bad;

FUNCTION(above, >)

static int one(int a) { return a > LOW; }

static int use(int first, int b)
{
    if (IS_OK(first /* now */ + 1) || isdigit(b))
        bad += TWICE(one(b && first));
    CHECK(first == LOW &&
          b);
    assert(first || b);
    if (LIKELY(b > first) && PASTE(fir, st) != NEGATIVE)
        return
            above(b);
    WHEN(b) bad--; END
    return b;
}

static int braces(int a) OPEN return a; CLOSE

int main(void)
{
    printf("%d\n", use(3, '1'));
    printf("%d\n", use(1, 0));
    printf("%d %d\n", bad, braces(4));
    return 0;
}

/* expected
1 PR proc "above" 21 21
1 BL simple "above" BODY 21 21
1 PR return "above" 21 21
1/0 CE "above" "a > LOW" 21 21
4 PR proc "one" 23 23
4 BL simple "one" BODY 23 23
4 PR return "one" 23 23
2 PR proc "use" 25 26
2 BL simple "use" BODY 26 37
2 BL simple "use" THEN 28 28
0 BL implicit "use" ELSE 27 28
2/0 CE "use" "(first + 1) > LOW" 27 27
2/0 CE "use" "(first + 1) < 10" 27 27
0/0 CE "use" "isdigit(b)" 27 27
2,0,0,0,0 CC TTXTFTFXTTFFFXF 3
2 AP "use" "one" 28 28
1/1 CE "use" "b" 28 28
1/0 CE "use" "first" 28 28
1,0,1 CC TTTFFX 1
2 AP "use" "one" 28 28
1/1 CE "use" "b" 28 28
1/0 CE "use" "first" 28 28
1,0,1 CC TTTFFX 1
2 BL simple "use" THEN 29 30
0 BL implicit "use" ELSE 29 30
1/1 CE "use" "first == LOW" 29 29
0/1 CE "use" "b" 30 30
1,1,0 CC TFFXTT 2
2/0 CE "use" "first" 31 31
0/0 CE "use" "b" 31 31
2,0,0 CC TXFTFF 2
1 BL simple "use" THEN 33 34
1 BL implicit "use" ELSE 32 34
1/1 CE "use" "b > first" 32 32
1/0 CE "use" "PASTE(fir, st) != NEGATIVE" 32 32
1,0,1 CC TTTFFX 1
1 PR return "use" 33 34
1 AP "use" "above" 34 34
0 BL simple "use" THEN 35 35
1 BL implicit "use" ELSE 35 35
0/1 CE "use" "b" 35 35
1 PR return "use" 36 36
1 PR proc "braces" 39 39
1 BL simple "braces" BODY 39 39
1 PR return "braces" 39 39
1 PR proc "main" 41 42
1 BL simple "main" BODY 42 47
1 AP "main" "printf" 43 43
1 AP "main" "use" 43 43
1 AP "main" "printf" 44 44
1 AP "main" "use" 44 44
1 AP "main" "printf" 45 45
1 AP "main" "braces" 45 45
1 PR return "main" 46 46
*/
