/* Lines that a preprocessor leaves out, and lines that look like its own.
# 1 is no marker in a comment,
# 52 "neither.c" is this
#line 7 "nor.c"
*/
#define BOTH(a, b) ((a) && (b))
#define SET(where, what) if (where) { where = what; }

static int one(int a) { return a; }

static int use(int a, int b)
{
    int rest = 0;
  #ifdef NOT_DEFINED
    more
    than
    eight
    lines
    that
    are
    left
    out
  #endif
    if (BOTH(one(a), b))
        rest = 1; /*
# 12 lines on
*/
#	if defined NOT_DEFINED
    nothing
#	else
    while (rest > 4)
        rest--;
#	endif
      #  if 0
    /* again
       more
       than
       eight
       lines
       than
       a
       preprocessor
       prints */
      #  endif
    SET(b,
        one(
            3))
    return BOTH(rest,
                one(b)); }
/*
#line 3
*/
#line 900 "grammar.y"
static int renamed(int a)
{
#line 17
    return one(a);
#line 65 "lines.c"
}

int main(void)
{
    return use(1, 2) + renamed(3) == 4 ? 0 : 1;
}

/* expected
4 PR proc "one" 9 9
4 BL simple "one" BODY 9 9
4 PR return "one" 9 9
1 PR proc "use" 11 12
1 BL simple "use" BODY 12 49
1 BL simple "use" THEN 25 25
0 BL implicit "use" ELSE 24 25
1/0 CE "use" "one(a)" 24 24
1/0 CE "use" "b" 24 24
1,0,0 CC TTTFFX 1
1 AP "use" "one" 24 24
0 BL simple "use" WHILE 32 32
1 BL logical "use" WHILE_0 31 32
0 BL logical "use" WHILE_1 31 32
0 BL logical "use" WHILE_N 31 32
0/1 CE "use" "rest > 4" 31 31
1 BL simple "use" THEN 45 45
0 BL implicit "use" ELSE 45 45
1/0 CE "use" "b" 45 45
1 AP "use" "one" 46 47
1 PR return "use" 48 49
1/0 CE "use" "rest" 48 48
1/0 CE "use" "one(b)" 48 48
1,0,0 CC TTTFFX 1
1 AP "use" "one" 49 49
1 PR proc "renamed" 54 55
1 BL simple "renamed" BODY 55 59
1 PR return "renamed" 57 57
1 AP "renamed" "one" 57 57
1 PR proc "main" 61 62
1 BL simple "main" BODY 62 64
1 PR return "main" 63 63
1/0 CE "main" "use(1, 2) + renamed(3) == 4" 63 63
1 AP "main" "use" 63 63
1 AP "main" "renamed" 63 63
*/
