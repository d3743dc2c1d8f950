#define _XOPEN_SOURCE 700
#include "settings.h"

#include "trace_file.h"

#include <stdlib.h>
#include <string.h>
#include <time.h>
#include <unistd.h>

enum { LARGEST_NUMBER = 2147483647 };

#if defined(__linux__)
extern char* program_invocation_short_name __attribute__((weak));
#endif

/* Copies what fits. A line end would end the line of the trace. */
static void copy_text(char* out, unsigned int size, const char* text) {
    unsigned int i;

    for (i = 0; i + 1 < size && text[i] != '\0'; i++)
        out[i] = text[i];
    out[i] = '\0';
}

static void copy_line(char* out, unsigned int size, const char* text) {
    copy_text(out, size, text);
    for (; *out != '\0'; out++)
        if (*out == '\n' || *out == '\r')
            *out = ' ';
}

/* A number of digits only, up to the largest that a trace may have; VELDA_NO_NUMBER if the text is something else. */
static int plain_number(const char* text) {
    long long number = 0;

    if (*text == '\0')
        return VELDA_NO_NUMBER;
    for (; *text != '\0'; text++) {
        if (*text < '0' || *text > '9')
            return VELDA_NO_NUMBER;
        number = number * 10 + (*text - '0');
        if (number > LARGEST_NUMBER)
            return VELDA_NO_NUMBER;
    }
    return (int)number;
}

static int read_number(const char* variable) {
    const char* text = getenv(variable);
    int number;

    if (text == NULL || *text == '\0')
        return VELDA_NO_NUMBER;
    number = plain_number(text);
    if (number == VELDA_NO_NUMBER)
        velda_warn("not a number from 0 to 2147483647, left out:", variable, 0);
    return number;
}

static void read_mode(struct velda_settings* settings) {
    const char* mode = getenv("VELDA_MODE");

    settings->counted = mode != NULL && strcmp(mode, "counted") == 0;
    if (mode != NULL && *mode != '\0' && !settings->counted && strcmp(mode, "plain") != 0)
        velda_warn("VELDA_MODE is plain or counted, taken as plain:", mode, 0);
}

static void read_date(struct velda_settings* settings) {
    const char* date = getenv("VELDA_DATE");
    int seconds;

    settings->date_form = VELDA_DATE_OF_BEGIN;
    if (date == NULL)
        return;
    seconds = plain_number(date);
    if (*date == '\0') {
        settings->date_form = VELDA_DATE_NONE;
    } else if (seconds > 0) {
        settings->date_form = VELDA_DATE_SECONDS;
        settings->date_seconds = seconds;
    } else if (strchr(date, '"') != NULL) {
        velda_warn("VELDA_DATE holds a quote, left out:", date, 0);
    } else {
        settings->date_form = VELDA_DATE_TEXT;
        copy_line(settings->date_text, sizeof settings->date_text, date);
    }
}

/* Puts the directory that the program starts in, and a slash, at the front of the pattern. Its percent signs are none of
   the pattern's: doubled. Gives the length; 0 if it does not fit or is not known, and names start where the program is. */
static unsigned int put_directory(char* pattern, unsigned int size) {
    char* directory = pattern + size / 2;
    unsigned int length = 0;

    if (getcwd(directory, size / 2) == NULL)
        return 0;
    for (; *directory != '\0' && length + 3 < size / 2; directory++) {
        if (*directory == '%')
            pattern[length++] = '%';
        pattern[length++] = *directory;
    }
    if (*directory != '\0')
        return 0;
    if (pattern[length - 1] != '/')
        pattern[length++] = '/';
    return length;
}

/* The directory belongs to the name: programs change theirs. */
static void read_pattern(char* pattern, unsigned int size) {
    const char* given = getenv("VELDA_TIO");
    unsigned int length = 0;

    pattern[0] = '\0';
    if (given == NULL)
        given = "velda-%e-%p.tio";
    if (*given == '\0')
        return;
    if (*given != '/')
        length = put_directory(pattern, size);
    if (strlen(given) < size - length) {
        copy_text(pattern + length, size - length, given);
    } else {
        pattern[0] = '\0';
        velda_warn("VELDA_TIO is too long, no trace is written", NULL, 0);
    }
}

void velda_name_test(struct velda_test* test, const char* name, int number, int service) {
    copy_line(test->name, sizeof test->name, name ? name : "");
    test->number = number < 0 ? VELDA_NO_NUMBER : number;
    test->service = service < 0 || number < 0 ? VELDA_NO_NUMBER : service;
    test->seconds = (long long)time(NULL);
}

void velda_read_settings(struct velda_settings* settings, struct velda_test* test, char* program,
                         unsigned int program_size, char* pattern, unsigned int pattern_size) {
    const char* name = getenv("VELDA_TEST");
    int number = read_number("VELDA_TESTNO");
    int service = read_number("VELDA_SERVICE");

    copy_text(program, program_size, "program");
#if defined(__linux__)
    if (&program_invocation_short_name != NULL && program_invocation_short_name != NULL)
        copy_text(program, program_size, program_invocation_short_name);
#endif
    read_mode(settings);
    read_date(settings);
    read_pattern(pattern, pattern_size);
    if (service != VELDA_NO_NUMBER && number == VELDA_NO_NUMBER)
        velda_warn("VELDA_SERVICE needs VELDA_TESTNO, left out", NULL, 0);
    velda_name_test(test, name != NULL && *name != '\0' ? name : program, number, service);
}
