# The sample second-stage loader: prints that it was started, waits for a key and restarts the machine.

        .include "contract.inc"

        .ascii  "Sample second-stage loader of the emergency diskette.\r\n"
        .org    loader + 0x1FE
        .byte   0x55, 0xAA

        .ascii  "QZOR"
        .byte   blocks
entry:
        movw    %cs, %ax
        movw    %ax, %ds
        cld
        movw    $(message - segment), %si
1:      lodsb
        testb   %al, %al
        jz      2f
        movb    $0x0E, %ah
        movw    $0x0007, %bx
        int     $0x10
        jmp     1b
2:      xorb    %ah, %ah
        int     $0x16                           # wait for a key
        movw    $0x40, %ax
        movw    %ax, %ds
        movw    $0x1234, 0x72                   # skip the memory test
        ljmp    $0xFFFF, $0

message:
        .asciz  "\r\nQZLOADER started. Press any key to restart.\r\n"

        loader_end
