# The diskette's boot code: offsets 0x03E to 0x1FF of sector 0.
#
# The BIOS loads the sector at 0000:7C00 and jumps to it. The code copies itself to 7E00h, finds the second
# stage, the loader, in the root directory, reads it to 8000h, checks it and jumps into it. It uses only 8086
# code and the BIOS functions "read sectors" (INT 13h, AH = 02h) and "teletype output" (INT 10h, AH = 0Eh).
# docs/boot-sector.md describes the loader's side.
#
# Every address is a difference of two labels in this section, so the assembler resolves all of them and the
# object needs no linking. The .org lines fix the offset of each part: code that overlaps the next part does
# not assemble.

        .code16                                 # first: newer assemblers refuse .arch i8086 in 32-bit code
        .arch   i8086
        .text

        .set    loaded, 0x7C00                  # where the BIOS loads the sector
        .set    copy, 0x7E00                    # where the code runs
        .set    buffer, 0x8000                  # root directory first, then the loader
        .set    buffer_segment, buffer / 16
        .set    head, buffer + 0x200            # the loader's second sector, which begins with its head
        .set    head_segment, head / 16

        .set    template, .                     # offset 0x03E of the sector
        .set    origin, template - 0x3E - copy  # label - origin = the label's address in the copy

# The parameter block's fields, in the copy.
        .set    sectors_per_cluster, copy + 0x0D
        .set    reserved_sectors, copy + 0x0E
        .set    fat_count, copy + 0x10
        .set    root_entries, copy + 0x11
        .set    sectors_per_fat, copy + 0x16
        .set    sectors_per_track, copy + 0x18
        .set    head_count, copy + 0x1A

# Variables, in the copy: they overlay the work area and start-up code that has already run.
        .set    sector_number, copy + 0x3E      # word: the next sector to read
        .set    first_data_sector, copy + 0x42  # word
        .set    sectors_left, copy + 0x46       # byte
        .set    tries_left, copy + 0x47         # byte

work_area:
        .byte   0, 0, 0, 0xAA, 0x55

# Offset 0x043: the target of the jump at the sector's start.
start:
        cli                                     # the first 8088s take interrupts between SS and SP
        xorw    %ax, %ax
        movw    %ax, %ds
        movw    %ax, %es
        movw    %ax, %ss
        movw    $loaded, %sp
        sti                                     # Ctrl-Alt-Del must work after the code has stopped
        cld
        movw    $loaded, %si
        movw    $copy, %di
        movw    $256, %cx
        rep movsw
        ljmp    $0, $(resident - origin)        # CS becomes 0 even if the BIOS entered at 07C0:0000

# Prints the message and stops.
fail:
        pushw   %cs
        popw    %ds
        movw    $(message - origin), %si
1:      lodsb
        testb   %al, %al
        jz      2f
        movb    $0x0E, %ah
        movw    $0x0007, %bx                    # page 0, colour 7
        int     $0x10
        jmp     1b
2:      hlt
        jmp     2b

# The loader's return address: starts what the loader has put at 7C00h.
        .org    template + 0x82 - 0x3E
restart:
        jmp     origin + loaded

resident:
        movb    fat_count, %al
        xorb    %ah, %ah
        mulw    sectors_per_fat
        addw    reserved_sectors, %ax
        movw    %ax, sector_number              # the root directory's first sector
        movw    root_entries, %bx
        movb    $4, %cl
        shrw    %cl, %bx                        # 16 entries in a sector
        movb    %bl, sectors_left
        addw    %bx, %ax
        movw    %ax, first_data_sector
        call    read

# DX: entries left, SI: current entry.
        movw    root_entries, %dx
        movw    $buffer, %si
entry:
        testw   %dx, %dx
        jz      fail
        cmpb    $0, (%si)                       # never used: the end of the directory
        je      fail
        pushw   %si
        movw    $(loader_name - origin), %di
        movw    $11, %cx
        repe cmpsb                              # a deleted entry differs in its first byte, E5h
        popw    %si
        jne     next_entry
        movw    0x1A(%si), %ax                  # first cluster; an empty file has none
        testw   %ax, %ax
        jnz     found
next_entry:
        addw    $32, %si
        decw    %dx
        jmp     entry

found:
        subw    $2, %ax
        movb    sectors_per_cluster, %cl
        xorb    %ch, %ch
        mulw    %cx
        addw    first_data_sector, %ax
        movw    %ax, sector_number
        movb    0x1D(%si), %al                  # bits 8 to 15 of the file's size
        shrb    $1, %al
        movb    %al, sectors_left
        call    read

        cmpw    $0xAA55, head - 2
        jne     stop
        cmpw    $0x5A51, head                   # "QZ"
        jne     stop
        cmpw    $0x524F, head + 2               # "OR"
        jne     stop
        movb    head + 4, %cl                   # blocks that the checksum covers
        xorb    %ch, %ch
        jcxz    stop
        xorw    %bx, %bx
        movw    $head_segment, %dx
block:
        movw    %dx, %ds
        xorw    %si, %si
        pushw   %cx
        movw    $256, %cx
1:      lodsw
        addw    %ax, %bx
        loop    1b
        popw    %cx
        addw    $32, %dx
        loop    block
        cmpw    $0x5555, %bx
        jne     stop

        xorw    %ax, %ax                        # AL = 0 is part of the loader's contract
        movw    %ax, %ds
        pushw   %cs
        movw    $(restart - origin), %bx
        pushw   %bx
        ljmp    $head_segment, $5

stop:
        jmp     fail

# Reads sectors_left sectors from sector_number to the buffer. Returns with ES = 0.
read:
        movw    $buffer_segment, %ax
        movw    %ax, %es
        xorw    %bx, %bx
next_sector:
        cmpb    $0, sectors_left
        je      read_done
        movb    $2, tries_left
try:
        movw    sector_number, %ax
        xorw    %dx, %dx
        divw    sectors_per_track
        movb    %dl, %cl
        incb    %cl                             # sectors count from 1
        xorw    %dx, %dx
        divw    head_count
        movb    %dl, %dh                        # head
        xorb    %dl, %dl                        # drive 0
        movb    %al, %ch                        # cylinder; its bits 8 and 9 go into CL
        rorb    $1, %ah
        rorb    $1, %ah
        andb    $0xC0, %ah
        orb     %ah, %cl
        movw    $0x0201, %ax
        int     $0x13
        sti                                     # not every BIOS preserves these flags
        cld
        jnc     sector_read
        decb    tries_left
        jnz     try
        jmp     fail
sector_read:
        addw    $512, %bx
        incw    sector_number
        decb    sectors_left
        jmp     next_sector
read_done:
        pushw   %cs
        popw    %es
        ret
code_end:

        .org    template + 0x1C3 - 0x3E
message:
        .asciz  "Disk Error, Press Ctrl-Alt-Del..."

        .org    template + 0x1E5 - 0x3E
loader_name:
        .ascii  "QZLOADERBIN"

        .org    template + 0x1FE - 0x3E
        .byte   0x55, 0xAA
