static inline int small(int n)
{
    return n < 3;
}
