/* Counts temperatures out of bounds; 0 stands for no reading. */
static int is_bad(int value, int low, int high)
{
    if (value != 0 && (value < low || value > high))
        return 1;
    return 0;
}

int count_bad(const int *values, int n)
{
    int bad = 0;

    for (int i = 0; i < n; i++)
        if (is_bad(values[i], 15, 30))
            bad++;
    return bad;
}
