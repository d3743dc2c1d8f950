int f(void) {
    return 1;
}
