#define _XOPEN_SOURCE 700
#include "registry.h"

#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>

extern int at_quick_exit(void (*function)(void));

static const char* const keywords[VELDA_KEYWORDS] = {"TP", "TA", "TB", "TE"};

/* --- Tests and parts --- */

static void put_text(struct velda_registry* registry, const char* text) {
    velda_put(&registry->file, text, (unsigned int)strlen(text));
}

static void put_quoted(struct velda_registry* registry, const char* text) {
    put_text(registry, "\"");
    for (; *text != '\0'; text++) {
        if (*text == '"' || *text == '\\')
            put_text(registry, "\\");
        velda_put(&registry->file, text, 1);
    }
    put_text(registry, "\"");
}

static void put_date(struct velda_registry* registry) {
    const struct velda_settings* settings = &registry->settings;
    const long long seconds =
        settings->date_form == VELDA_DATE_SECONDS ? settings->date_seconds : registry->test.seconds;

    if (settings->date_form == VELDA_DATE_TEXT) {
        put_text(registry, "DT ");
        put_quoted(registry, settings->date_text);
        put_text(registry, "\n");
    } else if (settings->date_form != VELDA_DATE_NONE && seconds > 0 && seconds <= 2147483647) {
        velda_put_line(&registry->file, "DT", (unsigned int)seconds);
    }
}

/* Puts the lines that begin the test, once. */
static void begin_test(struct velda_registry* registry) {
    const struct velda_test* test = &registry->test;

    if (registry->test_begun)
        return;
    registry->test_begun = 1;
    registry->any_test = 1;
    put_text(registry, "NT");
    if (test->name[0] != '\0') {
        put_text(registry, " ");
        put_quoted(registry, test->name);
    }
    if (test->number != VELDA_NO_NUMBER) {
        put_text(registry, " ");
        velda_put_number(&registry->file, (unsigned int)test->number);
    }
    if (test->service != VELDA_NO_NUMBER) {
        put_text(registry, " ");
        velda_put_number(&registry->file, (unsigned int)test->service);
    }
    put_text(registry, "\n");
    put_date(registry);
    if (registry->settings.counted)
        put_text(registry, "CO\n");
}

/* Puts the lines that begin a part, unless it is the part under way. */
static void begin_part(struct velda_registry* registry, const struct velda_section* section) {
    if (registry->part_begun && registry->part_key == section->key &&
        registry->part_checksum == section->checksum)
        return;
    begin_test(registry);
    velda_put_line(&registry->file, "FT", section->key);
    velda_put_line(&registry->file, "DC", section->checksum);
    registry->part_key = section->key;
    registry->part_checksum = section->checksum;
    registry->part_begun = 1;
}

static void put_hit(struct velda_registry* registry, enum velda_keyword keyword, unsigned int identifier,
                    unsigned int count) {
    if (registry->settings.counted)
        velda_put_counted_line(&registry->file, keywords[keyword], identifier, count);
    else
        velda_put_line(&registry->file, keywords[keyword], identifier);
}

/* --- Counters --- */

/* Works out the formula at *word and moves *word behind it. A sum below 0 is 0, a sum above 32 bits the largest. */
static unsigned int formula_value(const unsigned int** word, const velda_count* counters) {
    velda_count sum = 0;
    unsigned int term;

    if (**word == VELDA_NO_TERM) {
        (*word)++;
        return 0;
    }
    do {
        term = *(*word)++;
        if (term & VELDA_TERM_MINUS)
            sum -= counters[term / VELDA_TERM_COUNTER];
        else
            sum += counters[term / VELDA_TERM_COUNTER];
    } while (term & VELDA_TERM_MORE);
    if (sum >> 63 != 0)
        return 0;
    return sum > 0xFFFFFFFFu ? 0xFFFFFFFFu : (unsigned int)sum;
}

static void put_section(struct velda_registry* registry, const struct velda_section* section,
                        const velda_count* counters) {
    const unsigned int* word = section->formulas;
    unsigned int keyword;
    unsigned int item;

    for (keyword = 0; keyword < VELDA_KEYWORDS; keyword++)
        for (item = 0; item < section->items[keyword]; item++) {
            const unsigned int count = formula_value(&word, counters);

            if (count > 0) {
                begin_part(registry, section);
                put_hit(registry, (enum velda_keyword)keyword, item, count);
            }
        }
}

static int counts(const struct velda_unit* unit) {
    return unit->version == VELDA_ABI_VERSION && unit->counter_count > 0;
}

static void put_counters(struct velda_registry* registry) {
    const struct velda_unit* unit;
    unsigned int i;

    for (unit = registry->units; unit != NULL; unit = unit->next)
        if (counts(unit))
            for (i = 0; i < unit->section_count; i++)
                if (unit->sections[i].formulas != NULL)
                    put_section(registry, &unit->sections[i], unit->counters);
}

static void clear_counters(struct velda_registry* registry) {
    const struct velda_unit* unit;

    for (unit = registry->units; unit != NULL; unit = unit->next)
        if (counts(unit))
            memset(unit->counters, 0, unit->counter_count * sizeof unit->counters[0]);
}

/* --- Hits in their order --- */

/* Turns the hits that are kept into text. Signal handlers are kept out: they may hit, too. */
static void put_hits(struct velda_registry* registry) {
    sigset_t all;
    sigset_t mask;
    unsigned int count;
    unsigned int i;

    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &mask);
    count = registry->hit_count < VELDA_HITS ? registry->hit_count : VELDA_HITS;
    for (i = 0; i < count; i++) {
        const struct velda_hit hit = registry->hits[i];

        registry->hits[i].section = NULL;
        if (hit.section == NULL)
            continue;
        begin_part(registry, hit.section);
        put_hit(registry, (enum velda_keyword)(hit.item % VELDA_KEYWORDS), hit.item / VELDA_KEYWORDS, 1);
    }
    registry->hit_count = 0;
    sigprocmask(SIG_SETMASK, &mask, NULL);
}

static struct velda_registry* registry_in_use(void);

/* A signal handler that hits takes the places behind the one that is being filled; one that jumps out leaves an empty
   place. When the places are used up, whoever notices first turns them into text. */
void veldacc_hit(const struct velda_section* section, unsigned int item) {
    struct velda_registry* registry = velda_this_copy.at;
    unsigned int place;

    if (registry == NULL)
        registry = registry_in_use();
    if (registry->closed)
        return;
    while ((place = __atomic_fetch_add(&registry->hit_count, 1, __ATOMIC_RELAXED)) >= VELDA_HITS)
        put_hits(registry);
    registry->hits[place].item = item;
    registry->hits[place].section = section;
}

/* --- The trace --- */

static void put_rest(void* argument) {
    struct velda_registry* registry = argument;

    put_counters(registry);
    if (!registry->any_test)
        begin_test(registry);
}

static void write_trace(struct velda_registry* registry) {
    if (registry->closed)
        return;
    put_hits(registry);
    put_rest(registry);
    registry->closed = 1;
    velda_finish_file(&registry->file);
}

void veldacc_write(void) {
    struct velda_registry* registry = registry_in_use();
    int test_begun;
    int any_test;

    if (registry->closed)
        return;
    put_hits(registry);
    test_begun = registry->test_begun;
    any_test = registry->any_test;
    velda_publish_copy(&registry->file, put_rest, registry);
    registry->test_begun = test_begun;
    registry->any_test = any_test;
    registry->part_begun = 0;
}

void veldacc_begin_test(const char* name, int number, int service) {
    struct velda_registry* registry = registry_in_use();

    if (registry->closed)
        return;
    put_hits(registry);
    put_counters(registry);
    clear_counters(registry);
    velda_name_test(&registry->test, name, number, service);
    registry->test_begun = 0;
    registry->part_begun = 0;
}

/* --- Copies of the library --- */

static void end_at_quick_exit(void) {
    write_trace(velda_this_copy.at);
}

/* What the parent hit is the parent's; the child goes on with the same test, in a trace of its own. */
static void begin_child(void) {
    struct velda_registry* registry = velda_this_copy.at;

    if (registry == NULL)
        return;
    clear_counters(registry);
    memset(registry->hits, 0, sizeof registry->hits);
    registry->hit_count = 0;
    registry->test_begun = 0;
    registry->any_test = 0;
    registry->part_begun = 0;
    velda_forget_file(&registry->file);
}

static struct velda_registry* registry_in_use(void) {
    struct velda_copy* const this_copy = &velda_this_copy;
    struct velda_copy* first;

    if (this_copy->at != NULL)
        return this_copy->at;
    first = velda_find_first_copy();
    if (first == NULL) {
        this_copy->at = &this_copy->own;
        this_copy->first = &this_copy->list;
        velda_read_settings(&this_copy->own.settings, &this_copy->own.test, this_copy->own.file.program,
                            VELDA_PROGRAM_SIZE, this_copy->own.file.pattern, VELDA_PATH_SIZE);
    } else {
        this_copy->at = first->at;
        this_copy->first = first->first;
    }
    this_copy->next = *this_copy->first;
    *this_copy->first = this_copy;
    pthread_atfork(NULL, NULL, begin_child);
    if (this_copy->in_program)
        (void)at_quick_exit(end_at_quick_exit);
    return this_copy->at;
}

/* This copy is going to be unloaded. If it owns the registry, another copy takes it over. */
static void leave_copies(void) {
    struct velda_copy* const this_copy = &velda_this_copy;
    struct velda_copy** link = this_copy->first;
    struct velda_copy* other;

    while (*link != this_copy)
        link = &(*link)->next;
    *link = this_copy->next;
    other = *this_copy->first;
    if (this_copy->at != &this_copy->own || other == NULL)
        return;
    other->own = this_copy->own;
    other->list = this_copy->list;
    for (this_copy->list = NULL, link = &other->list; *link != NULL; link = &(*link)->next) {
        (*link)->at = &other->own;
        (*link)->first = &other->list;
    }
}

/* --- Units --- */

static int same_sections(const struct velda_unit* a, const struct velda_unit* b) {
    unsigned int i;

    if (a->section_count != b->section_count || a->counter_count != b->counter_count)
        return 0;
    for (i = 0; i < a->section_count; i++)
        if (a->sections[i].key != b->sections[i].key || a->sections[i].checksum != b->sections[i].checksum ||
            a->sections[i].formula_words != b->sections[i].formula_words)
            return 0;
    for (i = 0; i < a->section_count; i++)
        if (a->sections[i].formula_words > 0 &&
            memcmp(a->sections[i].formulas, b->sections[i].formulas,
                   a->sections[i].formula_words * sizeof a->sections[i].formulas[0]) != 0)
            return 0;
    return 1;
}

/* A copy of the unit in one piece of memory, without counts; null if there is no memory. */
static struct velda_unit* copy_unit(const struct velda_unit* unit) {
    size_t words = 0;
    unsigned int i;
    struct velda_unit* copy;
    velda_count* counters;
    struct velda_section* sections;
    unsigned int* formulas;

    for (i = 0; i < unit->section_count; i++)
        words += unit->sections[i].formula_words;
    copy = calloc(1, sizeof *copy + unit->counter_count * sizeof *counters +
                         unit->section_count * sizeof *sections + words * sizeof *formulas);
    if (copy == NULL)
        return NULL;
    *copy = *unit;
    counters = (velda_count*)(void*)(copy + 1);
    sections = (struct velda_section*)(void*)(counters + unit->counter_count);
    formulas = (unsigned int*)(void*)(sections + unit->section_count);
    memcpy(sections, unit->sections, unit->section_count * sizeof *sections);
    for (i = 0; i < unit->section_count; i++) {
        if (sections[i].formulas == NULL)
            continue;
        memcpy(formulas, sections[i].formulas, sections[i].formula_words * sizeof *formulas);
        sections[i].formulas = formulas;
        formulas += sections[i].formula_words;
    }
    copy->counters = counters;
    copy->sections = sections;
    return copy;
}

/* Keeps the counts of a unit that has left and is going to be unloaded; all loads of one library share one copy. */
static void keep_counts(struct velda_registry* registry, const struct velda_unit* unit) {
    struct velda_unit* kept = registry->units;
    unsigned int i;

    while (kept != NULL && !(kept->version == VELDA_ABI_VERSION && same_sections(kept, unit)))
        kept = kept->next;
    if (kept == NULL) {
        kept = copy_unit(unit);
        if (kept == NULL) {
            velda_warn("no memory to keep the hits of an unloaded library", NULL, 0);
            return;
        }
        kept->next = registry->units;
        registry->units = kept;
    }
    for (i = 0; i < unit->counter_count; i++)
        kept->counters[i] += unit->counters[i];
}

static void join(struct velda_registry* registry, struct velda_unit* unit) {
    if (unit->version != VELDA_ABI_VERSION) {
        velda_warn("an object was made by another version of veldacc, its hits are lost: compile it again",
                   NULL, 0);
        begin_test(registry);
        velda_put_line(&registry->file, "EI", 0x20);
    }
    unit->next = registry->units;
    registry->units = unit;
    registry->joined++;
    velda_this_copy.joined++;
}

static void take_out(struct velda_registry* registry, const struct velda_unit* unit) {
    struct velda_unit** link = &registry->units;

    while (*link != NULL && *link != unit)
        link = &(*link)->next;
    if (*link != NULL)
        *link = unit->next;
}

/* A unit of the program leaves when the program ends; its memory, and that of libraries that end after it, stays. A unit
   of a library may be about to be unloaded. */
static void leave(struct velda_registry* registry, struct velda_unit* unit) {
    if (velda_this_copy.in_program)
        registry->program_ends = 1;
    registry->joined--;
    velda_this_copy.joined--;
    if (registry->joined == 0) {
        write_trace(registry);
    } else if (!registry->program_ends) {
        put_hits(registry);
        take_out(registry, unit);
        if (counts(unit))
            keep_counts(registry, unit);
    }
    if (velda_this_copy.joined == 0 && !registry->program_ends)
        leave_copies();
}

void veldacc_has_to_link_this_program_too(struct velda_unit* unit, int joins) {
    struct velda_registry* registry = registry_in_use();

    if (joins)
        join(registry, unit);
    else
        leave(registry, unit);
}
