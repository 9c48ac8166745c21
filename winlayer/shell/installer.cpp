#include "winlayer/shell/installer.h"

#include <string_view>

namespace winlayer {
namespace {

constexpr std::string_view queryStart =
    "SELECT `Component`.`ComponentId` FROM `Component`, `Shortcut` WHERE "
    "`Component`.`Component` = `Shortcut`.`Component_` AND `Shortcut`.`Icon_` = '";

bool readQuery(std::string_view query, std::string& icon) {
    if (!query.starts_with(queryStart)) {
        return false;
    }
    query.remove_prefix(queryStart.size());
    if (query.empty() || query.find('\'') != query.size() - 1) {
        return false;
    }
    icon = query.substr(0, query.size() - 1);
    return true;
}

}  // namespace

template <class Kind>
Kind* Installer::find(MSIHANDLE handle) {
    const auto found = opened_.find(handle);
    return found != opened_.end() ? std::get_if<Kind>(&found->second) : nullptr;
}

MSIHANDLE Installer::add(Opened opened) {
    opened_.emplace(++last_, std::move(opened));
    return last_;
}

DWORD Installer::openPackage(const std::string& path, MSIHANDLE& handle) {
    const auto found = packages.find(path);
    if (found == packages.end()) {
        return ERROR_OPEN_FAILED;
    }
    handle = add(&found->second);
    return NO_ERROR;
}

DWORD Installer::openView(MSIHANDLE package, const std::string& query, MSIHANDLE& handle) {
    const Package* const* const opened = find<const Package*>(package);
    if (opened == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    View view;
    view.package = *opened;
    if (!readQuery(query, view.icon)) {
        return ERROR_BAD_QUERY_SYNTAX;
    }
    handle = add(std::move(view));
    return NO_ERROR;
}

DWORD Installer::execute(MSIHANDLE handle) {
    View* const view = find<View>(handle);
    if (view == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    view->executed = true;
    view->next = 0;
    view->ids.clear();
    for (const ComponentRow& component : view->package->components) {
        for (const ShortcutRow& shortcut : view->package->shortcuts) {
            if (shortcut.component == component.key && shortcut.icon == view->icon) {
                view->ids.push_back(component.id);
            }
        }
    }
    return NO_ERROR;
}

DWORD Installer::fetch(MSIHANDLE handle, MSIHANDLE& record) {
    View* const view = find<View>(handle);
    if (view == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    if (!view->executed) {
        return ERROR_INVALID_HANDLE_STATE;
    }
    if (view->next == view->ids.size()) {
        return ERROR_NO_MORE_ITEMS;
    }
    record = add(Record{view->ids[view->next++]});
    return NO_ERROR;
}

DWORD Installer::field(MSIHANDLE handle, UINT number, std::string& text) const {
    const auto found = opened_.find(handle);
    const Record* const record = found != opened_.end() ? std::get_if<Record>(&found->second) : nullptr;
    if (record == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    text = number == 1 ? record->id : "";  // a missing field reads as empty
    return NO_ERROR;
}

DWORD Installer::close(MSIHANDLE handle) {
    return handle == 0 || opened_.erase(handle) != 0 ? NO_ERROR : ERROR_INVALID_HANDLE;
}

}  // namespace winlayer
