same
