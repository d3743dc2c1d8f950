/* Where the units of a program, and of the shared libraries that it uses, come together.

   The library is linked into each of them, because every one has to work in a program that is not instrumented itself;
   hidden copies would each write a trace. So a copy looks for the others when it is first used: every copy has a note in
   the file it is linked into (visible in memory whatever version scripts hide) that tells where the copy is. All copies
   use the registry of the one that was there first. When that one is unloaded, another takes its registry over. */
#ifndef VELDA_REGISTRY_H
#define VELDA_REGISTRY_H

#include "settings.h"
#include "trace_file.h"
#include "velda_runtime.h"

/* A hit of an --ordered build, before it becomes text. */
struct velda_hit {
    const struct velda_section* section; /* null: nothing here */
    unsigned int item;
};

enum { VELDA_HITS = 8192 };

struct velda_registry {
    struct velda_unit* units; /* those that have joined and not left, and copies of unloaded ones */
    unsigned int joined;      /* how many of them have joined and not left */
    int program_ends;         /* units leave because the program ends: they stay where they are in memory */
    int closed;               /* the trace is written; nothing counts any more */
    struct velda_settings settings;
    struct velda_test test; /* the test under way */
    int test_begun;         /* its NT line has been put */
    int any_test;           /* the NT line of some test has been put */
    unsigned int part_key;  /* of the FT line put last, while part_begun */
    unsigned int part_checksum;
    int part_begun;
    unsigned int hit_count; /* may run past VELDA_HITS for a moment, see veldacc_hit */
    struct velda_hit hits[VELDA_HITS];
    struct velda_trace_file file;
};

/* One for each file that the library is linked into. */
struct velda_copy {
    struct velda_registry* at; /* the registry in use; null before the first use */
    struct velda_copy* next;   /* of those that use the same registry, this one among them */
    struct velda_copy** first; /* where their list begins */
    struct velda_copy* list;   /* the list, in the copy that owns the registry */
    unsigned int joined;       /* units that joined through this copy */
    int in_program;            /* linked into the program itself, not into a shared library */
    struct velda_registry own;
};

VELDA_INTERNAL extern struct velda_copy velda_this_copy;

/* The copy that was there first, or null; sets velda_this_copy.in_program. */
VELDA_INTERNAL struct velda_copy* velda_find_first_copy(void);

#endif
