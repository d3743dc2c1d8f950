#define _XOPEN_SOURCE 700
#include "trace_file.h"

#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

enum { HIGHEST_SUFFIX = 999999, DECIMAL_SIZE = 20, LONGEST_LINE = 24 };

/* What a write must not do to the program: run its signal handlers in the middle (one may jump out of here and hit
   again), or kill it for a file that gets too long or a reader of messages that is gone. */
struct quiet {
    int error;
    sigset_t mask;
    struct sigaction too_long;
    struct sigaction no_reader;
};

static void begin_quiet(struct quiet* quiet) {
    sigset_t all;
    struct sigaction ignore;

    quiet->error = errno;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &quiet->mask);
    memset(&ignore, 0, sizeof ignore);
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGXFSZ, &ignore, &quiet->too_long);
    sigaction(SIGPIPE, &ignore, &quiet->no_reader);
}

static void end_quiet(const struct quiet* quiet) {
    sigaction(SIGXFSZ, &quiet->too_long, NULL);
    sigaction(SIGPIPE, &quiet->no_reader, NULL);
    sigprocmask(SIG_SETMASK, &quiet->mask, NULL);
    errno = quiet->error;
}

/* --- Messages --- */

/* Not strerror: it may translate, and so allocate and read files, in the middle of the program. */
static const struct {
    int error;
    const char* text;
} reasons[] = {
    {ENOSPC, "No space left on device"},
    {EDQUOT, "Disk quota exceeded"},
    {EFBIG, "File too large"},
    {EACCES, "Permission denied"},
    {EPERM, "Operation not permitted"},
    {EROFS, "Read-only file system"},
    {ENOENT, "No such file or directory"},
    {ENOTDIR, "Not a directory"},
    {EMFILE, "Too many open files"},
    {ENFILE, "Too many open files in system"},
    {ENAMETOOLONG, "File name too long"},
    {EIO, "Input/output error"},
    {EEXIST, "File exists"},
    {ELOOP, "Too many levels of symbolic links"},
};

static const char* reason(int error) {
    size_t i;

    for (i = 0; i < sizeof reasons / sizeof reasons[0]; i++)
        if (reasons[i].error == error)
            return reasons[i].text;
    return "the system refused";
}

static struct iovec piece(const char* text) {
    union {
        const char* given;
        void* wanted;
    } both;
    struct iovec io;

    both.given = text;
    io.iov_base = both.wanted;
    io.iov_len = strlen(text);
    return io;
}

void velda_warn(const char* what, const char* name, int error) {
    struct quiet quiet;
    struct iovec parts[7];
    ssize_t written;

    begin_quiet(&quiet);
    parts[0] = piece("Norvik veldacc - WARNING: ");
    parts[1] = piece(what);
    parts[2] = piece(name ? " " : "");
    parts[3] = piece(name ? name : "");
    parts[4] = piece(error ? ": " : "");
    parts[5] = piece(error ? reason(error) : "");
    parts[6] = piece("\n");
    written = writev(STDERR_FILENO, parts, 7);
    (void)written; /* nowhere to tell it */
    end_quiet(&quiet);
}

/* --- Names --- */

/* A text under construction that remembers whether it fitted. */
struct path {
    char* text;
    size_t length;
    int too_long;
};

static void add_bytes(struct path* path, const char* bytes, size_t length) {
    if (path->length + length >= VELDA_PATH_SIZE) {
        path->too_long = 1;
        return;
    }
    memcpy(path->text + path->length, bytes, length);
    path->length += length;
    path->text[path->length] = '\0';
}

static void add_text(struct path* path, const char* text) {
    add_bytes(path, text, strlen(text));
}

static void add_number(struct path* path, unsigned long number) {
    char digits[DECIMAL_SIZE];
    size_t at = sizeof digits;

    do {
        digits[--at] = (char)('0' + number % 10);
        number /= 10;
    } while (number != 0);
    add_bytes(path, digits + at, sizeof digits - at);
}

/* The pattern's name, with -suffix before its extension unless suffix is 0. */
static int trace_name(const struct velda_trace_file* file, unsigned long suffix, char out[VELDA_PATH_SIZE]) {
    struct path path = {out, 0, 0};
    const char* slash = strrchr(file->pattern, '/');
    const char* dot = strrchr(slash ? slash + 1 : file->pattern, '.');
    const char* at;

    out[0] = '\0';
    for (at = file->pattern; *at != '\0'; at++) {
        if (at == dot && suffix != 0) {
            add_text(&path, "-");
            add_number(&path, suffix);
        }
        if (at[0] != '%' || strchr("ep%", at[1]) == NULL || at[1] == '\0')
            add_bytes(&path, at, 1);
        else if (*++at == 'e')
            add_text(&path, file->program);
        else if (*at == 'p')
            add_number(&path, (unsigned long)getpid());
        else
            add_text(&path, "%");
    }
    if (dot == NULL && suffix != 0) {
        add_text(&path, "-");
        add_number(&path, suffix);
    }
    return path.too_long ? ENAMETOOLONG : 0;
}

/* Creates a temporary file beside the trace; its name is in file->temporary. Gives a descriptor, or -1 and errno. */
static int create_temporary(struct velda_trace_file* file) {
    unsigned long attempt;

    for (attempt = 0; attempt <= HIGHEST_SUFFIX; attempt++) {
        struct path path = {file->temporary, 0, 0};
        int error = trace_name(file, 0, file->temporary);
        int descriptor;

        path.length = strlen(file->temporary);
        add_text(&path, ".");
        add_number(&path, (unsigned long)getpid());
        if (attempt != 0) {
            add_text(&path, "-");
            add_number(&path, attempt);
        }
        add_text(&path, ".part");
        if (error != 0 || path.too_long) {
            errno = ENAMETOOLONG;
            break;
        }
        descriptor = open(file->temporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
    return -1;
}

/* Gives the temporary file the name, unless it is taken. A link does that in one step; where there are no links, the
   name is taken first. Gives 0 or the error. */
static int take_name(const char* temporary, const char* name) {
    int descriptor;

    if (link(temporary, name) == 0) {
        unlink(temporary);
        return 0;
    }
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS && errno != EMLINK)
        return errno;
    descriptor = open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0)
        return errno;
    close(descriptor);
    if (rename(temporary, name) == 0)
        return 0;
    unlink(name);
    return errno;
}

static int install(struct velda_trace_file* file) {
    unsigned long suffix;
    int error = EEXIST;

    if (file->name[0] != '\0')
        return rename(file->temporary, file->name) == 0 ? 0 : errno;
    for (suffix = 0; suffix <= HIGHEST_SUFFIX && error == EEXIST; suffix++) {
        error = trace_name(file, suffix, file->name);
        if (error == 0)
            error = take_name(file->temporary, file->name);
    }
    if (error != 0)
        file->name[0] = '\0';
    return error;
}

/* --- Text --- */

static void give_up(struct velda_trace_file* file, int error) {
    char name[VELDA_PATH_SIZE];

    file->failed = 1;
    file->used = 0;
    if (file->temporary[0] != '\0')
        unlink(file->temporary);
    file->temporary[0] = '\0';
    trace_name(file, 0, name);
    velda_warn("cannot write trace", name, error);
}

static int write_all(int descriptor, const char* text, size_t length) {
    while (length > 0) {
        ssize_t written = write(descriptor, text, length);

        if (written < 0 && errno != EINTR)
            return errno;
        if (written > 0) {
            text += written;
            length -= (size_t)written;
        }
    }
    return 0;
}

/* Appends the text to the temporary file, which is made first if there is none. Gives 0 or the error. */
static int append_text(struct velda_trace_file* file) {
    int descriptor = file->temporary[0] == '\0' ? create_temporary(file)
                                                : open(file->temporary, O_WRONLY | O_APPEND | O_CLOEXEC);
    int error;

    if (descriptor < 0) {
        error = errno;
        file->temporary[0] = '\0';
        return error;
    }
    error = write_all(descriptor, file->text, file->used);
    file->used = 0;
    if (close(descriptor) != 0 && error == 0)
        error = errno;
    return error;
}

static void flush(struct velda_trace_file* file) {
    struct quiet quiet;
    int error;

    if (file->failed || file->pattern[0] == '\0') {
        file->used = 0;
        return;
    }
    begin_quiet(&quiet);
    error = append_text(file);
    if (error != 0)
        give_up(file, error);
    end_quiet(&quiet);
}

void velda_put(struct velda_trace_file* file, const char* text, unsigned int length) {
    while (length > 0) {
        unsigned int part = VELDA_TEXT_SIZE - file->used;

        if (part > length)
            part = length;
        memcpy(file->text + file->used, text, part);
        file->used += part;
        text += part;
        length -= part;
        if (file->used == VELDA_TEXT_SIZE)
            flush(file);
    }
}

static char* number_text(char* at, unsigned int number) {
    do {
        *at++ = "0123456789abcdef"[number & 15];
        number >>= 4;
    } while (number != 0);
    return at;
}

static char* line_start(char* at, const char* keyword, unsigned int number) {
    *at++ = keyword[0];
    *at++ = keyword[1];
    *at++ = ' ';
    return number_text(at, number);
}

/* Where a line can be written, with room for the longest one. */
static char* line_room(struct velda_trace_file* file) {
    if (file->used > VELDA_TEXT_SIZE - LONGEST_LINE)
        flush(file);
    return file->text + file->used;
}

static void end_line(struct velda_trace_file* file, char* at) {
    *at++ = '\n';
    file->used = (unsigned int)(at - file->text);
}

void velda_put_line(struct velda_trace_file* file, const char* keyword, unsigned int number) {
    end_line(file, line_start(line_room(file), keyword, number));
}

void velda_put_counted_line(struct velda_trace_file* file, const char* keyword, unsigned int number,
                            unsigned int count) {
    char* at = line_start(line_room(file), keyword, number);

    *at++ = ' ';
    end_line(file, number_text(at, count));
}

void velda_put_number(struct velda_trace_file* file, unsigned int number) {
    char digits[8];

    velda_put(file, digits, (unsigned int)(number_text(digits, number) - digits));
}

/* --- The whole --- */

void velda_finish_file(struct velda_trace_file* file) {
    struct quiet quiet;
    int error;

    if (file->failed || file->pattern[0] == '\0')
        return;
    begin_quiet(&quiet);
    error = append_text(file);
    if (error == 0)
        error = install(file);
    if (error != 0)
        give_up(file, error);
    file->temporary[0] = '\0';
    end_quiet(&quiet);
}

/* Text is empty: it serves as the buffer. */
static void copy_file(struct velda_trace_file* file, const char* from) {
    int descriptor = open(from, O_RDONLY | O_CLOEXEC);
    ssize_t got = 0;

    if (descriptor < 0) {
        give_up(file, errno);
        return;
    }
    while (!file->failed) {
        do
            got = read(descriptor, file->text, VELDA_TEXT_SIZE);
        while (got < 0 && errno == EINTR);
        if (got <= 0)
            break;
        file->used = (unsigned int)got;
        flush(file);
    }
    if (got < 0)
        give_up(file, errno);
    close(descriptor);
}

void velda_publish_copy(struct velda_trace_file* file, void (*rest)(void*), void* argument) {
    struct quiet quiet;
    char kept[VELDA_PATH_SIZE];

    if (file->failed || file->pattern[0] == '\0')
        return;
    begin_quiet(&quiet);
    if (file->used > 0 || file->temporary[0] != '\0')
        flush(file);
    strcpy(kept, file->temporary);
    file->temporary[0] = '\0';
    if (kept[0] != '\0')
        copy_file(file, kept);
    rest(argument);
    velda_finish_file(file);
    if (file->failed && kept[0] != '\0') {
        unlink(kept);
        kept[0] = '\0';
    }
    strcpy(file->temporary, kept);
    end_quiet(&quiet);
}

void velda_forget_file(struct velda_trace_file* file) {
    file->temporary[0] = '\0';
    file->name[0] = '\0';
    file->used = 0;
}
