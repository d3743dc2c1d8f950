#ifdef __x86_64__
        .text
        .globl answer
answer: mov $42, %eax
        ret
#endif
        .section .note.GNU-stack,"",%progbits
