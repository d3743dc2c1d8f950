/* The interface between instrumented code and the run-time library; its story is in velda_abi.inc. */
#ifndef VELDA_RUNTIME_H
#define VELDA_RUNTIME_H

#include "velda_abi.inc"

enum { VELDA_ABI_VERSION = 1 };

/* Keywords of hits, in the order in which a section lists its items. */
enum velda_keyword { VELDA_TP, VELDA_TA, VELDA_TB, VELDA_TE, VELDA_KEYWORDS };

/* Words of formulas. */
enum { VELDA_TERM_MORE = 1, VELDA_TERM_MINUS = 2, VELDA_TERM_COUNTER = 4 };
#define VELDA_NO_TERM 0xFFFFFFFFu

/* Names that several sources of the library share stay inside the program or shared library that it is linked into. */
#define VELDA_INTERNAL __attribute__((visibility("hidden")))

/* What the macros of velda.h call; declared there as weak, for programs without this library. */
VELDA_INTERNAL void veldacc_begin_test(const char* name, int number, int service);
VELDA_INTERNAL void veldacc_write(void);

#endif
