one
two
