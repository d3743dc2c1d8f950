if (key
|| open)
