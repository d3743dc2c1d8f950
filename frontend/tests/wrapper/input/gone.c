#include "there is no such header.h"
int gone;
