static inline int twice(int a) { return a ? 2 * a : 0; }
