#include "component/HostBroker.h"

#include <gtest/gtest.h>

#include <memory>

#include "component/CBSTR.h"
#include "component/PropertySection.h"
#include "component/host_objects.h"
#include "component/registration.h"
#include "host_modules.h"

namespace {

class Broker : public testing::Test {
protected:
    Broker() { hostBroker.Start(); }
    ~Broker() override {
        hostBroker.Stop();
        host.reset();
        EXPECT_EQ(GetModuleHandleA("QXPM.DLL"), nullptr) << "the broker has let go of the module";
    }

    void use(const char* make) { host = std::make_unique<HostModule>(make); }
    static HRESULT makeStore() {
        void* object = nullptr;
        const HRESULT result =
            hostBroker.CreateHostObject(CLSID_HostPropertyStore, IID_IHostPropertyStore, &object);
        if (SUCCEEDED(result)) {
            static_cast<IUnknown*>(object)->Release();
        }
        return result;
    }

    std::unique_ptr<HostModule> host;
};

TEST_F(Broker, WithoutAHostEveryRequestIsRefused) {
    EXPECT_FALSE(hostBroker.EnsureHostModule());
    EXPECT_EQ(makeStore(), E_FAIL);
    PropertySection section;
    EXPECT_FALSE(section.Open("Modules", 1));
    char buffer[4] = "old";
    EXPECT_FALSE(section.GetValue("x", buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "");
    EXPECT_FALSE(section.SetValue("x", "y"));
    EXPECT_FALSE(section.DeleteValue("x"));
}

TEST_F(Broker, AHostThatIsResetIsAskedAgainLater) {
    use("whole");
    EXPECT_EQ(makeStore(), S_OK);
    ResetEvent((*host)->readyEvent);
    EXPECT_FALSE(hostBroker.EnsureHostModule());
    EXPECT_EQ(makeStore(), E_FAIL);
    SetEvent((*host)->readyEvent);
    EXPECT_EQ(makeStore(), S_OK);
    EXPECT_EQ((*host)->liveObjects, 0);
}

TEST_F(Broker, TheFirstRequestTakesTheEventAsItIs) {
    use("whole");
    ResetEvent((*host)->readyEvent);
    EXPECT_TRUE(hostBroker.EnsureHostModule());
    EXPECT_FALSE(hostBroker.EnsureHostModule());
    SetEvent((*host)->readyEvent);
}

TEST_F(Broker, WithoutAnEventTheFirstRequestFailsAndLaterOnesGoAhead) {
    use("without_event");
    EXPECT_FALSE(hostBroker.EnsureHostModule());
    EXPECT_TRUE(hostBroker.EnsureHostModule());
    EXPECT_EQ(makeStore(), S_OK);
}

TEST_F(Broker, TheClassFactoryStandsInForAFailingCreation) {
    use("whole");
    EXPECT_EQ(makeStore(), S_OK);
    EXPECT_EQ(host->log(), "") << "not asked while creation works";
    (*host)->createResult = E_OUTOFMEMORY;
    EXPECT_EQ(makeStore(), S_OK);
    EXPECT_EQ(host->log(), "factory\n");
    void* object = nullptr;
    EXPECT_EQ(hostBroker.CreateHostObject(CLSID_HostPropertyStore, IID_IHostManager, &object), E_OUTOFMEMORY)
        << "the first failure is the answer";
    EXPECT_EQ((*host)->liveObjects, 0) << "factories are released";
    (*host)->createResult = S_OK;
}

TEST_F(Broker, TheClassFactoryAloneIsEnough) {
    use("factory_only");
    EXPECT_EQ(makeStore(), S_OK);
    EXPECT_EQ(host->log(), "factory\n");
}

TEST_F(Broker, TheAnswerOfCreationAloneIsGiven) {
    use("plain");
    (*host)->createResult = E_OUTOFMEMORY;
    EXPECT_EQ(makeStore(), E_OUTOFMEMORY);
    (*host)->createResult = S_OK;
}

TEST_F(Broker, AModuleThatExportsNothingGivesNothing) {
    use("empty");
    EXPECT_EQ(makeStore(), E_FAIL);
}

TEST_F(Broker, FurtherObjectsComeThroughAManager) {
    use("whole");
    void* object = nullptr;
    EXPECT_EQ(hostBroker.CreateThroughManager(CLSID_HostRichText, nullptr, 5, CLSID_HostRichText, &object),
              S_OK);
    EXPECT_EQ(host->log(), "create alone 5\n");
    EXPECT_EQ((*host)->liveObjects, 1) << "the manager is gone";
    static_cast<IUnknown*>(object)->Release();
    EXPECT_EQ(hostBroker.CreateThroughManager(CLSID_HostRichText, nullptr, 5, IID_IHostManager, &object),
              E_NOINTERFACE);
    EXPECT_EQ((*host)->liveObjects, 0);
}

TEST_F(Broker, AHostThatIsReadyIsToldOfTheEnd) {
    use("whole");
    hostBroker.Stop();
    EXPECT_EQ(host->log(), "") << "nothing was ever asked of it";
    hostBroker.EnsureHostModule();
    hostBroker.Stop();
    EXPECT_EQ(host->log(), "shutdown 0\ncan unload\n");
    (*host)->shutdownResult = S_FALSE;
    hostBroker.EnsureHostModule();
    hostBroker.Stop();
    EXPECT_EQ(host->log(), "shutdown 0\n");
    EXPECT_EQ((*host)->liveObjects, 0);
}

TEST_F(Broker, AHostThatIsResetStaysLoaded) {
    use("whole");
    hostBroker.EnsureHostModule();
    ResetEvent((*host)->readyEvent);
    hostBroker.Stop();
    EXPECT_EQ(host->log(), "");
    host.reset();
    const HMODULE left = GetModuleHandleA("QXPM.DLL");
    EXPECT_NE(left, nullptr);
    FreeLibrary(left);
    hostBroker.Start();
}

TEST_F(Broker, SectionsHoldValues) {
    use("whole");
    PropertySection section;
    ASSERT_TRUE(section.Open("GlobalProperties", 1));
    EXPECT_TRUE(section.SetValue("InstallDir", "C:\\Programme"));
    char buffer[256];
    EXPECT_TRUE(section.GetValue("InstallDir", buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "C:\\Programme");
    EXPECT_TRUE(section.GetValue("InstallDir", buffer, 4));
    EXPECT_STREQ(buffer, "C:\\") << "ended within the buffer whatever the host does";
    EXPECT_TRUE(section.DeleteValue("InstallDir"));
    EXPECT_FALSE(section.GetValue("InstallDir", buffer, sizeof buffer));
    EXPECT_STREQ(buffer, "");
    section.Close();
    EXPECT_EQ((*host)->liveObjects, 0);
    (*host)->openResult = E_FAIL;
    EXPECT_FALSE(section.Open("Modules", 1));
    EXPECT_FALSE(section.SetValue("x", "y"));
    EXPECT_EQ((*host)->liveObjects, 0) << "a store that does not open is released";
}

TEST_F(Broker, TheHostNamesTheProduct) {
    use("whole");
    PropertySection section;
    section.Open("CBSTR", 1);
    section.SetValue("ProductName", "Velmorcenter");
    host->log();
    CBSTR caption;
    EXPECT_TRUE(caption.Format("\\@!"));
    EXPECT_STREQ(caption.Text(), "Velmorcenter!");
    EXPECT_EQ(host->log(), "open CBSTR 0\n");
    section.DeleteValue("ProductName");
}

TEST_F(Broker, TheComponentEntersAndRemovesItself) {
    use("whole");
    char program[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, program, sizeof program);
    const HINSTANCE self = GetModuleHandleA(nullptr);
    const std::string written = "open Modules 1\nset Modules/Mendwell=" + registration::Listing(program) +
                                "\nopen Translations 1\nset Translations/Mendwell:1=Mendwell Ostrel\n";
    for (int time = 0; time < 2; ++time) {
        registration::Register(self);
        EXPECT_EQ(host->log(), written);
    }
    registration::Unregister();
    EXPECT_EQ(host->log(), "open Modules 1\ndelete Modules/Mendwell\n");
    EXPECT_EQ((*host)->liveObjects, 0);
}

TEST(Registration, ListsTheLibraryAndThePictureBesideIt) {
    EXPECT_EQ(registration::Listing("C:\\Suite\\QXCMendwell.dll"),
              "5,1,0,30,C:\\Suite\\QXCMendwell.dll,C:\\Suite\\QXCMendwell.bmp");
    EXPECT_EQ(registration::Listing("C:\\Suite 1.0\\Mendwell"),
              "5,1,0,30,C:\\Suite 1.0\\Mendwell,C:\\Suite 1.bmp");
    EXPECT_EQ(registration::Listing("C:\\Suite\\Mendwell"), "5,1,0,30,C:\\Suite\\Mendwell,");
}

}  // namespace
