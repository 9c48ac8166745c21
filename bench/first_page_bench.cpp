// From CreateComponentUI to the first page shown and painted, headless, in the reference host's frame.
#include <windows.h>

#include <benchmark/benchmark.h>

#include "host/frame/component.h"
#include "host/frame/wizard_frame.h"

namespace {

using namespace host;

const std::string suite = programFolder() + "..\\host\\";

class Host {
public:
    Host() : support_(suite + "qxdlgsup.dll", ExitCode::failure), frame_(GetModuleHandleA(nullptr), events_) {
        frame_.show();
    }
    void show(Component& component) {
        component.create(frame_.window());
        frame_.dispatchWaiting();
    }

private:
    FrameEvents events_;
    LoadedModule support_;
    WizardFrame frame_;
};

void FirstPage(benchmark::State& state) {
    Host host;
    Component component(suite + "QXCMendwell.dll");
    for (auto _ : state) {
        host.show(component);
        state.PauseTiming();
        component.destroy();
        state.ResumeTiming();
    }
}
BENCHMARK(FirstPage);

// The component's library is loaded each time, and unloaded.
void LoadAndFirstPage(benchmark::State& state) {
    Host host;
    for (auto _ : state) {
        Component component(suite + "QXCMendwell.dll");
        host.show(component);
    }
}
BENCHMARK(LoadAndFirstPage);

}  // namespace
