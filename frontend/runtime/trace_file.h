/* The trace as a file: text is gathered in memory, goes to a temporary file beside the trace when there is more of it, and
   gets the trace's name when it is complete. Nothing here allocates, keeps a file open between two calls, or changes
   errno or what signals do: a program that closes all its descriptors must not find the trace's text in its own files.

       velda-lua-4711.tio.4711.part   ->   velda-lua-4711.tio, or velda-lua-4711-1.tio if that exists

   Anything that fails is told once on standard error; then there is no trace. */
#ifndef VELDA_TRACE_FILE_H
#define VELDA_TRACE_FILE_H

#include "velda_runtime.h"

enum { VELDA_PATH_SIZE = 4096, VELDA_TEXT_SIZE = 65536, VELDA_PROGRAM_SIZE = 256 };

struct velda_trace_file {
    char pattern[VELDA_PATH_SIZE];    /* with %e, %p and %%; empty: no trace is wanted */
    char program[VELDA_PROGRAM_SIZE]; /* %e */
    char temporary[VELDA_PATH_SIZE];  /* the file that text is appended to; empty: none yet */
    char name[VELDA_PATH_SIZE];       /* the trace of this process as it stands; empty: none yet */
    int failed;                       /* told; all that follows is dropped */
    unsigned int used;                /* bytes of text */
    char text[VELDA_TEXT_SIZE];
};

/* Says "Norvik veldacc - WARNING: WHAT NAME: why" on standard error; name null: without; error 0: without a reason. */
VELDA_INTERNAL void velda_warn(const char* what, const char* name, int error);

/* Appends text, of any length. */
VELDA_INTERNAL void velda_put(struct velda_trace_file* file, const char* text, unsigned int length);

/* Appends `keyword number\n` or `keyword number number\n`, the form of traces: hexadecimal, lowest digit first. */
VELDA_INTERNAL void velda_put_line(struct velda_trace_file* file, const char* keyword, unsigned int number);
VELDA_INTERNAL void velda_put_counted_line(struct velda_trace_file* file, const char* keyword,
                                           unsigned int number, unsigned int count);
VELDA_INTERNAL void velda_put_number(struct velda_trace_file* file, unsigned int number);

/* Gives what has been put the trace's name; nothing more can be put behind it. */
VELDA_INTERNAL void velda_finish_file(struct velda_trace_file* file);

/* Puts what `rest` puts behind a copy of what has been put so far, and gives the copy the trace's name. What has been
   put stays as it was. */
VELDA_INTERNAL void velda_publish_copy(struct velda_trace_file* file, void (*rest)(void*), void* argument);

/* In a forked child: text and files so far are the parent's. */
VELDA_INTERNAL void velda_forget_file(struct velda_trace_file* file);

#endif
