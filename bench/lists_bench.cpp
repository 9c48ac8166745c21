#include <benchmark/benchmark.h>

#include <algorithm>
#include <list>
#include <random>
#include <string>
#include <vector>

#include "UtilsList.h"

// Sorting, side by side with the standard library's list of the same texts.

namespace {

const std::vector<std::string>& Texts(std::size_t count) {
    static std::vector<std::string> texts;
    std::mt19937 random(12345);
    if (texts.size() != count) {
        texts.clear();
        for (std::size_t i = 0; i < count; ++i) {
            std::string text(8 + random() % 24, ' ');
            std::generate(text.begin(), text.end(), [&] { return static_cast<char>('a' + random() % 26); });
            texts.push_back(text);
        }
    }
    return texts;
}

// Paths of one folder differ late only.
const std::vector<std::string>& Paths(std::size_t count) {
    static std::vector<std::string> paths;
    if (paths.size() != count) {
        paths = Texts(count);
        for (std::string& path : paths) path.insert(0, "C:\\Mendwell\\Recovery\\");
    }
    return paths;
}

using Source = const std::vector<std::string>& (*)(std::size_t);

void SortStringList(benchmark::State& state, Source source, int method) {
    UTILS::UtilsStringList list;
    for (const std::string& text : source(static_cast<std::size_t>(state.range(0)))) list.AddString(text);
    for (auto _ : state) {
        state.PauseTiming();
        {
            UTILS::UtilsStringList unsorted(list);
            state.ResumeTiming();
            unsorted.Sort(method);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

void SortStandardList(benchmark::State& state, Source source) {
    const auto& texts = source(static_cast<std::size_t>(state.range(0)));
    const std::list<std::string> list(texts.begin(), texts.end());
    for (auto _ : state) {
        state.PauseTiming();
        {
            std::list<std::string> unsorted(list);
            state.ResumeTiming();
            unsorted.sort();
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

void ReadStringList(benchmark::State& state) {
    UTILS::UtilsStringList list;
    for (const std::string& text : Texts(static_cast<std::size_t>(state.range(0)))) list.AddString(text);
    for (auto _ : state) {
        for (DWORD i = 0; i < list.size(); ++i) benchmark::DoNotOptimize(list.Retrieve(i));
    }
}

void AppendToStringList(benchmark::State& state) {
    const auto& texts = Texts(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        UTILS::UtilsStringList list;
        for (const std::string& text : texts) list.AddString(text);
    }
}

void AppendToStandardList(benchmark::State& state) {
    const auto& texts = Texts(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        std::list<std::string> list;
        for (const std::string& text : texts) list.push_back(text);
    }
}

BENCHMARK_CAPTURE(SortStringList, method_0_texts, Texts, 0)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortStandardList, texts, Texts)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortStringList, method_0_paths, Paths, 0)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortStandardList, paths, Paths)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortStringList, method_2_texts, Texts, 2)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortStringList, method_0_texts, Texts, 0)->Arg(512)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SortStandardList, texts, Texts)->Arg(512)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadStringList)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(AppendToStringList)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(AppendToStandardList)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
