# A loader for automatic tests: prints that it was started and ends the emulator through its debug-exit device at port
# F4h, with exit status 85 (the device doubles 42 and adds one).

        .include "contract.inc"

        .ascii  "Test loader of the emergency diskette.\r\n"
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
2:      movb    $42, %al
        outb    %al, $0xF4
3:      hlt
        jmp     3b

message:
        .asciz  "\r\nQZLOADER started and leaves.\r\n"

        loader_end
