one
two
three