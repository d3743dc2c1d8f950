twice
