#define PART 7
