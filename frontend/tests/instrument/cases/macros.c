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
2 PR proc "one" 23 23
2 BL simple "one" BODY 23 23
2 PR return "one" 23 23
2 PR proc "use" 25 26
2 BL simple "use" BODY 26 37
1 BL simple "use" THEN 28 28
1 BL implicit "use" ELSE 27 28
1/1 CE "use" "(first + 1) > LOW" 27 27
1/0 CE "use" "(first + 1) < 10" 27 27
0/1 CE "use" "isdigit(b)" 27 27
1,0,0,0,1 CC TTXTFTFXTTFFFXF 3
1 AP "use" "one" 28 28
1/0 CE "use" "b" 28 28
1/0 CE "use" "first" 28 28
1,0,0 CC TTTFFX 1
1 AP "use" "one" 28 28
1/0 CE "use" "b" 28 28
1/0 CE "use" "first" 28 28
1,0,0 CC TTTFFX 1
2 BL simple "use" THEN 29 29
0 BL implicit "use" ELSE 29 30
1/1 CE "use" "first == LOW" 29 29
0/1 CE "use" "b" 30 30
2,0,0 CC
*/
