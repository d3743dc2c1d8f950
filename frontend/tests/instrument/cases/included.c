#include <stdio.h>
#include "parts/small.h"
#define ROUND first
#define LIMIT 1
#include "parts/rounds.inc"
#undef ROUND
#undef LIMIT
#define ROUND second
#define LIMIT 5
#include "parts/rounds.inc"

static int pick(int n)
{
    switch (n) {
#include "parts/entries.def"
    }
    return n;
}

#line 400 "grammar.y"
static int parsed(int n)
{
    if (n)
        return __LINE__;
    return 0;
}
#line 29 "included.c"

int main(void)
{
    printf("%d %d %d\n", first(2), second(2), small(2));
    printf("%d %d\n", pick(2), parsed(1));
    return 0;
}

/* expected
options: --headers
1 PR proc "small" 1 2
1 BL simple "small" BODY 2 4
1 PR return "small" 3 3
section rounds.inc
1 PR proc "first" 1 2
1 BL simple "first" BODY 2 4
1 PR return "first" 3 3
1 PR proc "second" 1 2
1 BL simple "second" BODY 2 4
1 PR return "second" 3 3
section included.c
1 PR proc "pick" 12 13
1 BL simple "pick" BODY 13 18
1 CA "pick" "case 2" 15 15
1 BL simple "pick" CASE 15 15
0 CA "pick" "case 3" 15 15
1 BL simple "pick" CASE 15 15
0 BL implicit "pick" DEFAULT 14 16
1 PR return "pick" 17 17
1 PR proc "parsed" 21 22
1 BL simple "parsed" BODY 22 26
1 BL simple "parsed" THEN 24 24
0 BL implicit "parsed" ELSE 23 24
1/0 CE "parsed" "n" 23 23
1 PR return "parsed" 24 24
0 PR return "parsed" 25 25
1 PR proc "main" 29 30
1 BL simple "main" BODY 30 34
1 AP "main" "printf" 31 31
1 AP "main" "first" 31 31
1 AP "main" "second" 31 31
1 AP "main" "small" 31 31
1 AP "main" "printf" 32 32
1 AP "main" "pick" 32 32
1 AP "main" "parsed" 32 32
1 PR return "main" 33 33
*/
