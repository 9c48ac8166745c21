// Strings beside std::string, memcmp, memmem and a plain loop, on the same data in one run. Compare the names
// that differ in their last part only.
#include <windows.h>

#include <benchmark/benchmark.h>
#include <string.h>

#include <string>
#include <vector>

#include "UtilsString.h"

namespace {

using UTILS::UtilsByte;
using UTILS::UtilsString;

constexpr int appends = 100000;
constexpr std::size_t mebibyte = 1 << 20;

void AppendCharacter_utils(benchmark::State& state) {
    for (auto _ : state) {
        UtilsString text;
        for (int i = 0; i < appends; ++i) {
            text.Append('x');
        }
        benchmark::DoNotOptimize(text.c_str());
    }
}
BENCHMARK(AppendCharacter_utils);

void AppendCharacter_std(benchmark::State& state) {
    for (auto _ : state) {
        std::string text;
        for (int i = 0; i < appends; ++i) {
            text += 'x';
            benchmark::DoNotOptimize(text);
        }
        benchmark::DoNotOptimize(text.c_str());
    }
}
BENCHMARK(AppendCharacter_std);

template <class String>
void EmptyString(benchmark::State& state) {
    for (auto _ : state) {
        String text;
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(EmptyString<UtilsString>)->Name("EmptyString_utils");
BENCHMARK(EmptyString<std::string>)->Name("EmptyString_std");

template <class String>
void CopyShort(benchmark::State& state) {
    const String source("README.TXT");
    for (auto _ : state) {
        String copy(source);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(CopyShort<UtilsString>)->Name("CopyShort_utils");
BENCHMARK(CopyShort<std::string>)->Name("CopyShort_std");

// Text as names and prose have it: letters and blanks, from a fixed generator.
std::string Text(std::size_t size) {
    std::string text(size, ' ');
    unsigned long long random = 88172645463325252ULL;
    for (char& character : text) {
        random ^= random << 13;
        random ^= random >> 7;
        random ^= random << 17;
        character = random % 6 == 0 ? ' ' : static_cast<char>('a' + random % 26);
    }
    return text;
}

void CompareEqual_utils(benchmark::State& state) {
    const std::string text = Text(mebibyte);
    const UtilsString left = text;
    const UtilsString right = text;
    for (auto _ : state) {
        benchmark::DoNotOptimize(left.Compare(right));
    }
}
BENCHMARK(CompareEqual_utils);

void CompareEqual_memcmp(benchmark::State& state) {
    const std::string text = Text(mebibyte);
    const UtilsString left = text;
    const UtilsString right = text;
    for (auto _ : state) {
        benchmark::DoNotOptimize(memcmp(left.c_str(), right.c_str(), left.length()));
    }
}
BENCHMARK(CompareEqual_memcmp);

const char* const needles[] = {"#", "needle", "a long needle that stands at the very end of the text"};

void SearchEnd_utils(benchmark::State& state) {
    const std::string needle = needles[state.range(0)];
    const UtilsString text = Text(mebibyte) + needle;
    for (auto _ : state) {
        benchmark::DoNotOptimize(text.Search(needle));
    }
}
BENCHMARK(SearchEnd_utils)->Arg(0)->Arg(1)->Arg(2);

void SearchEnd_memmem(benchmark::State& state) {
    const std::string needle = needles[state.range(0)];
    const std::string text = Text(mebibyte) + needle;
    for (auto _ : state) {
        benchmark::DoNotOptimize(memmem(text.data(), text.size(), needle.data(), needle.size()));
    }
}
BENCHMARK(SearchEnd_memmem)->Arg(0)->Arg(1)->Arg(2);

constexpr std::size_t scrambled = 64 * mebibyte;

void Xor_utils(benchmark::State& state) {
    const std::vector<unsigned char> data(scrambled, 'x');
    UtilsByte bytes(data.data(), static_cast<DWORD>(scrambled));
    for (auto _ : state) {
        bytes.XORData(0x93);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * scrambled));
}
BENCHMARK(Xor_utils)->Unit(benchmark::kMillisecond);

void Xor_loop(benchmark::State& state) {
    std::vector<unsigned char> data(scrambled, 'x');
    for (auto _ : state) {
        for (unsigned char& byte : data) {
            byte = static_cast<unsigned char>(byte ^ 0x93);
        }
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * scrambled));
}
BENCHMARK(Xor_loop)->Unit(benchmark::kMillisecond);

}  // namespace
