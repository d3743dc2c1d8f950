int other_part(int a) { while (a > 3) a -= 3; return a; }
