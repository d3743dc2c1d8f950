#include "part.h"
int part(int a) { return a ? PART : -PART; }
