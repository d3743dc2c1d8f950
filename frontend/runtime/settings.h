/* What the environment says about traces. Read once, when the program starts: it may change its environment later.

   VELDA_MODE      plain (each hit once; the default) or counted
   VELDA_TIO       name of the trace, default velda-%e-%p.tio: %e program, %p process id, %% a percent sign. A relative
                   name starts in the directory in which the program starts. Empty: no trace.
   VELDA_TEST      name of the test, default the program's name
   VELDA_TESTNO    its number, 0 to 2147483647, default none
   VELDA_SERVICE   its service number, the same; needs VELDA_TESTNO
   VELDA_DATE      its date: seconds since 1970 (all digits) or a text; empty: none; default when the test begins

   What cannot be used is told on standard error and left out. */
#ifndef VELDA_SETTINGS_H
#define VELDA_SETTINGS_H

#include "velda_runtime.h"

enum { VELDA_NAME_SIZE = 1024, VELDA_DATE_SIZE = 128, VELDA_NO_NUMBER = -1 };

struct velda_test {
    char name[VELDA_NAME_SIZE]; /* empty: none; what does not fit is cut off */
    int number;                 /* VELDA_NO_NUMBER: none */
    int service;
    long long seconds; /* when it began */
};

enum velda_date_form { VELDA_DATE_OF_BEGIN, VELDA_DATE_SECONDS, VELDA_DATE_TEXT, VELDA_DATE_NONE };

struct velda_settings {
    int counted;
    enum velda_date_form date_form;
    int date_seconds;
    char date_text[VELDA_DATE_SIZE];
};

/* Fills all of it. `program` is %e, `pattern` the name of traces with the directory in front of it; both of the size
   given. */
VELDA_INTERNAL void velda_read_settings(struct velda_settings* settings, struct velda_test* test,
                                        char* program, unsigned int program_size, char* pattern,
                                        unsigned int pattern_size);

/* A test that begins now. Name null: none; numbers below 0: none. */
VELDA_INTERNAL void velda_name_test(struct velda_test* test, const char* name, int number, int service);

#endif
