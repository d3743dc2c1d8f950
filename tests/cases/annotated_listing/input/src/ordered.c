int open()
{
    if (key && wet)
        log(1); log(2);
    while (wet)
        step();
    return 0;
}

int shut() { return 1; }
