#include <stdlib.h>
#warning "look here"
static int no_caller(void) { return 1; }
int flow(int a) { if (a) return 1; }
int assigned(int a) { int b; if (a = 1) b = 2; return (int)malloc; }
