/* Compiles only where the optimiser removes the call. */
extern void never(void) __attribute__((error("not optimised")));
static inline void check(int a) { if (a != 3) never(); }
int use(void) { check(3); return 1; }
int main(void) { return use() - 1; }
