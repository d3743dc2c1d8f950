/* For programs that run several tests in one process, or that end in a way that writes no trace.

   Both calls do nothing when the program has not been built by veldacc: no library is needed then. They may stand in
   any source of the program, instrumented or not. Errors are told on standard error and change nothing else.

   velda_begin_test(name, number, service)   Ends the test that is under way, if it hit anything, and begins another:
                                             what is hit from now on is its. name: text, null for none; number: 0 to
                                             2147483647, -1 for none; service number: the same, needs a number.
   velda_write()                             Brings the trace up to date: what has been hit so far is in a complete
                                             file when it returns. Later calls, and the end of the program, replace that
                                             file by one that holds more. Call it before _exit, abort or exec. */
#ifndef VELDA_H
#define VELDA_H

/* Decisions of these macros are not the program's: system headers are not described. */
#if defined(__GNUC__)
#pragma GCC system_header
#endif

#if defined(__GNUC__) && defined(__ELF__)

#ifdef __cplusplus
extern "C" {
#endif
extern void veldacc_begin_test(const char* name, int number, int service) __attribute__((weak));
extern void veldacc_write(void) __attribute__((weak));
#ifdef __cplusplus
}
#endif

#define velda_begin_test(name, number, service)                                                              \
    (veldacc_begin_test ? veldacc_begin_test((name), (number), (service)) : (void)0)
#define velda_write() (veldacc_write ? veldacc_write() : (void)0)

#else

#define velda_begin_test(name, number, service) ((void)(name), (void)(number), (void)(service))
#define velda_write() ((void)0)

#endif

#endif
