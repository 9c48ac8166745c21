#pragma once
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "winlayer/include/msiquery.h"

namespace winlayer {

// The data of the Windows Installer, filled in by a test: texts in the ANSI code page; codes in braces,
// compared exactly. Programs use it through MSI.DLL, which Machine::addInstallerLibrary() adds. Thread rule:
// one thread at a time.
class Installer {
public:
    // The current machine's.
    static Installer& current();

    struct Component {
        INSTALLSTATE state = INSTALLSTATE_LOCAL;
        std::string path;  // a file, or a registry key that begins with the number of its root
    };
    struct Product {
        std::string package;  // path of the cached package
        std::map<std::string, Component> components;
    };
    struct Codes {
        std::string product;
        std::string feature;
        std::string component;
    };
    // The two tables of a package that queries can use.
    struct ComponentRow {
        std::string key;
        std::string id;
    };
    struct ShortcutRow {
        std::string component;  // a component's key
        std::string icon;
    };
    struct Package {
        std::vector<ComponentRow> components;
        std::vector<ShortcutRow> shortcuts;
    };

    std::map<std::string, Product> products;   // by code
    std::map<std::string, Codes> descriptors;  // by the text in an advertised shortcut
    std::map<std::string, Package> packages;   // by path

    // Each returns a Windows error code and a handle to be closed with close().
    DWORD openPackage(const std::string& path, MSIHANDLE& handle);
    // Accepts one form of query, for the component codes of the shortcuts with an icon:
    //   SELECT `Component`.`ComponentId` FROM `Component`, `Shortcut` WHERE
    //   `Component`.`Component` = `Shortcut`.`Component_` AND `Shortcut`.`Icon_` = '...'
    // on one line; anything else is ERROR_BAD_QUERY_SYNTAX.
    DWORD openView(MSIHANDLE package, const std::string& query, MSIHANDLE& handle);
    DWORD execute(MSIHANDLE view);
    DWORD fetch(MSIHANDLE handle, MSIHANDLE& record);
    DWORD field(MSIHANDLE record, UINT number, std::string& text) const;
    DWORD close(MSIHANDLE handle);
    std::size_t openHandles() const { return opened_.size(); }

private:
    struct View {
        const Package* package = nullptr;
        std::string icon;
        bool executed = false;
        std::size_t next = 0;
        std::vector<std::string> ids;
    };
    struct Record {
        std::string id;
    };
    using Opened = std::variant<const Package*, View, Record>;

    template <class Kind>
    Kind* find(MSIHANDLE handle);
    MSIHANDLE add(Opened opened);

    std::map<MSIHANDLE, Opened> opened_;
    MSIHANDLE last_ = 0;
};

}  // namespace winlayer
