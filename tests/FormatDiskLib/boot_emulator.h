#pragma once
#include <unicorn/unicorn.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "FormatDiskLib/test_diskette.h"

// A PC that can do just what a start from diskette needs: a processor in real mode, one megabyte of memory,
// and a BIOS that reads sectors of drive 0, prints, and answers every other call by ending the run.
class BootEmulator {
public:
    enum class End { LoaderEntered, Halted, Lost };

    explicit BootEmulator(const TestDiskette& diskette) : diskette_(diskette) {
        check(uc_open(UC_ARCH_X86, UC_MODE_16, &engine_));
        check(uc_mem_map(engine_, 0, memorySize, UC_PROT_ALL));
        const unsigned char halt = 0xF4;
        check(uc_mem_write(engine_, restart, &halt, 1));
        uc_hook hook;
        check(uc_hook_add(engine_, &hook, UC_HOOK_INTR, reinterpret_cast<void*>(onInterrupt), this, 1, 0));
        check(
            uc_hook_add(engine_, &hook, UC_HOOK_CODE, reinterpret_cast<void*>(onEntry), this, entry, entry));
    }
    ~BootEmulator() { uc_close(engine_); }
    BootEmulator(const BootEmulator&) = delete;
    BootEmulator& operator=(const BootEmulator&) = delete;

    // Loads sector 0 as a BIOS does and runs it at linear address 7C00h, CS being the given segment.
    End boot(std::uint16_t segment = 0) {
        std::array<unsigned char, 512> sector{};
        if (!diskette_.read(0, sector) || sector[510] != 0x55 || sector[511] != 0xAA) {
            return End::Halted;
        }
        check(uc_mem_write(engine_, 0x7C00, sector.data(), sector.size()));
        for (const int id : {UC_X86_REG_AX, UC_X86_REG_BX, UC_X86_REG_CX, UC_X86_REG_BP, UC_X86_REG_SI,
                             UC_X86_REG_DI, UC_X86_REG_DS, UC_X86_REG_ES}) {
            set(id, 0xA5A5);
        }
        set(UC_X86_REG_DX, 0);
        set(UC_X86_REG_SS, 0x0030);
        set(UC_X86_REG_SP, 0x0100);
        set(UC_X86_REG_FLAGS, 0x0402);  // interrupts off, string instructions downward
        set(UC_X86_REG_CS, segment);
        return run(0x7C00);
    }

    // Goes on at the loader's entry, where boot() has stopped.
    End enterLoader() {
        stopAtLoader_ = false;
        return run(entry);
    }

    std::uint16_t reg(int id) const {
        std::uint16_t value = 0;
        check(uc_reg_read(engine_, id, &value));
        return value;
    }
    std::vector<unsigned char> memory(std::uint64_t address, std::size_t size) const {
        std::vector<unsigned char> bytes(size);
        check(uc_mem_read(engine_, address, bytes.data(), size));
        return bytes;
    }
    unsigned word(std::uint64_t address) const {
        const auto bytes = memory(address, 2);
        return bytes[0] + 256U * bytes[1];
    }

    std::string screen;
    std::vector<unsigned> tried;       // sectors asked for, in order
    std::map<unsigned, int> failures;  // how often a sector still fails
    int keys = 0;                      // keys asked for
    std::string trouble;               // what made the end Lost

private:
    static constexpr std::size_t memorySize = 0x100000;
    static constexpr std::uint64_t entry = 0x8205;
    static constexpr std::uint64_t restart = 0xFFFF0;
    static constexpr std::uint64_t patience = 20000000;  // microseconds

    static void check(uc_err error) {
        if (error != UC_ERR_OK) {
            throw std::runtime_error(uc_strerror(error));
        }
    }
    void set(int id, unsigned value) {
        const auto narrow = static_cast<std::uint16_t>(value);
        check(uc_reg_write(engine_, id, &narrow));
    }

    End run(std::uint64_t address) {
        end_ = End::Halted;
        // Unicorn 2.1 goes on running what it has translated of code that the program has written over.
        check(uc_ctl_remove_cache(engine_, 0, memorySize));
        const uc_err error = uc_emu_start(engine_, address, memorySize, patience, 0);
        if (error != UC_ERR_OK) {
            trouble = uc_strerror(error);
            return End::Lost;
        }
        // A halted processor stands behind its HLT; any other has run out of time.
        const std::uint64_t next = reg(UC_X86_REG_CS) * 16U + reg(UC_X86_REG_IP);
        if (end_ == End::Halted && memory(next - 1, 1)[0] != 0xF4) {
            trouble = "never came to an end";
            return End::Lost;
        }
        return end_;
    }

    void stop(End end) {
        end_ = end;
        uc_emu_stop(engine_);
    }

    static void onEntry(uc_engine*, std::uint64_t, std::uint32_t, void* self) {
        auto* pc = static_cast<BootEmulator*>(self);
        if (pc->stopAtLoader_) {
            pc->stop(End::LoaderEntered);
        }
    }

    static void onInterrupt(uc_engine*, std::uint32_t number, void* self) {
        auto* pc = static_cast<BootEmulator*>(self);
        const unsigned service = pc->reg(UC_X86_REG_AX) >> 8;
        if (number == 0x13 && service == 2) {
            pc->readSector();
        } else if (number == 0x10 && service == 0x0E && pc->reg(UC_X86_REG_BX) == 7) {
            pc->screen += static_cast<char>(pc->reg(UC_X86_REG_AX) & 0xFF);
        } else if (number == 0x16 && service == 0) {
            ++pc->keys;
        } else {
            pc->trouble = "interrupt " + std::to_string(number) + ", service " + std::to_string(service);
            pc->stop(End::Lost);
        }
    }

    // Keeps no register and no flag that a BIOS has been known to lose.
    void readSector() {
        const unsigned cx = reg(UC_X86_REG_CX);
        const unsigned dx = reg(UC_X86_REG_DX);
        const unsigned cylinder = cx >> 8 | (cx & 0xC0) << 2;
        const unsigned sector = cx & 0x3F;
        const unsigned head = dx >> 8;
        const unsigned number = (cylinder * 2 + head) * 18 + sector - 1;
        const bool asked = (dx & 0xFF) == 0 && (reg(UC_X86_REG_AX) & 0xFF) == 1 && cylinder < 80 &&
                           head < 2 && sector >= 1 && sector <= 18;
        tried.push_back(number);
        std::array<unsigned char, 512> bytes{};
        const bool good = asked && !failsNow(number) && diskette_.read(number, bytes);
        if (good) {
            check(uc_mem_write(engine_, reg(UC_X86_REG_ES) * 16U + reg(UC_X86_REG_BX), bytes.data(), 512));
        }
        set(UC_X86_REG_AX, good ? 0x0001 : 0x0400);
        set(UC_X86_REG_CX, 0xA5A5);
        set(UC_X86_REG_DX, 0xA5A5);
        set(UC_X86_REG_FLAGS, 0x0402U | (good ? 0U : 1U));  // interrupts off, strings downward
    }

    bool failsNow(unsigned number) {
        const auto planned = failures.find(number);
        return planned != failures.end() && planned->second-- > 0;
    }

    const TestDiskette& diskette_;
    uc_engine* engine_ = nullptr;
    End end_ = End::Halted;
    bool stopAtLoader_ = true;
};
