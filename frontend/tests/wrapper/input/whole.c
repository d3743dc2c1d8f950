#include <stdio.h>
#include "part.h"
int part(int a);
int main(void) { printf("%d %d\n", part(0), part(PART)); return part(1) == PART ? 5 : 6; }
