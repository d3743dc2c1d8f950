/* The note of this copy, and the search for those of others: its name is Velda, its type the version of the interface (a
   library of another version is another registry), its contents the distance from the note to velda_this_copy, which the
   linker fills in without a relocation at run time. */
#define _GNU_SOURCE
#include "registry.h"

struct velda_copy velda_this_copy __attribute__((visibility("hidden"), used));

#if defined(__ELF__) && defined(__linux__)

#include <elf.h>
#include <link.h>
#include <stdint.h>
#include <string.h>

__asm__(".pushsection .note.velda,\"a\",%note\n"
        "    .balign 4\n"
        "    .long 6\n" /* bytes of the name */
        "    .long 4\n" /* bytes of the contents */
        "    .long 1\n" /* VELDA_ABI_VERSION */
        "    .asciz \"Velda\"\n"
        "    .balign 4\n"
        "    .long velda_this_copy - .\n"
        "    .popsection\n");

struct search {
    struct velda_copy* first; /* already in use */
    int objects;              /* seen so far; the program is the first */
};

struct note {
    ElfW(Nhdr) header;
    char name[8];
    int32_t distance;
};

static void look_at(struct velda_copy* copy, struct search* search) {
    if (copy == &velda_this_copy)
        velda_this_copy.in_program = search->objects == 0;
    else if (copy->at != NULL && search->first == NULL)
        search->first = copy;
}

static void look_into(const char* at, size_t size, size_t align, struct search* search) {
    const size_t step = align == 8 ? 8 : 4;
    const char* const end = at + size;

    while ((size_t)(end - at) >= sizeof(ElfW(Nhdr))) {
        const struct note* note = (const struct note*)(const void*)at;
        const size_t name_size = (note->header.n_namesz + (size_t)3) / 4 * 4;
        const size_t whole = sizeof(ElfW(Nhdr)) + name_size + note->header.n_descsz;

        if (whole > (size_t)(end - at))
            return;
        if (note->header.n_type == VELDA_ABI_VERSION && note->header.n_namesz == 6 &&
            note->header.n_descsz == 4 && memcmp(note->name, "Velda", 6) == 0)
            look_at((struct velda_copy*)((uintptr_t)&note->distance + (uintptr_t)(intptr_t)note->distance),
                    search);
        at += (whole + step - 1) / step * step < (size_t)(end - at) ? (whole + step - 1) / step * step
                                                                    : (size_t)(end - at);
    }
}

static int look_into_object(struct dl_phdr_info* info, size_t size, void* argument) {
    struct search* search = argument;
    int i;

    (void)size;
    for (i = 0; i < info->dlpi_phnum; i++) {
        const ElfW(Phdr)* header = &info->dlpi_phdr[i];

        if (header->p_type == PT_NOTE)
            look_into((const char*)(info->dlpi_addr + header->p_vaddr), header->p_memsz, header->p_align,
                      search);
    }
    search->objects++;
    return 0;
}

struct velda_copy* velda_find_first_copy(void) {
    struct search search = {NULL, 0};

    dl_iterate_phdr(look_into_object, &search);
    return search.first;
}

#else

struct velda_copy* velda_find_first_copy(void) {
    velda_this_copy.in_program = 1;
    return 0;
}

#endif
