#include "winlayer/include/winnls.h"

#include "winlayer/machine.h"

UINT WINAPI GetACP() {
    winlayer::entered(__func__);
    return winlayer::Machine::current().ansiCodePage;
}
