#include <cstdio>
extern "C" int part(int a);
int main() { std::printf("C++ %d\n", part(1)); return 0; }
